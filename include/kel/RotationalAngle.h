#pragma once
#include "kel/Angle.h"

namespace kel {

/// How far the first attachment is turned about an axis of the second, rad. It counts whole turns as long as
/// it is taken at least once in half a turn.
class RotationalAngle : public Angle
{
public:
  /// About an axis. The next value will be the one nearest to `start`, rad.
  explicit RotationalAngle(Axis axis, Real start = 0) : Angle(axis, ROTATIONAL) { m_value = start; }

  void transform(const AttachmentPair& pair) override;
  void fillRow(const AttachmentPair& pair, ConstraintRow& row) const override;
  /// Whole turns that are in the value.
  Int getWindingNumber() const;
  /// The value less the whole turns, in [-pi, pi].
  Real getLastAngle() const;

protected:
  ~RotationalAngle() override = default;
};

} // namespace kel
