#pragma once
#include "kelData/EntityModel.h"
#include <lua.hpp>
#include <vector>

namespace kelEntities {

/// Enters a class for the pointers of each model: "Physics.RigidBody" gets `kel.Physics.RigidBodyPtr`, with a
/// variable for each attribute. The models must live as long as the state.
void enterPointerClasses(lua_State* L, const std::vector<kel::ref_ptr<kelData::EntityModel>>& models);

} // namespace kelEntities
