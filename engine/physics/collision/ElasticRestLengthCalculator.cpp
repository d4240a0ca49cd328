#include "kelCollide/ElasticRestLengthCalculator.h"
#include "kelCollide/Sphere.h"
#include <algorithm>
#include <limits>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

Real ElasticRestLengthCalculator::calculateElasticRestLength(const Shape& shape, const Vec3& point,
                                                             const Vec3& direction, Real depth)
{
  constexpr Real endless = 1e9; // m
  if (shape.getType() == Shape::SPHERE) return 2 * static_cast<const Sphere&>(shape).getRadius();
  const BoundingAABB bound = shape.calculateLocalBound();
  const Vec3 start = shape.getTransform().transform3x3Inv(point - shape.getTransform().getTranslate());
  const Vec3 way = shape.getTransform().transform3x3Inv(direction);
  Real length = std::numeric_limits<Real>::infinity();
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (way[axis] == 0) continue;
    const Real end = way[axis] > 0 ? bound.max()[axis] : bound.min()[axis];
    length = std::min(length, (end - start[axis]) / way[axis]);
  }
  return length < endless ? std::max(length, depth) : 0;
}

} // namespace kelCollide
