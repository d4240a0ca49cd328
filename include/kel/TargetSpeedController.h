#pragma once
#include "kel/BasicControllerConstraint.h"

namespace kel {

/// Drives an angle at a speed, with as much force as its range has.
class TargetSpeedController : public BasicControllerConstraint
{
public:
  explicit TargetSpeedController(const ConstraintAngleBasedData& data)
      : BasicControllerConstraint(data, RegularizationParameters::NONHOLONOMIC)
  {}

  /// The speed to reach, rad/s or m/s; 0 at first.
  void setSpeed(Real speed) { m_speed = speed; }
  Real getSpeed() const { return m_speed; }
  /// Holds the angle where it is now, whatever the speed, or lets it go.
  void setLocked(bool locked);
  bool getLocked() const { return m_locked; }
  /// Whether the angle is held where it is while the speed is 0; false at first.
  void setLockedAtZeroSpeed(bool enable) { m_lockedAtZeroSpeed = enable; }
  bool getLockedAtZeroSpeed() const { return m_lockedAtZeroSpeed; }

protected:
  ~TargetSpeedController() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Real m_speed = 0;
  Real m_position = 0; // where the angle is held
  bool m_locked = false;
  bool m_lockedAtZeroSpeed = false;
  bool m_holds = false;
};

} // namespace kel
