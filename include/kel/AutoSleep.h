#pragma once
#include "kel/SleepThreshold.h"
#include "kel/ref_ptr.h"

namespace kel {

class DynamicsSystem;

/// Lets what rests fall asleep, so that it costs next to nothing. Disabled at first.
///
/// What touches or is bound together falls asleep together, when all its bodies have been slower than their
/// thresholds for their times and nothing drives them: no motor, no moving surface, no kinematic body on the
/// move. It stops where it is, and forces that are read stay those of the last solution. It wakes, all of it,
/// in the step in which anything is new to one of its bodies: velocity, place, mass, force, gravity, a
/// contact or the material of one, a constraint or anything that a constraint asks for.
class AutoSleep : public Referenced
{
public:
  /// The sleep of the bodies of a system: all objects for that system are one. Without a system nobody asks.
  explicit AutoSleep(const DynamicsSystem* system);

  /// Disabling wakes all bodies in the next step. What somebody puts to sleep sleeps also where it is
  /// disabled.
  void setEnable(bool enable) { m_settings->isEnabled = enable; }
  bool getEnable() const { return m_settings->isEnabled; }
  /// The threshold of bodies that have none of their own. Not owned.
  AutoSleepThreshold* getThreshold() const { return m_settings->threshold.get(); }

protected:
  ~AutoSleep() override = default;

private:
  struct Settings : Referenced
  {
    bool isEnabled = false;
    ref_ptr<AutoSleepThreshold> threshold = new AutoSleepThreshold;
  };

  ref_ptr<Settings> m_settings;
};

} // namespace kel
