#pragma once
#include "kel/BallJoint.h"

namespace kel {

/// A ball joint whose degrees of freedom are along x, y and z of the world.
class WorldFrameBallJoint : public BallJoint
{
public:
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  WorldFrameBallJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "WorldFrameBallJoint"; }

protected:
  ~WorldFrameBallJoint() override = default;
};

} // namespace kel
