#pragma once
#include "kelCollide/Capsule.h"

namespace kelCollide {

/// A piece of wire: a capsule that remembers where its ends were.
class WireShape : public Capsule
{
public:
  /// Radius and height as of a capsule, m, and the ends' earlier places in the world.
  WireShape(kel::Real radius, kel::Real height, const kel::Vec3& previousEndPoint0 = kel::Vec3(),
            const kel::Vec3& previousEndPoint1 = kel::Vec3())
      : Capsule(WIRE_SHAPE, radius, height), m_previousEndPoints{previousEndPoint0, previousEndPoint1}
  {}

  /// Where the ends were, in the world, m.
  kel::Vec3 getPreviousEndPoint0() const { return m_previousEndPoints[0]; }
  kel::Vec3 getPreviousEndPoint1() const { return m_previousEndPoints[1]; }
  /// Sets the transform to the world and everything else at once.
  void set(const kel::AffineMatrix4x4& transform, kel::Real radius, kel::Real height,
           const kel::Vec3& previousEndPoint0, const kel::Vec3& previousEndPoint1);
  kel::String getClassName() const override { return "WireShape"; }

protected:
  ~WireShape() override = default;

private:
  kel::Vec3 m_previousEndPoints[2];
};

} // namespace kelCollide
