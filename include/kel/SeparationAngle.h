#pragma once
#include "kel/Angle.h"

namespace kel {

/// How far the first anchor of a pair lies from the second along an axis of the second attachment, m.
class SeparationAngle : public Angle
{
public:
  explicit SeparationAngle(Axis axis) : Angle(axis, TRANSLATIONAL) {}

  void transform(const AttachmentPair& pair) override;
  void fillRow(const AttachmentPair& pair, ConstraintRow& row) const override;

protected:
  ~SeparationAngle() override = default;
};

} // namespace kel
