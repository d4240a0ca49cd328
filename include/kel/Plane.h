#pragma once
#include "kel/AffineMatrix4x4.h"

namespace kel {

/// The plane `n . p + d = 0`. Distances are in metres if the normal n has length 1, which nothing here makes
/// sure of but where it says so.
class Plane
{
public:
  /// Normal z through the origin.
  constexpr Plane() : Plane(0, 0, 1, 0) {}
  /// Normal and d as they are.
  explicit constexpr Plane(const Vec4& plane) : m_plane(plane) {}
  constexpr Plane(Real x, Real y, Real z, Real d) : m_plane(x, y, z, d) {}
  constexpr Plane(const Vec3& normal, Real d) : m_plane(normal, d) {}
  /// Normal as it is, and a point of the plane.
  constexpr Plane(const Vec3& normal, const Vec3& point) : Plane(normal, -(normal * point)) {}
  /// Three points, counter-clockwise when seen from the side of the normal, which gets length 1. It is null
  /// for three points of a line.
  Plane(const Vec3& a, const Vec3& b, const Vec3& c) : Plane(cross(a - b, a - c).normal(), a) {}

  constexpr Vec3 getNormal() const { return Vec3(m_plane.x(), m_plane.y(), m_plane.z()); }
  constexpr Real getDistance() const { return m_plane.w(); }
  /// Normal and d.
  constexpr const Vec4& asVec4() const { return m_plane; }
  constexpr void setNormal(const Vec3& normal) { m_plane = Vec4(normal, getDistance()); }
  constexpr void setDistance(Real d) { m_plane.w() = d; }
  constexpr void set(const Vec4& plane) { m_plane = plane; }
  constexpr void set(const Plane& plane) { *this = plane; }
  /// `n . p + d`: the height above the plane if n has length 1.
  constexpr Real signedDistanceToPoint(const Vec3& point) const
  {
    return getNormal() * point + getDistance();
  }
  /// The plane after a rigid transform.
  Plane calculateTransformedPlane(const AffineMatrix4x4& transform) const
  {
    const Vec3 normal = getNormal();
    return Plane(transform.transformVector(normal), transform.transformPoint(normal * -getDistance()));
  }
  /// The same by another name.
  Plane calculatePlane(const AffineMatrix4x4& transform) const
  {
    return calculateTransformedPlane(transform);
  }

private:
  Vec4 m_plane;
};

} // namespace kel
