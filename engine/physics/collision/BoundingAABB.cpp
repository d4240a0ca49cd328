#include "kelCollide/BoundingAABB.h"
#include <limits>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

void BoundingAABB::reset()
{
  constexpr Real huge = std::numeric_limits<Real>::max();
  min() = Vec3(huge, huge, huge);
  max() = Vec3(-huge, -huge, -huge);
}

void BoundingAABB::expand(const Vec3& otherMin, const Vec3& otherMax)
{
  min() = Vec3::componentMin(min(), otherMin);
  max() = Vec3::componentMax(max(), otherMax);
}

void BoundingAABB::expand(const Vec3& otherMin, const Vec3& otherMax, const kel::AffineMatrix4x4& transform)
{
  for (int corner = 0; corner < 8; ++corner) {
    const Vec3 point = transform.transformPoint(Vec3(corner & 1 ? otherMax.x() : otherMin.x(),
                                                     corner & 2 ? otherMax.y() : otherMin.y(),
                                                     corner & 4 ? otherMax.z() : otherMin.z()));
    expand(point, point);
  }
}

bool BoundingAABB::hasOverlap(const BoundingAABB& other) const
{
  for (int axis = 0; axis < 3; ++axis)
    if (!(max()[axis] >= other.min()[axis] && other.max()[axis] >= min()[axis])) return false;
  return true;
}

bool BoundingAABB::testSphereOverlap(const Vec3& center, Real radius) const
{
  for (int axis = 0; axis < 3; ++axis)
    if (!(center[axis] > min()[axis] - radius)) return false;
  for (int axis = 0; axis < 3; ++axis)
    if (!(center[axis] < max()[axis] + radius)) return false;
  return true;
}

} // namespace kelCollide
