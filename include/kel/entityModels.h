#pragma once
#include "kelData/EntityPtr.h"

namespace kel::Physics {

/// The instances of the models "Physics.RigidBody" and "Physics.Geometry".
using RigidBodyPtr = kelData::EntityPtr;
using GeometryPtr = kelData::EntityPtr;

/// Makes the entity models of bodies, geometries and contacts, where they do not exist yet.
void makeEntityModels();

} // namespace kel::Physics
