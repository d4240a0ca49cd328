#pragma once
#include "kel/Angle.h"
#include "kel/Vec3.h"

namespace kel {

/// How far the anchors of a pair are from each other, m. Where they meet, the direction stays as it was.
class DistanceAngle : public Angle
{
public:
  DistanceAngle() : Angle(N, TRANSLATIONAL) {}

  void transform(const AttachmentPair& pair) override;
  void fillRow(const AttachmentPair& pair, ConstraintRow& row) const override;
  /// Makes the Jacobians of two rows those of the ways across the distance.
  void fillRowsAcross(const AttachmentPair& pair, ConstraintRow& row1, ConstraintRow& row2) const;

protected:
  ~DistanceAngle() override = default;

private:
  Vec3 m_direction = Vec3(0, 0, 1);
};

} // namespace kel
