#pragma once
#include "kel/Component.h"
#include "kelStream/Serializable.h"

namespace kelSDK {

class Simulation;

/// Something that a simulation calls when things happen.
class EventListener : public kel::Component, public kelStream::Serializable
{
public:
  enum Type
  {
    UNDEFINED_TYPE = 0,
    STEP_EVENT_LISTENER = 1,
    CONTACT_EVENT_LISTENER = 2,
    GUI_EVENT_LISTENER = 3
  };

  Type getType() const { return m_type; }
  /// The events that the listener gets, bits of its class.
  virtual void setMask(int mask) { m_mask = mask; }
  int getMask() const { return m_mask; }
  /// Whether the listener gets events at all; true at first.
  void setEnable(bool enable) { m_enabled = enable; }
  bool isEnabled() const { return m_enabled; }
  /// The simulation that the listener was added to, null for none. Not owned.
  Simulation* getSimulation() const { return m_simulation; }

  /// Called after the listener has been added to a simulation.
  virtual void addNotification() {}
  /// Called after the listener has been removed from a simulation; not when the simulation dies.
  virtual void removeNotification() {}
  kel::String getClassName() const override { return "EventListener"; }
  kel::String getImplementationName() const override { return getClassName(); }

protected:
  EventListener(Type type, int mask) : m_type(type), m_mask(mask) {}
  ~EventListener() override = default;

private:
  friend class EventManager;

  const Type m_type;
  int m_mask;
  bool m_enabled = true;
  Simulation* m_simulation = nullptr;
};

} // namespace kelSDK
