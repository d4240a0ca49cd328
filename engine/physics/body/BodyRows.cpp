#include "body/BodyRows.h"
#include "kel/RigidBody.h"
#include "kelData/EntityLayout.h"

namespace kel {

BodyRows::BodyRows()
{
  kelData::EntityLayout layout("Physics.RigidBody");
  layout.readOnlyColumn("transform", transform);
  layout.readOnlyColumn("cmTransform", cmTransform);
  layout.readOnlyColumn("state", state, UInt32(RigidBody::DYNAMICS) | ENABLED);
  layout.readOnlyColumn("id", id);
  layout.readOnlyColumn("numConstraints", numConstraints);
  layout.readOnlyColumn("position", position);
  layout.column("velocity", velocity);
  layout.column("angularVelocity", angularVelocity);
  layout.readOnlyColumn("acceleration", acceleration);
  layout.readOnlyColumn("angularAcceleration", angularAcceleration);
  layout.column("force", force);
  layout.column("torque", torque);
  layout.readOnlyColumn("lastForce", lastForce);
  layout.readOnlyColumn("lastTorque", lastTorque);
  layout.readOnlyColumn("mass", mass, 1.0);
  layout.readOnlyColumn("inverseMass", inverseMass, 1.0);
  layout.readOnlyColumn("inertia", inertia);
  layout.readOnlyColumn("inverseInertia", inverseInertia);
  layout.readOnlyColumn("autoGenerateMask", autoGenerateMask, UInt32(MassProperties::AUTO_GENERATE_ALL));
  storage = layout.createStorage();
}

} // namespace kel
