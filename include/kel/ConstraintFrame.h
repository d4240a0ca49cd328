#pragma once
#include "kel/Vec3.h"

namespace kel {

/// Where a joint is to be made: a point and an axis of the world.
class ConstraintFrame
{
public:
  /// The point, m, and the axis, of any length but 0.
  const Vec3& getPoint() const { return m_point; }
  const Vec3& getAxis() const { return m_axis; }

protected:
  ConstraintFrame() = default;
  ConstraintFrame(const Vec3& point, const Vec3& axis) : m_point(point), m_axis(axis) {}

  Vec3 m_point;
  Vec3 m_axis = Vec3(0, 0, 1);
};

} // namespace kel
