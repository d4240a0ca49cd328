#pragma once
#include "kel/Vec3.h"
#include "kel/typedContainers.h"
#include <memory>
#include <vector>

namespace kelCollide {

/// The convex hull of points: a polyhedron, or a polygon with two sides, a segment or a point, if the points
/// span no more.
struct Hull
{
  struct Polygon
  {
    std::vector<std::size_t> corners; ///< of `points`, counter-clockwise when seen from outside
    kel::Vec3 normal;                 ///< unit, outward
    kel::Real height;                 ///< of the plane above the origin, along the normal
  };

  std::vector<kel::Vec3> points;    ///< corners of the hull, and some on its faces
  std::vector<kel::UInt32> origins; ///< for each of them its index among the points given
  std::vector<Polygon> polygons;    ///< flat faces; some small ones may be missing
  kel::UInt32Vector facets;         ///< the surface as triangles of the points given, some without area
  kel::Vec3 center;                 ///< mean of the points

  /// The corner that lies furthest along a direction; the hull must have one.
  kel::Vec3 support(const kel::Vec3& direction) const;
  /// The polygons as triangles of the points given.
  kel::UInt32Vector triangles() const;

  /// The hull of the points that are finite.
  static std::shared_ptr<const Hull> of(const kel::Vec3Vector& points);

private:
  void buildPolyhedron(const kel::Vec3Vector& given, const std::vector<kel::UInt32>& usable, kel::Real size);
  void addTriangles(const std::vector<std::size_t>& corners, kel::UInt32Vector& indices) const;
  /// Whether all of some corners lie in a face that looks about that way.
  bool hasFace(const std::vector<std::size_t>& corners, const kel::Vec3& normal, kel::Real tolerance) const;
  void addPolygon(const kel::Vec3& normal, kel::Real height, kel::Real tolerance);
};

} // namespace kelCollide
