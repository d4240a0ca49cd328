#include "collision/shapes/Hull.h"
#include "collision/bulletVectors.h"
#include <LinearMath/btConvexHullComputer.h>
#include <algorithm>
#include <cmath>

namespace kelCollide {

using kel::Real;
using kel::UInt32;
using kel::Vec3;

namespace {

constexpr Real FLAT = 1e-9;     // part of the size below which an extent counts as none
constexpr Real COPLANAR = 1e-7; // part of the size by which corners of one face may miss its plane

/// The points that span the most: one, two or three of them, and a fourth if the points have a volume.
std::vector<UInt32> findExtremes(const kel::Vec3Vector& points, const std::vector<UInt32>& usable, Real& size)
{
  std::vector<UInt32> extremes = {usable.front()};
  const auto addFurthest = [&](auto measure, Real smallest) {
    const UInt32 best = *std::max_element(usable.begin(), usable.end(), [&](UInt32 a, UInt32 b) {
      return measure(points[a]) < measure(points[b]);
    });
    if (measure(points[best]) <= smallest) return false;
    extremes.push_back(best);
    return true;
  };
  const Vec3 origin = points[extremes[0]];
  if (!addFurthest([&](const Vec3& p) { return p.distance(origin); }, 0)) return extremes;
  size = points[extremes[1]].distance(origin);
  const Vec3 along = (points[extremes[1]] - origin) / size;
  if (!addFurthest([&](const Vec3& p) { return cross(p - origin, along).length(); }, FLAT * size))
    return extremes;
  const Vec3 normal = cross(along, points[extremes[2]] - origin).normal();
  addFurthest([&](const Vec3& p) { return std::fabs((p - origin) * normal); }, FLAT * size);
  return extremes;
}

std::vector<std::size_t> cornersOf(const btConvexHullComputer& computer, int face)
{
  std::vector<std::size_t> corners;
  const btConvexHullComputer::Edge* const first = &computer.edges[computer.faces[face]];
  const btConvexHullComputer::Edge* edge = first;
  do {
    corners.push_back(static_cast<std::size_t>(edge->getSourceVertex()));
    edge = edge->getNextEdgeOfFace();
  } while (edge != first);
  return corners;
}

/// Brings points of a plane into their order around the middle, counter-clockwise, from the outmost one on.
void sortAround(std::vector<std::size_t>& indices, const std::vector<Vec3>& points, const Vec3& normal)
{
  Vec3 middle;
  for (const std::size_t i : indices) middle += points[i] / static_cast<Real>(indices.size());
  const std::size_t outmost =
      *std::max_element(indices.begin(), indices.end(), [&](std::size_t a, std::size_t b) {
        return points[a].distance2(middle) < points[b].distance2(middle);
      });
  const Vec3 u = (points[outmost] - middle).normal();
  const Vec3 v = cross(normal, u);
  const auto angle = [&](std::size_t i) {
    return std::atan2((points[i] - middle) * v, (points[i] - middle) * u);
  };
  std::stable_sort(indices.begin(), indices.end(),
                   [&](std::size_t a, std::size_t b) { return angle(a) < angle(b); });
  std::rotate(indices.begin(), std::find(indices.begin(), indices.end(), outmost), indices.end());
}

/// The corners of the convex outline of points of a plane, counter-clockwise; by Graham's scan. Points of its
/// sides are none: the faces on both sides leave them out, so that their triangles meet.
std::vector<std::size_t> outlineOf(std::vector<std::size_t> indices, const std::vector<Vec3>& points,
                                   const Vec3& normal, Real tolerance)
{
  if (indices.size() < 3) return {};
  sortAround(indices, points, normal);
  indices.push_back(indices.front());
  std::vector<std::size_t> outline;
  for (const std::size_t next : indices) {
    const auto isLastNoCorner = [&] {
      const Vec3 before = points[outline[outline.size() - 2]];
      const Vec3 side = points[next] - before;
      return cross(side, points[outline.back()] - before) * normal >= -tolerance * side.length();
    };
    while (outline.size() >= 2 && isLastNoCorner()) outline.pop_back();
    outline.push_back(next);
  }
  outline.pop_back();
  return outline;
}

} // namespace

Vec3 Hull::support(const Vec3& direction) const
{
  const Vec3* best = points.data();
  Real most = *best * direction;
  for (const Vec3& point : points) {
    const Real along = point * direction;
    if (along > most) {
      most = along;
      best = &point;
    }
  }
  return *best;
}

void Hull::addTriangles(const std::vector<std::size_t>& corners, kel::UInt32Vector& indices) const
{
  for (std::size_t i = 2; i < corners.size(); ++i)
    for (const std::size_t corner : {corners[0], corners[i - 1], corners[i]})
      indices.push_back(origins[corner]);
}

kel::UInt32Vector Hull::triangles() const
{
  kel::UInt32Vector indices;
  for (const Polygon& polygon : polygons) addTriangles(polygon.corners, indices);
  return indices;
}

std::shared_ptr<const Hull> Hull::of(const kel::Vec3Vector& given)
{
  auto hull = std::make_shared<Hull>();
  std::vector<UInt32> usable;
  for (std::size_t i = 0; i < given.size(); ++i)
    if (std::isfinite(given[i].length2())) usable.push_back(static_cast<UInt32>(i));
  if (usable.empty()) return hull;

  Real size = 0;
  const std::vector<UInt32> extremes = findExtremes(given, usable, size);
  if (extremes.size() == 4) {
    hull->buildPolyhedron(given, usable, size);
  } else {
    const std::vector<UInt32>& kept = extremes.size() == 3 ? usable : extremes;
    hull->origins = kept;
    for (const UInt32 index : kept) hull->points.push_back(given[index]);
    if (extremes.size() == 3) {
      const Vec3 a = given[extremes[0]];
      const Vec3 normal = cross(given[extremes[1]] - a, given[extremes[2]] - a).normal();
      hull->addPolygon(normal, normal * a, COPLANAR * size);
      hull->addPolygon(-normal, -(normal * a), COPLANAR * size);
      hull->facets = hull->triangles();
    }
  }
  for (const Vec3& point : hull->points) hull->center += point / static_cast<Real>(hull->points.size());
  return hull;
}

void Hull::buildPolyhedron(const kel::Vec3Vector& given, const std::vector<UInt32>& usable, Real size)
{
  std::vector<Real> coordinates;
  for (const UInt32 index : usable)
    coordinates.insert(coordinates.end(), given[index].ptr(), given[index].ptr() + 3);
  btConvexHullComputer computer;
  computer.compute(coordinates.data(), 3 * int(sizeof(Real)), static_cast<int>(usable.size()), 0, 0);
  for (int i = 0; i < computer.vertices.size(); ++i) {
    origins.push_back(usable[static_cast<std::size_t>(computer.original_vertex_index[i])]);
    points.push_back(given[origins.back()]);
  }
  for (int i = 0; i < computer.faces.size(); ++i) {
    const std::vector<std::size_t> corners = cornersOf(computer, i);
    addTriangles(corners, facets);
    const Vec3 origin = points[corners[0]];
    Vec3 area;
    for (std::size_t k = 2; k < corners.size(); ++k)
      area += cross(points[corners[k - 1]] - origin, points[corners[k]] - origin);
    if (area.length() > FLAT * size * size && !hasFace(corners, area.normal(), COPLANAR * size))
      addPolygon(area.normal(), area.normal() * origin, COPLANAR * size);
  }
}

bool Hull::hasFace(const std::vector<std::size_t>& corners, const Vec3& normal, Real tolerance) const
{
  return std::any_of(polygons.begin(), polygons.end(), [&](const Polygon& known) {
    return known.normal * normal > 0.999 &&
           std::all_of(corners.begin(), corners.end(), [&](std::size_t corner) {
             return std::fabs(known.normal * points[corner] - known.height) <= tolerance;
           });
  });
}

void Hull::addPolygon(const Vec3& normal, Real height, Real tolerance)
{
  std::vector<std::size_t> inPlane;
  for (std::size_t i = 0; i < points.size(); ++i)
    if (std::fabs(normal * points[i] - height) <= tolerance) inPlane.push_back(i);
  std::vector<std::size_t> corners = outlineOf(std::move(inPlane), points, normal, tolerance);
  if (corners.size() >= 3) polygons.push_back({std::move(corners), normal, height});
}

} // namespace kelCollide
