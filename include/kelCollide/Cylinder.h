#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// A cylinder along y about the origin of its frame.
class Cylinder : public Shape
{
public:
  /// Radius and height, m, above 0.
  Cylinder(const kel::Real& radius, const kel::Real& height)
      : Shape(CYLINDER), m_radius(radius), m_height(height)
  {}

  void setRadius(kel::Real radius);
  kel::Real getRadius() const { return m_radius; }
  void setHeight(kel::Real height);
  kel::Real getHeight() const { return m_height; }

  kel::Real getVolume() const override;
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override;
  bool hasSupportFunction() const override { return true; }
  kel::Vec3 getSupportPoint(const kel::Vec3& direction) const override;
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Cylinder"; }

protected:
  ~Cylinder() override = default;

private:
  kel::Real m_radius;
  kel::Real m_height;
};

} // namespace kelCollide
