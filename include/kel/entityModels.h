#pragma once
#include "kelData/EntityPtr.h"

namespace kel::Physics {

/// The instances of the models "Physics.RigidBody", "Physics.Geometry" and so on.
using RigidBodyPtr = kelData::EntityPtr;
using GeometryPtr = kelData::EntityPtr;
using BulkMaterialPtr = kelData::EntityPtr;
using SurfaceMaterialPtr = kelData::EntityPtr;
using WireMaterialPtr = kelData::EntityPtr;
using MaterialPtr = kelData::EntityPtr;
using ContactMaterialPtr = kelData::EntityPtr;

/// Makes the entity models of bodies, geometries, contacts and materials, where they do not exist yet.
void makeEntityModels();

} // namespace kel::Physics
