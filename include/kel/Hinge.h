#pragma once
#include "kel/Constraint1DOF.h"
#include "kel/HingeFrame.h"

namespace kel {

/// Leaves two bodies, or a body and the world, a rotation about the common N of the attachments.
class Hinge : public Constraint1DOF
{
public:
  enum DOF
  {
    TRANSLATIONAL_1 = 0, ///< along U of the second attachment
    TRANSLATIONAL_2,     ///< along V
    TRANSLATIONAL_3,     ///< along N
    ROTATIONAL_1,        ///< about U
    ROTATIONAL_2,        ///< about V
    NUM_DOF
  };

  /// Without bodies, to be filled by `addRigidBody`.
  Hinge() = default;
  Hinge(const HingeFrame& frame, RigidBody* body1, RigidBody* body2 = nullptr);
  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  Hinge(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  /// Adds a body by a frame of it, a first one, which is bound to the world, and a second one, to which the
  /// first is bound instead. False for null and for a third.
  bool addRigidBody(RigidBody* body, Frame* frame);
  String getClassName() const override { return "Hinge"; }

protected:
  ~Hinge() override = default;

private:
  void build();
};

} // namespace kel
