#pragma once
#include "kel/Constraint.h"

namespace kel {

/// Keeps the first anchor in the plane through the second one whose normal is N of the second attachment.
class PlaneJoint : public Constraint
{
public:
  enum DOF
  {
    TRANSLATIONAL_1 = 0, ///< along N of the second attachment
    NUM_DOF
  };

  /// With frames as for `RigidBodyAttachment`; a null second one is made where the first is.
  PlaneJoint(RigidBody* body1, Frame* frame1, RigidBody* body2 = nullptr, Frame* frame2 = nullptr);

  String getClassName() const override { return "PlaneJoint"; }

protected:
  ~PlaneJoint() override = default;
};

} // namespace kel
