#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// The half space below the plane `n . p + d = 0` of its frame: solid where that is negative. It has no
/// volume and no inertia.
class Plane : public Shape
{
public:
  /// The ground: normal +z, through the origin.
  Plane() : Plane(kel::Vec3(0, 0, 1), 0) {}
  /// Normal and d, taken as they are; the normal should have length 1.
  Plane(kel::Real x, kel::Real y, kel::Real z, kel::Real d) : Plane(kel::Vec3(x, y, z), d) {}
  Plane(const kel::Vec3& normal, kel::Real d) : Shape(PLANE), m_normal(normal), m_distance(d) {}
  explicit Plane(const kel::Vec4& plane) : Plane(plane.x(), plane.y(), plane.z(), plane.w()) {}
  /// Normal and a point of the plane.
  Plane(const kel::Vec3& normal, const kel::Vec3& point) : Plane(normal, -(normal * point)) {}
  /// Three points, counter-clockwise when seen from outside.
  Plane(const kel::Vec3& p1, const kel::Vec3& p2, const kel::Vec3& p3) : Plane() { set(p1, p2, p3); }

  void set(const kel::Vec4& plane);
  void set(const kel::Vec3& p1, const kel::Vec3& p2, const kel::Vec3& p3);
  /// Normal and d.
  kel::Vec4 asVec4() const { return kel::Vec4(m_normal, m_distance); }
  const kel::Vec3& getNormal() const { return m_normal; }
  kel::Real getDistance() const { return m_distance; }
  void setNormal(const kel::Vec3& normal);
  void setDistance(kel::Real d);
  /// The plane, as normal and d, after a rigid transform.
  kel::Vec4 calculatePlane(const kel::AffineMatrix4x4& transform) const;
  /// Height of a point of the frame above the plane, m; negative inside.
  kel::Real signedDistanceToPoint(const kel::Vec3& point) const { return m_normal * point + m_distance; }

  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Plane"; }

protected:
  ~Plane() override = default;

private:
  kel::Vec3 m_normal;
  kel::Real m_distance;
};

} // namespace kelCollide
