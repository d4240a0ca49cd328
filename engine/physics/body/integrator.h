#pragma once
#include "kel/RigidBody.h"

namespace kel {

/// Moves a body by its velocities for `timeStep` seconds. A dynamic body keeps its angular momentum, so that
/// its angular velocity changes as it turns.
void integrate(RigidBody& body, Real timeStep);

} // namespace kel
