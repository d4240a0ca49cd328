#pragma once
#include "kel/TimeStamp.h"
#include "kelSDK/EventListener.h"

namespace kelSDK {

/// Is called at fixed places of every step. Any callback may add and remove anything, the listener itself
/// too. Times are those of the simulation's clock, s.
class StepEventListener : public EventListener
{
public:
  /// Bits of the mask.
  enum ActivationMask
  {
    STEP_NONE = 0,
    PRE_COLLIDE = 1,
    PRE_STEP = 2,
    POST_STEP = 4,
    LAST_STEP = 8,
    DEFAULT = PRE_STEP | POST_STEP,
    ALL = PRE_COLLIDE | PRE_STEP | POST_STEP | LAST_STEP
  };

  explicit StepEventListener(int mask = DEFAULT) : EventListener(STEP_EVENT_LISTENER, mask) {}

  /// Before contacts are looked for.
  virtual void preCollide(const kel::TimeStamp&) {}
  /// Before the solution.
  virtual void pre(const kel::TimeStamp&) {}
  /// After the bodies have moved, before the clock does.
  virtual void post(const kel::TimeStamp&) {}
  /// At the end of the step, with the clock's new time.
  virtual void last(const kel::TimeStamp&) {}
  kel::String getClassName() const override { return "StepEventListener"; }

protected:
  ~StepEventListener() override = default;
};

} // namespace kelSDK
