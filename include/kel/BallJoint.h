#pragma once
#include "kel/BallJointFrame.h"
#include "kel/Constraint.h"

namespace kel {

/// Holds the anchors of two bodies, or of a body and the world, together.
class BallJoint : public Constraint
{
public:
  enum DOF
  {
    TRANSLATIONAL_1 = 0, ///< along U of the second attachment
    TRANSLATIONAL_2,     ///< along V
    TRANSLATIONAL_3,     ///< along N
    NUM_DOF
  };

  BallJoint(const BallJointFrame& frame, RigidBody* body1, RigidBody* body2 = nullptr);
  /// At a point of the first body's model frame.
  BallJoint(RigidBody* body1, const Vec3& point, RigidBody* body2 = nullptr);
  /// Brings points of two model frames together.
  BallJoint(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  BallJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "BallJoint"; }

protected:
  /// Without bodies and parts.
  BallJoint() = default;
  ~BallJoint() override = default;
};

} // namespace kel
