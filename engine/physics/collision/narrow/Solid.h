#pragma once
#include "collision/narrow/Face.h"
#include "collision/shapes/Hull.h"
#include "kel/AffineMatrix4x4.h"
#include <variant>

namespace kelCollide {

class Shape;

/// An axis of a frame in the world.
inline kel::Vec3 axisOf(const kel::AffineMatrix4x4& transform, std::size_t i)
{
  return {transform(i, 0), transform(i, 1), transform(i, 2)};
}

/// A convex solid somewhere in space: a core, and everything within a distance of it.
class Solid
{
public:
  virtual ~Solid() = default;

  /// The point of the core that lies furthest along a direction of any length.
  virtual kel::Vec3 coreSupport(const kel::Vec3& direction) const = 0;
  /// The part of the surface that looks most along a unit direction. It holds the point that lies furthest,
  /// but for hulls, whose faces may miss it.
  virtual void face(const kel::Vec3& direction, Face& face) const = 0;

  /// The point of the solid that lies furthest along a unit direction.
  kel::Vec3 support(const kel::Vec3& direction) const
  {
    return coreSupport(direction) + direction * m_rounding;
  }
  /// Distance from the core to the surface, m. Flat faces are where they are in the shape itself; edges and
  /// corners are rounded by this.
  kel::Real rounding() const { return m_rounding; }
  const kel::Vec3& center() const { return m_center; }

protected:
  Solid(const kel::Vec3& center, kel::Real rounding) : m_center(center), m_rounding(rounding) {}
  Solid(const Solid&) = default;
  Solid& operator=(const Solid&) = default;

private:
  kel::Vec3 m_center;
  kel::Real m_rounding;
};

/// A sphere, a capsule or a line.
class SegmentSolid final : public Solid
{
public:
  SegmentSolid(const kel::Vec3& start, const kel::Vec3& end, kel::Real radius)
      : Solid((start + end) * 0.5, radius), m_start(start), m_end(end)
  {}
  kel::Vec3 coreSupport(const kel::Vec3& direction) const override
  {
    return direction * (m_end - m_start) > 0 ? m_end : m_start;
  }
  void face(const kel::Vec3& direction, Face& face) const override;

private:
  kel::Vec3 m_start;
  kel::Vec3 m_end;
};

class BoxSolid final : public Solid
{
public:
  BoxSolid(const kel::Vec3& halfExtents, const kel::AffineMatrix4x4& transform);
  kel::Vec3 coreSupport(const kel::Vec3& direction) const override;
  void face(const kel::Vec3& direction, Face& face) const override;

  /// Unit vector along an edge.
  const kel::Vec3& axis(std::size_t i) const { return m_axes[i]; }
  const kel::Vec3& halfExtents() const { return m_halfExtents; }

private:
  std::array<kel::Vec3, 3> m_axes;
  kel::Vec3 m_halfExtents;
};

class CylinderSolid final : public Solid
{
public:
  CylinderSolid(kel::Real radius, kel::Real height, const kel::AffineMatrix4x4& transform);
  kel::Vec3 coreSupport(const kel::Vec3& direction) const override;
  void face(const kel::Vec3& direction, Face& face) const override;

private:
  kel::Vec3 radialPart(const kel::Vec3& direction) const;

  kel::Vec3 m_axis;
  kel::Vec3 m_side; // some unit vector across the axis
  kel::Real m_radius;
  kel::Real m_halfHeight;
};

class HullSolid final : public Solid
{
public:
  /// The hull must outlive the solid.
  HullSolid(const Hull& hull, const kel::AffineMatrix4x4& transform)
      : Solid(transform.transformPoint(hull.center), 0), m_hull(&hull), m_transform(transform)
  {}
  kel::Vec3 coreSupport(const kel::Vec3& direction) const override;
  void face(const kel::Vec3& direction, Face& face) const override;

private:
  const Hull* m_hull;
  kel::AffineMatrix4x4 m_transform;
};

class TriangleSolid final : public Solid
{
public:
  TriangleSolid(const std::array<kel::Vec3, 3>& corners, const kel::Vec3& normal)
      : Solid((corners[0] + corners[1] + corners[2]) / 3, 0), m_corners(corners), m_normal(normal)
  {}
  kel::Vec3 coreSupport(const kel::Vec3& direction) const override;
  /// The triangle itself, whatever the direction.
  void face(const kel::Vec3& direction, Face& face) const override;

  const std::array<kel::Vec3, 3>& corners() const { return m_corners; }
  const kel::Vec3& normal() const { return m_normal; }

private:
  std::array<kel::Vec3, 3> m_corners;
  kel::Vec3 m_normal;
};

/// The solid of a convex shape, empty for any other one. The shape must outlive it.
class AnySolid
{
public:
  /// At the shape's transform to the world, against an origin: where the numbers are small they are exact.
  AnySolid(const Shape& shape, const kel::Vec3& origin);

  const Solid* get() const;
  const BoxSolid* asBox() const { return std::get_if<BoxSolid>(&m_solid); }

private:
  std::variant<std::monostate, SegmentSolid, BoxSolid, CylinderSolid, HullSolid> m_solid;
};

} // namespace kelCollide
