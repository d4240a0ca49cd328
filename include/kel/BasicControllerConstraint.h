#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// The angle that a controller acts along, and the attachments that it is measured between.
class ConstraintAngleBasedData : public ElementaryConstraintData
{
public:
  /// Holds a reference on the angle, which must not be null.
  ConstraintAngleBasedData(const AttachmentPair& pair, Angle* angle)
      : ElementaryConstraintData(pair), m_angle(angle)
  {}

  Angle* getAngle() const { return m_angle.get(); }

private:
  ref_ptr<Angle> m_angle;
};

/// One row along an angle: the base of motors, ranges and locks. Disabled at first. Forces are in N along a
/// way, and in N m about an axis.
class BasicControllerConstraint : public AttachedConstraint
{
public:
  /// The angle as it is now, rad or m.
  Real getAngle() const;
  /// Its speed, rad/s or m/s.
  Real getCurrentSpeed() const;

protected:
  explicit BasicControllerConstraint(const ConstraintAngleBasedData& data,
                                     RegularizationParameters::Type type = {});
  ~BasicControllerConstraint() override = default;
  /// Appends the row with the Jacobian of the angle, of which the target is to be filled in.
  ConstraintRow& addAngleRow(std::vector<ConstraintRow>& buffer);

  const ref_ptr<Angle> m_angle;
};

} // namespace kel
