#pragma once
#include "kel/ConstraintFrame.h"

namespace kel {

/// A point and the axis of a hinge in the world; the origin and z at first.
class HingeFrame : public ConstraintFrame
{
public:
  HingeFrame() = default;
  HingeFrame(const Vec3& center, const Vec3& axis) : ConstraintFrame(center, axis) {}

  void setCenter(const Vec3& center) { m_point = center; }
  void setAxis(const Vec3& axis) { m_axis = axis; }
  void setHinge(const Vec3& center, const Vec3& axis) { *this = HingeFrame(center, axis); }
};

} // namespace kel
