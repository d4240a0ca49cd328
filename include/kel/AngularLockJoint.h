#pragma once
#include "kel/Constraint.h"

namespace kel {

/// Leaves two bodies, or a body and the world, no rotation against each other.
class AngularLockJoint : public Constraint
{
public:
  enum DOF
  {
    ROTATIONAL_1 = 0, ///< about U of the second attachment
    ROTATIONAL_2,     ///< about V
    ROTATIONAL_3,     ///< about N
    NUM_DOF
  };

  /// Holds the bodies turned as they are.
  explicit AngularLockJoint(RigidBody* body1, RigidBody* body2 = nullptr);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  AngularLockJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "AngularLockJoint"; }

protected:
  ~AngularLockJoint() override = default;
};

} // namespace kel
