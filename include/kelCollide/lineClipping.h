#pragma once
#include "kel/Interval.h"
#include "kel/Vec3.h"
#include <limits>

/// The part of a line that lies inside a volume about the origin, as an interval of the line's parameter: 0
/// at the start, 1 after one length of the direction. Rays begin at 0; for line segments, given by their
/// ends, the parameter goes from 0 to 1. All give false if nothing lies inside, which leaves some interval.
/// Axes are 0 to 2 for x to z and not tested; lengths are in metres. Components of the direction up to the
/// tolerance count as 0.
namespace kelCollide {

/// The half space where the coordinate is at least the value for a side of at least 0, else at most.
bool clipLineToPlane(kel::Real value, unsigned int axis, int side, const kel::Vec3& start,
                     const kel::Vec3& direction, kel::Interval& inside, kel::Real tolerance = 1e-9);
/// The points whose coordinate lies within a limit on either side of 0.
bool clipLineToSlab(kel::Real limit, unsigned int axis, const kel::Vec3& start, const kel::Vec3& direction,
                    kel::Interval& inside, kel::Real tolerance = 1e-9);
/// Two slabs.
bool clipLineToDoubleSlab(kel::Real limit1, unsigned int axis1, kel::Real limit2, unsigned int axis2,
                          const kel::Vec3& start, const kel::Vec3& direction, kel::Interval& inside,
                          kel::Real tolerance = 1e-9);
/// A box without ends along y, by its half extents along x and z.
bool clipLineToOpenBox(kel::Real limitX, kel::Real limitZ, const kel::Vec3& start, const kel::Vec3& direction,
                       kel::Interval& inside, kel::Real tolerance = 1e-9);
bool clipLineToBox(const kel::Vec3& halfExtents, const kel::Vec3& start, const kel::Vec3& direction,
                   kel::Interval& inside, kel::Real tolerance = 1e-9);
/// A cylinder along y without ends.
bool clipLineToInfiniteCylinder(kel::Real radius, const kel::Vec3& start, const kel::Vec3& direction,
                                kel::Interval& inside, kel::Real tolerance = 1e-9);
/// The same with two radii, along x and z.
bool clipLineToInfiniteEllipticCylinder(kel::Real radiusX, kel::Real radiusZ, const kel::Vec3& start,
                                        const kel::Vec3& direction, kel::Interval& inside,
                                        kel::Real tolerance = 1e-9);
/// A cylinder along y.
bool clipLineToCylinder(kel::Real radius, kel::Real height, const kel::Vec3& start,
                        const kel::Vec3& direction, kel::Interval& inside, kel::Real tolerance = 1e-9);
bool clipLineToSphere(kel::Real radius, const kel::Vec3& start, const kel::Vec3& direction,
                      kel::Interval& inside, kel::Real tolerance = 1e-9);
/// A capsule along y, its height without the caps.
bool clipLineToCapsule(kel::Real radius, kel::Real height, const kel::Vec3& start, const kel::Vec3& direction,
                       kel::Interval& inside, kel::Real tolerance = 1e-9);

/// Cuts what lies before a ray's start; false if nothing stays.
inline bool cutToRay(kel::Interval& inside)
{
  inside.intersectWithRightUnbounded(0);
  return inside.hasElements();
}

/// Cuts what lies beyond the ends of a segment, with one unit of rounding to spare; false if nothing stays.
inline bool cutToSegment(kel::Interval& inside)
{
  constexpr kel::Real rounding = std::numeric_limits<kel::Real>::epsilon();
  inside.intersectWith(kel::Interval(-rounding, 1 + rounding));
  return inside.hasElements();
}

inline bool clipRayToPlane(kel::Real value, unsigned int axis, int side, const kel::Vec3& start,
                           const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToPlane(value, axis, side, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToSlab(kel::Real limit, unsigned int axis, const kel::Vec3& start,
                          const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToSlab(limit, axis, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToDoubleSlab(kel::Real limit1, unsigned int axis1, kel::Real limit2, unsigned int axis2,
                                const kel::Vec3& start, const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToDoubleSlab(limit1, axis1, limit2, axis2, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToOpenBox(kel::Real limitX, kel::Real limitZ, const kel::Vec3& start,
                             const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToOpenBox(limitX, limitZ, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToBox(const kel::Vec3& halfExtents, const kel::Vec3& start, const kel::Vec3& direction,
                         kel::Interval& inside)
{
  return clipLineToBox(halfExtents, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToInfiniteCylinder(kel::Real radius, const kel::Vec3& start, const kel::Vec3& direction,
                                      kel::Interval& inside)
{
  return clipLineToInfiniteCylinder(radius, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToCylinder(kel::Real radius, kel::Real height, const kel::Vec3& start,
                              const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToCylinder(radius, height, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToSphere(kel::Real radius, const kel::Vec3& start, const kel::Vec3& direction,
                            kel::Interval& inside)
{
  return clipLineToSphere(radius, start, direction, inside) && cutToRay(inside);
}

inline bool clipRayToCapsule(kel::Real radius, kel::Real height, const kel::Vec3& start,
                             const kel::Vec3& direction, kel::Interval& inside)
{
  return clipLineToCapsule(radius, height, start, direction, inside) && cutToRay(inside);
}

inline bool clipLineSegmentToPlane(kel::Real value, unsigned int axis, int side, const kel::Vec3& start,
                                   const kel::Vec3& end, kel::Interval& inside)
{
  return clipLineToPlane(value, axis, side, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToSlab(kel::Real limit, unsigned int axis, const kel::Vec3& start,
                                  const kel::Vec3& end, kel::Interval& inside)
{
  return clipLineToSlab(limit, axis, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToDoubleSlab(kel::Real limit1, unsigned int axis1, kel::Real limit2,
                                        unsigned int axis2, const kel::Vec3& start, const kel::Vec3& end,
                                        kel::Interval& inside)
{
  return clipLineToDoubleSlab(limit1, axis1, limit2, axis2, start, end - start, inside) &&
         cutToSegment(inside);
}

inline bool clipLineSegmentToOpenBox(kel::Real limitX, kel::Real limitZ, const kel::Vec3& start,
                                     const kel::Vec3& end, kel::Interval& inside)
{
  return clipLineToOpenBox(limitX, limitZ, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToBox(const kel::Vec3& halfExtents, const kel::Vec3& start, const kel::Vec3& end,
                                 kel::Interval& inside)
{
  return clipLineToBox(halfExtents, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToInfiniteCylinder(kel::Real radius, const kel::Vec3& start, const kel::Vec3& end,
                                              kel::Interval& inside)
{
  return clipLineToInfiniteCylinder(radius, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToCylinder(kel::Real radius, kel::Real height, const kel::Vec3& start,
                                      const kel::Vec3& end, kel::Interval& inside)
{
  return clipLineToCylinder(radius, height, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToSphere(kel::Real radius, const kel::Vec3& start, const kel::Vec3& end,
                                    kel::Interval& inside)
{
  return clipLineToSphere(radius, start, end - start, inside) && cutToSegment(inside);
}

inline bool clipLineSegmentToCapsule(kel::Real radius, kel::Real height, const kel::Vec3& start,
                                     const kel::Vec3& end, kel::Interval& inside)
{
  return clipLineToCapsule(radius, height, start, end - start, inside) && cutToSegment(inside);
}

} // namespace kelCollide
