#include "collision/narrow/facePatch.h"
#include <algorithm>
#include <utility>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

namespace {

/// Keeps what lies inside the sides of a polygon, seen along a normal.
void clipToSides(const Face& polygon, const Vec3& normal, Face& clipped)
{
  for (std::size_t i = 0; i < polygon.size && clipped.size > 0; ++i) {
    const Vec3& corner = polygon.points[i];
    const Vec3 outward = cross(polygon.points[(i + 1) % polygon.size] - corner, normal);
    const Real tolerance = 1e-9 * outward.length2();
    const auto height = [&](const Vec3& point) { return (point - corner) * outward; };
    const Face before = clipped;
    clipped.size = 0;
    const bool isSegment = before.size == 2;
    for (std::size_t k = 0; k < before.size; ++k) {
      const Vec3& point = before.points[k];
      const Vec3& next = before.points[(k + 1) % before.size];
      const Real from = height(point);
      const Real to = height(next);
      if (from <= tolerance) clipped.add(point);
      const bool isBack = isSegment && k == 1;
      // Where one end is just outside within the tolerance, the sides cross beyond it, perhaps far away.
      if ((from > tolerance) != (to > tolerance) && !isBack)
        clipped.add(point + (next - point) * std::clamp(from / (from - to), 0.0, 1.0));
    }
  }
}

/// How much a face looks along a direction; below 0 for what is no polygon.
Real alignment(const Face& face, const Vec3& direction)
{
  return face.isPolygon() ? face.normal * direction : -1;
}

} // namespace

bool meetFaces(const Face& first, const Face& second, const Vec3& normal, Real reach, Patch& patch)
{
  const Real firstLooks = alignment(first, -normal);
  const Real secondLooks = alignment(second, normal);
  constexpr Real steepest = 0.1;    // cosine; of steeper faces the points say nothing
  constexpr Real preference = 1e-3; // so that rounding does not choose between two flat ones
  const bool secondCuts = secondLooks >= firstLooks - preference;
  const Face& reference = secondCuts ? second : first;
  if ((secondCuts ? secondLooks : firstLooks) < steepest) return false;

  Face clipped = secondCuts ? first : second;
  clipToSides(reference, secondCuts ? normal : -normal, clipped);
  const std::size_t before = patch.size();
  for (std::size_t i = 0; i < clipped.size; ++i) {
    const Vec3& point = clipped.points[i];
    const Real along = ((reference.points[0] - point) * reference.normal) / (normal * reference.normal);
    PatchPoint found{point, point + normal * along, normal, -along};
    if (!secondCuts) {
      std::swap(found.onFirst, found.onSecond);
      found.distance = along;
    }
    if (found.distance <= reach) patch.push_back(found);
  }
  return patch.size() > before;
}

} // namespace kelCollide
