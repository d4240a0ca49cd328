#include "kelCollide/Box.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
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

} // namespace kelCollide
