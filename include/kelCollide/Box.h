#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// A box about the origin of its frame.
class Box : public Shape
{
public:
  /// Half extents along the axes, m, above 0.
  explicit Box(const kel::Vec3& halfExtents) : Shape(BOX), m_halfExtents(halfExtents) {}
  Box(kel::Real x, kel::Real y, kel::Real z) : Box(kel::Vec3(x, y, z)) {}

  void setHalfExtents(const kel::Vec3& halfExtents);
  const kel::Vec3& getHalfExtents() const { return m_halfExtents; }

  kel::Real getVolume() const override;
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override;
  bool hasSupportFunction() const override { return true; }
  kel::Vec3 getSupportPoint(const kel::Vec3& direction) const override;
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Box"; }

protected:
  ~Box() override = default;

private:
  kel::Vec3 m_halfExtents;
};

} // namespace kelCollide
