#pragma once
#include "kel/Constraint2DOF.h"
#include "kel/CylindricalJointFrame.h"

namespace kel {

/// Leaves two bodies, or a body and the world, a way along N of the second attachment and a rotation about
/// it.
class CylindricalJoint : public Constraint2DOF
{
public:
  enum DOF
  {
    ROTATIONAL_1 = 0, ///< about U of the second attachment
    ROTATIONAL_2,     ///< about V
    TRANSLATIONAL_1,  ///< along U
    TRANSLATIONAL_2,  ///< along V
    NUM_DOF
  };

  CylindricalJoint(const CylindricalJointFrame& frame, RigidBody* body1, RigidBody* body2 = nullptr);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  CylindricalJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "CylindricalJoint"; }

protected:
  ~CylindricalJoint() override = default;

private:
  void build();
};

} // namespace kel
