#pragma once
#include "kel/ConstraintFrame.h"

namespace kel {

/// The centre of a ball joint in the world; the origin at first.
class BallJointFrame : public ConstraintFrame
{
public:
  BallJointFrame() = default;
  explicit BallJointFrame(const Vec3& center) : ConstraintFrame(center, Vec3(0, 0, 1)) {}

  void setCenter(const Vec3& center) { m_point = center; }
  const Vec3& getCenter() const { return m_point; }
};

} // namespace kel
