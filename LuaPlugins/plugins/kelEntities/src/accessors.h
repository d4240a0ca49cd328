#pragma once
#include <lua.hpp>

/// How scripts read and write the attributes of entities. Values are copies; an attribute with several values
/// in an instance is a table of them.
namespace kelEntities {

/// Getter and setter of a variable of an entity pointer; the upvalue is the `kelData::Attribute`.
int getVariable(lua_State* L);
int setVariable(lua_State* L);
/// The functions `pointer:getValue(name)` and `pointer:setValue(name, value)`.
int getValue(lua_State* L);
int setValue(lua_State* L);

} // namespace kelEntities
