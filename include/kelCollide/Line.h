#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// A segment between two points of its frame. It has no volume and no inertia.
class Line : public Shape
{
public:
  /// The end points, m.
  Line(const kel::Vec3& first, const kel::Vec3& second) : Shape(LINE), m_first(first), m_second(second) {}

  void setFirstPoint(const kel::Vec3& point);
  const kel::Vec3& getFirstPoint() const { return m_first; }
  void setSecondPoint(const kel::Vec3& point);
  const kel::Vec3& getSecondPoint() const { return m_second; }

  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Line"; }

protected:
  ~Line() override = default;

private:
  kel::Vec3 m_first;
  kel::Vec3 m_second;
};

} // namespace kelCollide
