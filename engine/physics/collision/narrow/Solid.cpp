#include "collision/narrow/Solid.h"
#include "kelCollide/Box.h"
#include "kelCollide/Capsule.h"
#include "kelCollide/Convex.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/Sphere.h"
#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelCollide {

using kel::AffineMatrix4x4;
using kel::Real;
using kel::Vec3;

namespace {

/// Part of the smallest half extent by which edges are rounded. Contacts less deep than this are found by the
/// distance of the cores, which is exact for curved faces, too.
constexpr Real ROUNDING = 1e-3;

} // namespace

void SegmentSolid::face(const Vec3& direction, Face& face) const
{
  const Vec3 offset = direction * rounding();
  const Vec3 along = m_end - m_start;
  const Real length = along.length();
  if (std::fabs(along * direction) > 0.9 * length || length == 0) {
    face.add(coreSupport(direction) + offset);
  } else {
    face.add(m_start + offset);
    face.add(m_end + offset);
  }
}

BoxSolid::BoxSolid(const Vec3& halfExtents, const AffineMatrix4x4& transform)
    : Solid(transform.getTranslate(), ROUNDING * halfExtents.minComponent()), m_axes{axisOf(transform, 0),
                                                                                     axisOf(transform, 1),
                                                                                     axisOf(transform, 2)},
      m_halfExtents(halfExtents)
{}

Vec3 BoxSolid::coreSupport(const Vec3& direction) const
{
  Vec3 point = center();
  for (std::size_t i = 0; i < 3; ++i) {
    const Real half = m_halfExtents[i] - rounding();
    point += m_axes[i] * (m_axes[i] * direction < 0 ? -half : half);
  }
  return point;
}

void BoxSolid::face(const Vec3& direction, Face& face) const
{
  const Vec3 local(m_axes[0] * direction, m_axes[1] * direction, m_axes[2] * direction);
  const std::size_t i = local.maxElement();
  const Real sign = local[i] < 0 ? -1 : 1;
  face.normal = m_axes[i] * sign;
  const Vec3 middle = center() + face.normal * m_halfExtents[i];
  const Vec3 u = m_axes[(i + 1) % 3] * m_halfExtents[(i + 1) % 3];
  const Vec3 v = m_axes[(i + 2) % 3] * (sign * m_halfExtents[(i + 2) % 3]);
  face.add(middle - u - v);
  face.add(middle + u - v);
  face.add(middle + u + v);
  face.add(middle - u + v);
}

CylinderSolid::CylinderSolid(Real radius, Real height, const AffineMatrix4x4& transform)
    : Solid(transform.getTranslate(), ROUNDING * std::min(radius, height / 2)), m_axis(axisOf(transform, 1)),
      m_side(axisOf(transform, 0)), m_radius(radius), m_halfHeight(height / 2)
{}

Vec3 CylinderSolid::radialPart(const Vec3& direction) const
{
  return direction - m_axis * (m_axis * direction);
}

Vec3 CylinderSolid::coreSupport(const Vec3& direction) const
{
  const Real half = m_halfHeight - rounding();
  const Vec3 end = center() + m_axis * (m_axis * direction < 0 ? -half : half);
  return end + radialPart(direction).normal() * (m_radius - rounding());
}

void CylinderSolid::face(const Vec3& direction, Face& face) const
{
  const Real along = m_axis * direction;
  const Vec3 radial = radialPart(direction);
  if (std::fabs(along) < 0.8) {
    const Vec3 middle = center() + radial.normal() * m_radius;
    face.add(middle - m_axis * m_halfHeight);
    face.add(middle + m_axis * m_halfHeight);
    return;
  }
  constexpr int corners = 8;
  face.normal = along < 0 ? -m_axis : m_axis;
  const Vec3 middle = center() + face.normal * m_halfHeight;
  // A cap that leans touches with the lowest point of its rim; one that does not keeps its corners.
  const Vec3 u = radial.length() > 1e-3 ? radial.normal() : m_side;
  const Vec3 v = cross(face.normal, u);
  for (int i = 0; i < corners; ++i) {
    const Real angle = i * (2 * std::numbers::pi / corners);
    face.add(middle + (u * std::cos(angle) + v * std::sin(angle)) * m_radius);
  }
}

Vec3 HullSolid::coreSupport(const Vec3& direction) const
{
  return m_transform.transformPoint(m_hull->support(m_transform.transform3x3Inv(direction)));
}

void HullSolid::face(const Vec3& direction, Face& face) const
{
  const Vec3 local = m_transform.transform3x3Inv(direction);
  const Hull::Polygon* best = nullptr;
  for (const Hull::Polygon& polygon : m_hull->polygons)
    if (!best || polygon.normal * local > best->normal * local) best = &polygon;
  if (!best) { // a point or a segment
    for (const Vec3& point : m_hull->points) face.add(m_transform.transformPoint(point));
    return;
  }
  face.normal = m_transform.transformVector(best->normal);
  const std::size_t stride = best->corners.size() / (Face::CAPACITY / 2) + 1;
  for (std::size_t i = 0; i < best->corners.size(); i += stride)
    face.add(m_transform.transformPoint(m_hull->points[best->corners[i]]));
}

Vec3 TriangleSolid::coreSupport(const Vec3& direction) const
{
  return *std::max_element(m_corners.begin(), m_corners.end(),
                           [&](const Vec3& a, const Vec3& b) { return a * direction < b * direction; });
}

void TriangleSolid::face(const Vec3&, Face& face) const
{
  face.normal = m_normal;
  for (const Vec3& corner : m_corners) face.add(corner);
}

AnySolid::AnySolid(const Shape& shape, const Vec3& origin)
{
  AffineMatrix4x4 transform = shape.getTransform();
  transform.setTranslate(transform.getTranslate() - origin);
  const auto segment = [&](const Vec3& start, const Vec3& end, Real radius) {
    m_solid.emplace<SegmentSolid>(transform.transformPoint(start), transform.transformPoint(end), radius);
  };
  switch (shape.getType()) {
  case Shape::BOX:
    m_solid.emplace<BoxSolid>(static_cast<const Box&>(shape).getHalfExtents(), transform);
    break;
  case Shape::SPHERE:
    segment(Vec3(), Vec3(), static_cast<const Sphere&>(shape).getRadius());
    break;
  case Shape::CAPSULE:
  case Shape::WIRE_SHAPE: {
    const auto& capsule = static_cast<const Capsule&>(shape);
    const Vec3 end(0, capsule.getHeight() / 2, 0);
    segment(-end, end, capsule.getRadius());
    break;
  }
  case Shape::LINE: {
    const auto& line = static_cast<const Line&>(shape);
    segment(line.getFirstPoint(), line.getSecondPoint(), 0);
    break;
  }
  case Shape::CYLINDER: {
    const auto& cylinder = static_cast<const Cylinder&>(shape);
    m_solid.emplace<CylinderSolid>(cylinder.getRadius(), cylinder.getHeight(), transform);
    break;
  }
  case Shape::CONVEX:
    m_solid.emplace<HullSolid>(static_cast<const Convex&>(shape).getHull(), transform);
    break;
  default:
    break;
  }
}

const Solid* AnySolid::get() const
{
  return std::visit(
      [](const auto& solid) -> const Solid* {
        if constexpr (std::is_base_of_v<Solid, std::decay_t<decltype(solid)>>)
          return &solid;
        else
          return nullptr;
      },
      m_solid);
}

} // namespace kelCollide
