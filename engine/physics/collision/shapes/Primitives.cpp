#include "kelCollide/Box.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
#include "kelCollide/WireShape.h"
#include <numbers>

namespace kelCollide {

using kel::Real;
using kel::SPDMatrix3x3;
using kel::Vec3;
using kel::Vec4;

void Box::setHalfExtents(const Vec3& halfExtents)
{
  m_halfExtents = halfExtents;
  modified();
}

Real Box::getVolume() const { return 8 * m_halfExtents.x() * m_halfExtents.y() * m_halfExtents.z(); }

SPDMatrix3x3 Box::calculateInertia(Real mass) const
{
  const Vec3 square = Vec3::mul(m_halfExtents, m_halfExtents);
  return SPDMatrix3x3(Vec3(square.y() + square.z(), square.x() + square.z(), square.x() + square.y()) *
                      (mass / 3));
}

Vec3 Box::getSupportPoint(const Vec3& direction) const
{
  return Vec3(direction.x() < 0 ? -m_halfExtents.x() : m_halfExtents.x(),
              direction.y() < 0 ? -m_halfExtents.y() : m_halfExtents.y(),
              direction.z() < 0 ? -m_halfExtents.z() : m_halfExtents.z());
}

BoundingAABB Box::calculateLocalBound() const { return {-m_halfExtents, m_halfExtents}; }

void Sphere::setRadius(Real radius)
{
  m_radius = radius;
  modified();
}

Real Sphere::getVolume() const { return 4.0 / 3 * std::numbers::pi * m_radius * m_radius * m_radius; }

SPDMatrix3x3 Sphere::calculateInertia(Real mass) const
{
  return SPDMatrix3x3(Vec3(0.4 * mass * m_radius * m_radius));
}

Vec3 Sphere::getSupportPoint(const Vec3& direction) const { return direction.normal() * m_radius; }

BoundingAABB Sphere::calculateLocalBound() const { return {Vec3(-m_radius), Vec3(m_radius)}; }

void Plane::set(const Vec4& plane)
{
  m_plane.set(plane);
  modified();
}

void Plane::set(const Vec3& p1, const Vec3& p2, const Vec3& p3)
{
  m_plane.set(kel::Plane(p1, p2, p3));
  modified();
}

void Plane::setNormal(const Vec3& normal)
{
  m_plane.setNormal(normal);
  modified();
}

void Plane::setDistance(Real d)
{
  m_plane.setDistance(d);
  modified();
}

BoundingAABB Plane::calculateLocalBound() const
{
  constexpr Real infinite = 1e30; // finite, so that it can be rotated
  return {Vec3(-infinite), Vec3(infinite)};
}

const BoundingAABB& Plane::updateBoundingVolume()
{
  BoundingAABB bound = calculateLocalBound();
  const Vec4 plane = calculatePlane(getTransform());
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (plane[(axis + 1) % 3] != 0 || plane[(axis + 2) % 3] != 0 || plane[axis] == 0) continue;
    (plane[axis] > 0 ? bound.max() : bound.min())[axis] = -plane[3] / plane[axis];
  }
  return m_bound = bound;
}

void Capsule::setRadius(Real radius)
{
  m_radius = radius;
  modified();
}

void Capsule::setHeight(Real height)
{
  m_height = height;
  modified();
}

Real Capsule::getVolume() const
{
  return std::numbers::pi * m_radius * m_radius * (m_height + 4.0 / 3 * m_radius);
}

SPDMatrix3x3 Capsule::calculateInertia(Real mass) const
{
  const Real square = m_radius * m_radius;
  const Real middle =
      m_height + 4.0 / 3 * m_radius > 0 ? mass * m_height / (m_height + 4.0 / 3 * m_radius) : 0;
  const Real caps = mass - middle;
  const Real across = middle * (square / 4 + m_height * m_height / 12) +
                      caps * (0.4 * square + m_height * m_height / 4 + 0.375 * m_height * m_radius);
  return SPDMatrix3x3(Vec3(across, (middle / 2 + caps * 0.4) * square, across));
}

Vec3 Capsule::getSupportPoint(const Vec3& direction) const
{
  return direction.normal() * m_radius + Vec3(0, direction.y() < 0 ? -m_height / 2 : m_height / 2, 0);
}

BoundingAABB Capsule::calculateLocalBound() const
{
  const Vec3 half(m_radius, m_radius + m_height / 2, m_radius);
  return {-half, half};
}

void WireShape::set(const kel::AffineMatrix4x4& transform, Real radius, Real height,
                    const Vec3& previousEndPoint0, const Vec3& previousEndPoint1)
{
  propagateTransform(transform);
  setRadius(radius);
  setHeight(height);
  m_previousEndPoints[0] = previousEndPoint0;
  m_previousEndPoints[1] = previousEndPoint1;
}

void Cylinder::setRadius(Real radius)
{
  m_radius = radius;
  modified();
}

void Cylinder::setHeight(Real height)
{
  m_height = height;
  modified();
}

Real Cylinder::getVolume() const { return std::numbers::pi * m_radius * m_radius * m_height; }

SPDMatrix3x3 Cylinder::calculateInertia(Real mass) const
{
  const Real square = m_radius * m_radius;
  const Real across = mass * (square / 4 + m_height * m_height / 12);
  return SPDMatrix3x3(Vec3(across, mass * square / 2, across));
}

Vec3 Cylinder::getSupportPoint(const Vec3& direction) const
{
  const Vec3 radial = Vec3(direction.x(), 0, direction.z()).normal() * m_radius;
  return radial + Vec3(0, direction.y() < 0 ? -m_height / 2 : m_height / 2, 0);
}

BoundingAABB Cylinder::calculateLocalBound() const
{
  const Vec3 half(m_radius, m_height / 2, m_radius);
  return {-half, half};
}

void Line::setFirstPoint(const Vec3& point)
{
  m_first = point;
  modified();
}

void Line::setSecondPoint(const Vec3& point)
{
  m_second = point;
  modified();
}

BoundingAABB Line::calculateLocalBound() const
{
  BoundingAABB bound(m_first, m_first);
  bound.expand(m_second, m_second);
  return bound;
}

} // namespace kelCollide
