#include "body/BodyRows.h"
#include "kel/RigidBody.h"
#include "kelData/EntityLayout.h"

namespace kel {

const BodyRows& BodyRows::instance()
{
  static const auto* rows = new BodyRows;
  return *rows;
}

BodyRows::BodyRows()
{
  kelData::EntityLayout layout("RigidBody");
  layout.column("transform", transform);
  layout.column("cmTransform", cmTransform);
  layout.column("state", state, UInt32(RigidBody::DYNAMICS) | ENABLED);
  layout.column("id", id);
  layout.column("numConstraints", numConstraints);
  layout.column("position", position);
  layout.column("velocity", velocity);
  layout.column("angularVelocity", angularVelocity);
  layout.column("acceleration", acceleration);
  layout.column("angularAcceleration", angularAcceleration);
  layout.column("force", force);
  layout.column("torque", torque);
  layout.column("lastForce", lastForce);
  layout.column("lastTorque", lastTorque);
  layout.column("mass", mass, 1.0);
  layout.column("inverseMass", inverseMass, 1.0);
  layout.column("inertia", inertia);
  layout.column("inverseInertia", inverseInertia);
  layout.column("autoGenerateMask", autoGenerateMask, UInt32(MassProperties::AUTO_GENERATE_ALL));
  storage = layout.createStorage();
}

} // namespace kel
