#include "kelCollide/ElasticRestLengthCalculator.h"
#include "kelCollide/Sphere.h"
#include <algorithm>
#include <cmath>
#include <limits>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

Real ElasticRestLengthCalculator::calculateElasticRestLength(const Shape& shape, const Vec3& direction)
{
  constexpr Real endless = 1e9; // m
  if (shape.getType() == Shape::SPHERE) return 2 * static_cast<const Sphere&>(shape).getRadius();
  const BoundingAABB bound = shape.calculateLocalBound();
  const Vec3 size = bound.max() - bound.min();
  const Vec3 way = shape.getTransform().transform3x3Inv(direction);
  Real length = std::numeric_limits<Real>::infinity();
  for (std::size_t axis = 0; axis < 3; ++axis)
    if (way[axis] != 0) length = std::min(length, size[axis] / std::fabs(way[axis]));
  return length < endless ? length : 0;
}

} // namespace kelCollide
