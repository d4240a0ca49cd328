#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// A ball about the origin of its frame.
class Sphere : public Shape
{
public:
  /// Radius in m, above 0.
  explicit Sphere(kel::Real radius) : Shape(SPHERE), m_radius(radius) {}

  void setRadius(kel::Real radius);
  kel::Real getRadius() const { return m_radius; }

  kel::Real getVolume() const override;
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override;
  bool hasSupportFunction() const override { return true; }
  kel::Vec3 getSupportPoint(const kel::Vec3& direction) const override;
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Sphere"; }

protected:
  ~Sphere() override = default;

private:
  kel::Real m_radius;
};

} // namespace kelCollide
