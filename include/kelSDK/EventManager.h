#pragma once
#include "kel/Referenced.h"
#include "kel/TimeStamp.h"
#include "kel/ref_ptr.h"
#include "kelSDK/StepEventListener.h"
#include <vector>

namespace kelSDK {

/// The listeners of a simulation, by priority.
class EventManager : public kel::Referenced
{
public:
  enum Priority
  {
    LOWEST_PRIORITY = 0,
    DEFAULT_PRIORITY = 50,
    HIGHEST_PRIORITY = 100
  };
  /// Kinds of listeners.
  enum Cleanup
  {
    STEP_LISTENERS = 1,
    CONTACT_LISTENERS = 2,
    GUI_LISTENERS = 4,
    LISTENERS = 7,
    CLEANUP_ALL = 7
  };

  explicit EventManager(Simulation& simulation) : m_simulation(simulation) {}

  /// Takes a reference and notifies the listener. Higher priorities are called first, equal ones in the order
  /// of addition; what lies outside the priorities counts as the nearest. False for null and for a listener
  /// that a simulation has already.
  bool add(EventListener* listener, int priority = DEFAULT_PRIORITY);
  /// Lets a listener go and notifies it; false if it is not here.
  bool remove(EventListener* listener);
  /// The first listener of that name in the order of calls, null if there is none. Not owned.
  EventListener* getEventListener(const kel::Name& name) const;

  /// Calls the step listeners whose masks hold an event. Listeners that are removed meanwhile are left out,
  /// those that are added are not called yet.
  void stepEvent(StepEventListener::ActivationMask event, const kel::TimeStamp& time);

protected:
  ~EventManager() override;

private:
  struct Entry
  {
    kel::ref_ptr<EventListener> listener;
    int priority;
  };

  Simulation& m_simulation;
  std::vector<Entry> m_entries;
};

} // namespace kelSDK
