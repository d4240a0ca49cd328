#include "solver/AreaStiffness.h"
#include "kelCollide/ElasticRestLengthCalculator.h"
#include "kelCollide/Geometry.h"
#include <algorithm>
#include <numbers>
#include <vector>

namespace kel {

using kelCollide::ContactPoint;
using kelCollide::GeometryContact;
using kelCollide::Shape;

namespace {

/// A contact that has just begun has no area, m of depth.
constexpr Real LEAST_DEPTH = 1e-6;

struct Point
{
  Real x;
  Real y;
  friend bool operator<(const Point& a, const Point& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; }
};

/// Twice the area of a triangle, positive if it turns left.
Real turn(const Point& a, const Point& b, const Point& c)
{
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

/// Area of the convex hull (Andrew's monotone chain).
Real hullArea(std::vector<Point>& points)
{
  std::sort(points.begin(), points.end());
  std::vector<Point> hull;
  for (int side = 0; side < 2; ++side) {
    const std::size_t begin = hull.size();
    for (const Point& point : points) {
      while (hull.size() >= begin + 2 && turn(hull[hull.size() - 2], hull.back(), point) <= 0)
        hull.pop_back();
      hull.push_back(point);
    }
    hull.pop_back(); // the other side begins with it
    std::reverse(points.begin(), points.end());
  }
  Real area = 0;
  for (std::size_t i = 2; i < hull.size(); ++i) area += turn(hull[0], hull[i - 1], hull[i]) / 2;
  return area;
}

Real hullShare(const GeometryContact& contact)
{
  if (contact.getNumPoints() < 3) return 0;
  std::vector<Point> points;
  const ContactPoint first = contact.getPoint(0);
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const ContactPoint point = contact.getPoint(i);
    if (!point.enabled() || point.depth() < 0) continue;
    const Vec3 arm = point.point() - first.point();
    points.push_back({arm * Vec3(first.tangentU()), arm * Vec3(first.tangentV())});
  }
  return points.size() < 3 ? 0 : hullArea(points) / static_cast<Real>(points.size());
}

} // namespace

AreaStiffness::AreaStiffness(const GeometryContact& contact, const ContactMaterial& material)
    : m_contact(contact), m_material(material), m_hullShare(hullShare(contact))
{}

Real AreaStiffness::at(const ContactPoint& point) const
{
  const Vec3 normal(point.normal());
  const Real depth = std::max(point.depth(), LEAST_DEPTH);
  Real length = 0;
  for (std::size_t side = 0; side < 2; ++side)
    if (const Shape* shape = m_contact.geometry(side)->getShape())
      length += kelCollide::ElasticRestLengthCalculator::calculateElasticRestLength(*shape, normal);
  length =
      std::min(std::max(length, m_material.getMinElasticRestLength()), m_material.getMaxElasticRestLength());
  const Real area = m_hullShare > 0 ? m_hullShare : std::numbers::pi * length * depth;
  point.area() = area;
  return m_material.getYoungsModulus() * area / length;
}

} // namespace kel
