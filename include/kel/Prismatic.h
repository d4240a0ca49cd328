#pragma once
#include "kel/Constraint1DOF.h"
#include "kel/PrismaticFrame.h"

namespace kel {

/// Leaves two bodies, or a body and the world, a way along N of the second attachment.
class Prismatic : public Constraint1DOF
{
public:
  enum DOF
  {
    ROTATIONAL_1 = 0, ///< about U of the second attachment
    ROTATIONAL_2,     ///< about V
    ROTATIONAL_3,     ///< about N
    TRANSLATIONAL_1,  ///< along U
    TRANSLATIONAL_2,  ///< along V
    NUM_DOF
  };

  Prismatic(const PrismaticFrame& frame, RigidBody* body1, RigidBody* body2 = nullptr);
  /// Through the origin of the first body's model frame, along an axis of the world.
  Prismatic(const Vec3& axis, RigidBody* body1, RigidBody* body2 = nullptr);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  Prismatic(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "Prismatic"; }

protected:
  ~Prismatic() override = default;

private:
  void build();
};

} // namespace kel
