#include "kelCollide/lineClipping.h"
#include <cmath>
#include <stdexcept>

namespace kelCollide {

using kel::Interval;
using kel::Real;
using kel::Vec3;

namespace {

constexpr Real INFINITE = std::numeric_limits<Real>::infinity();

Real coordinate(const Vec3& v, unsigned int axis)
{
  if (axis > 2) throw std::out_of_range("an axis is 0, 1 or 2");
  return v[axis];
}

/// The interval that a line parallel to a surface gets.
bool setParallel(bool isInside, Interval& inside)
{
  inside = isInside ? Interval() : Interval(INFINITE, -INFINITE);
  return isInside;
}

/// Where a t² + 2 b t + c is at most 0, for an a above 0.
bool solveQuadratic(Real a, Real b, Real c, Interval& inside)
{
  const Real discriminant = b * b - a * c;
  if (!(discriminant >= 0)) return setParallel(false, inside);
  // The root that adds numbers of one sign is exact; the other one follows from their product.
  const Real sum = b < 0 ? -b + std::sqrt(discriminant) : -b - std::sqrt(discriminant);
  const Real one = sum / a;
  const Real other = sum == 0 ? 0 : c / sum;
  inside = Interval(std::min(one, other), std::max(one, other));
  return true;
}

/// Cuts an interval to a second one that was found, or to nothing.
bool cutTo(bool isFound, const Interval& other, Interval& inside)
{
  if (!isFound) return false;
  inside.intersectWith(other);
  return inside.hasElements();
}

} // namespace

bool clipLineToPlane(Real value, unsigned int axis, int side, const Vec3& start, const Vec3& direction,
                     Interval& inside, Real tolerance)
{
  const Real sign = side < 0 ? -1 : 1;
  const Real height = sign * (coordinate(start, axis) - value);
  const Real slope = sign * coordinate(direction, axis);
  if (std::fabs(slope) <= tolerance) return setParallel(height >= 0, inside);
  const Real crossing = -height / slope;
  inside = slope > 0 ? Interval(crossing, INFINITE) : Interval(-INFINITE, crossing);
  return true;
}

bool clipLineToSlab(Real limit, unsigned int axis, const Vec3& start, const Vec3& direction, Interval& inside,
                    Real tolerance)
{
  if (std::fabs(coordinate(direction, axis)) <= tolerance)
    return setParallel(std::fabs(coordinate(start, axis)) <= limit, inside);
  const Real one = (-limit - coordinate(start, axis)) / coordinate(direction, axis);
  const Real other = (limit - coordinate(start, axis)) / coordinate(direction, axis);
  inside = Interval(std::min(one, other), std::max(one, other));
  return limit >= 0;
}

bool clipLineToDoubleSlab(Real limit1, unsigned int axis1, Real limit2, unsigned int axis2, const Vec3& start,
                          const Vec3& direction, Interval& inside, Real tolerance)
{
  if (!clipLineToSlab(limit1, axis1, start, direction, inside, tolerance)) return false;
  Interval other;
  return cutTo(clipLineToSlab(limit2, axis2, start, direction, other, tolerance), other, inside);
}

bool clipLineToOpenBox(Real limitX, Real limitZ, const Vec3& start, const Vec3& direction, Interval& inside,
                       Real tolerance)
{
  return clipLineToDoubleSlab(limitX, 0, limitZ, 2, start, direction, inside, tolerance);
}

bool clipLineToBox(const Vec3& halfExtents, const Vec3& start, const Vec3& direction, Interval& inside,
                   Real tolerance)
{
  if (!clipLineToDoubleSlab(halfExtents.x(), 0, halfExtents.y(), 1, start, direction, inside, tolerance))
    return false;
  Interval other;
  return cutTo(clipLineToSlab(halfExtents.z(), 2, start, direction, other, tolerance), other, inside);
}

bool clipLineToInfiniteCylinder(Real radius, const Vec3& start, const Vec3& direction, Interval& inside,
                                Real tolerance)
{
  const Vec3 from(start.x(), 0, start.z());
  const Vec3 along(direction.x(), 0, direction.z());
  const Real c = from.length2() - radius * radius;
  if (along.length() <= tolerance) return setParallel(c <= 0, inside);
  return solveQuadratic(along.length2(), from * along, c, inside);
}

bool clipLineToInfiniteEllipticCylinder(Real radiusX, Real radiusZ, const Vec3& start, const Vec3& direction,
                                        Interval& inside, Real tolerance)
{
  if (!(radiusX > 0 && radiusZ > 0)) return setParallel(false, inside);
  const Vec3 from(start.x() / radiusX, 0, start.z() / radiusZ);
  const Vec3 along(direction.x() / radiusX, 0, direction.z() / radiusZ);
  if (std::hypot(direction.x(), direction.z()) <= tolerance) return setParallel(from.length2() <= 1, inside);
  return solveQuadratic(along.length2(), from * along, from.length2() - 1, inside);
}

bool clipLineToCylinder(Real radius, Real height, const Vec3& start, const Vec3& direction, Interval& inside,
                        Real tolerance)
{
  if (!clipLineToSlab(height / 2, 1, start, direction, inside, tolerance)) return false;
  Interval other;
  return cutTo(clipLineToInfiniteCylinder(radius, start, direction, other, tolerance), other, inside);
}

bool clipLineToSphere(Real radius, const Vec3& start, const Vec3& direction, Interval& inside, Real tolerance)
{
  const Real c = start.length2() - radius * radius;
  if (direction.length() <= tolerance) return setParallel(c <= 0, inside);
  return solveQuadratic(direction.length2(), start * direction, c, inside);
}

bool clipLineToCapsule(Real radius, Real height, const Vec3& start, const Vec3& direction, Interval& inside,
                       Real tolerance)
{
  const Vec3 end(0, height / 2, 0);
  Interval parts[3];
  const bool found[3] = {clipLineToCylinder(radius, height, start, direction, parts[0], tolerance),
                         clipLineToSphere(radius, start - end, direction, parts[1], tolerance),
                         clipLineToSphere(radius, start + end, direction, parts[2], tolerance)};
  inside = Interval(INFINITE, -INFINITE);
  for (int i = 0; i < 3; ++i) {
    if (!found[i]) continue;
    inside.minValue() = std::min(inside.minValue(), parts[i].minValue());
    inside.maxValue() = std::max(inside.maxValue(), parts[i].maxValue());
  }
  return inside.hasElements();
}

} // namespace kelCollide
