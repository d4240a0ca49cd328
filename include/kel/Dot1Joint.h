#pragma once
#include "kel/Constraint.h"

namespace kel {

/// Holds N of the first attachment at right angles to N of the second.
class Dot1Joint : public Constraint
{
public:
  enum DOF
  {
    ROTATIONAL_1 = 0, ///< about the normal of the two axes
    NUM_DOF
  };

  /// By axes of the two model frames, or of one and the world, of any length but 0.
  Dot1Joint(RigidBody* body1, const Vec3& axis1, RigidBody* body2, const Vec3& axis2);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  Dot1Joint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2);

  String getClassName() const override { return "Dot1Joint"; }

protected:
  ~Dot1Joint() override = default;
};

} // namespace kel
