#pragma once
#include "kel/Plane.h"
#include "kelCollide/Shape.h"

namespace kelCollide {

/// The half space below the plane `n . p + d = 0` of its frame: solid where that is negative. It has no
/// volume and no inertia.
class Plane : public Shape
{
public:
  /// The ground: normal +z, through the origin.
  Plane() : Plane(kel::Plane()) {}
  explicit Plane(const kel::Plane& plane) : Shape(PLANE), m_plane(plane) {}
  /// Normal and d, taken as they are; the normal should have length 1.
  Plane(kel::Real x, kel::Real y, kel::Real z, kel::Real d) : Plane(kel::Plane(x, y, z, d)) {}
  Plane(const kel::Vec3& normal, kel::Real d) : Plane(kel::Plane(normal, d)) {}
  explicit Plane(const kel::Vec4& plane) : Plane(kel::Plane(plane)) {}
  /// Normal and a point of the plane.
  Plane(const kel::Vec3& normal, const kel::Vec3& point) : Plane(kel::Plane(normal, point)) {}
  /// Three points, counter-clockwise when seen from outside.
  Plane(const kel::Vec3& p1, const kel::Vec3& p2, const kel::Vec3& p3) : Plane(kel::Plane(p1, p2, p3)) {}

  void set(const kel::Vec4& plane);
  void set(const kel::Vec3& p1, const kel::Vec3& p2, const kel::Vec3& p3);
  /// Normal and d.
  kel::Vec4 asVec4() const { return m_plane.asVec4(); }
  kel::Vec3 getNormal() const { return m_plane.getNormal(); }
  kel::Real getDistance() const { return m_plane.getDistance(); }
  void setNormal(const kel::Vec3& normal);
  void setDistance(kel::Real d);
  /// The plane, as normal and d, after a rigid transform.
  kel::Vec4 calculatePlane(const kel::AffineMatrix4x4& transform) const
  {
    return m_plane.calculatePlane(transform).asVec4();
  }
  /// Height of a point of the frame above the plane, m; negative inside.
  kel::Real signedDistanceToPoint(const kel::Vec3& point) const
  {
    return m_plane.signedDistanceToPoint(point);
  }

  BoundingAABB calculateLocalBound() const override;
  /// Reaches no further than the plane where that is level or upright along an axis of the world.
  const BoundingAABB& updateBoundingVolume() override;
  kel::String getClassName() const override { return "Plane"; }

protected:
  ~Plane() override = default;

private:
  kel::Plane m_plane;
};

} // namespace kelCollide
