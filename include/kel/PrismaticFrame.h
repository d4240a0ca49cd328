#pragma once
#include "kel/ConstraintFrame.h"

namespace kel {

/// A point and the axis of a prismatic joint in the world; the origin and z at first.
class PrismaticFrame : public ConstraintFrame
{
public:
  PrismaticFrame() = default;
  PrismaticFrame(const Vec3& point, const Vec3& axis) : ConstraintFrame(point, axis) {}

  void setPoint(const Vec3& point) { m_point = point; }
  void setAxis(const Vec3& axis) { m_axis = axis; }
  void set(const Vec3& point, const Vec3& axis) { *this = PrismaticFrame(point, axis); }
};

} // namespace kel
