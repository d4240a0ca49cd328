#pragma once
#include "kel/Constraint.h"

namespace kel {

/// Leaves two bodies, or a body and the world, no motion against each other.
class LockJoint : public Constraint
{
public:
  enum DOF
  {
    TRANSLATIONAL_1 = 0, ///< along U of the second attachment
    TRANSLATIONAL_2,     ///< along V
    TRANSLATIONAL_3,     ///< along N
    ROTATIONAL_1,        ///< about U
    ROTATIONAL_2,        ///< about V
    ROTATIONAL_3,        ///< about N
    NUM_DOF
  };

  /// Holds the bodies as they stand, at the origin of the first one's model frame, or at a point of it.
  explicit LockJoint(RigidBody* body1, RigidBody* body2 = nullptr);
  LockJoint(RigidBody* body1, RigidBody* body2, const Vec3& point);
  LockJoint(RigidBody* body1, const Vec3& point);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  LockJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "LockJoint"; }

protected:
  ~LockJoint() override = default;

private:
  void build();
};

} // namespace kel
