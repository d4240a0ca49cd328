#pragma once
#include <lua.hpp>

namespace kelLua::members {

/// How objects and class tables find members: the script's own fields of the object, then its class, then the
/// bases. Class tables show what their bases have, but for constructors, `delete` and operators; a new key of
/// a class table stays in that table.
///
/// The events of a class in use know the tables to search, never what those hold, so that what scripts add to
/// classes or replace there is seen at once. Index operators alone are bound to their wrappers.

/// `__index` and `__newindex` of a class that nothing was asked of yet.
int firstIndex(lua_State* L);
int firstNewIndex(lua_State* L);

/// Makes `event` the `__index` of classes whose index operator is a wrapper, as long as no object of them has
/// fields of a script's own. It calls `elementIndex` for keys that are no numbers.
void addElementEvent(lua_CFunction wrapper, lua_CFunction event);
/// `__index` of a class with index operators.
int elementIndex(lua_State* L);

/// The class table on top of the stack got members or, with `isBase`, a derived class.
void classChanged(lua_State* L, bool isBase);

/// The handle at a stack index has fields of the script's own from now on.
void objectHasFields(lua_State* L, int handle);

/// Pushes the metatable of const objects of the class whose table is at an index; false, and nothing, if
/// there is none.
bool pushConstTwin(lua_State* L, int classTable);

/// Replaces the value on top by its metatable; pops it and gives false if it has none.
bool toMetatable(lua_State* L);
/// table on top -> table, table[key]; pops the value and gives false if it is nil.
bool rawField(lua_State* L, const char* key);
/// Pushes the first `operation` in the classes of the value at index 1; false for none.
bool findOperation(lua_State* L, const char* operation);

} // namespace kelLua::members
