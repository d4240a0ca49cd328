#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// A cylinder along y with half a ball on either end, about the origin of its frame.
class Capsule : public Shape
{
public:
  /// Radius, and height of the cylinder without the two halves of the ball; m, at least 0.
  Capsule(kel::Real radius, kel::Real height) : Capsule(CAPSULE, radius, height) {}

  void setRadius(kel::Real radius);
  kel::Real getRadius() const { return m_radius; }
  void setHeight(kel::Real height);
  kel::Real getHeight() const { return m_height; }

  kel::Real getVolume() const override;
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override;
  bool hasSupportFunction() const override { return true; }
  kel::Vec3 getSupportPoint(const kel::Vec3& direction) const override;
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Capsule"; }

protected:
  Capsule(Type type, kel::Real radius, kel::Real height) : Shape(type), m_radius(radius), m_height(height) {}
  ~Capsule() override = default;

private:
  kel::Real m_radius;
  kel::Real m_height;
};

} // namespace kelCollide
