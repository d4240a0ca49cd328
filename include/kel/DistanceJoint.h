#pragma once
#include "kel/Constraint1DOF.h"

namespace kel {

/// Holds two anchors at the distance that they have at first. The angle is the distance, m. Its only degree
/// of freedom is the lock, which is enabled. At distance 0, without bounds of the force, it is a ball joint.
class DistanceJoint : public Constraint1DOF
{
public:
  /// From a frame of a body to a point of the world.
  DistanceJoint(RigidBody* body1, Frame* frame1, const Vec3& worldPoint);
  /// With frames as for `RigidBodyAttachment`; a null one is made at the origin.
  DistanceJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2);
  /// Between points of two model frames, or of one and the world.
  DistanceJoint(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2);
  DistanceJoint(RigidBody* body1, const Vec3& point1, const Vec3& worldPoint);

  /// Holds the anchors at the distance that they have now.
  bool rebind() override;
  String getClassName() const override { return "DistanceJoint"; }

protected:
  ~DistanceJoint() override = default;

private:
  void build();
};

} // namespace kel
