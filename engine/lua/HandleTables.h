#pragma once
#include <lua.hpp>

/// Tables of the runtime in the registry of a state, by their numbers there.
namespace kelLua::handles {

/// A new table in the registry; `mode` says what is weak in it, null for nothing.
int newTable(lua_State* L, const char* mode);
/// table[light key] = value at index `value`.
void assign(lua_State* L, int table, const void* key, int value);

/// Takes a light key out of the table on top of the stack. Only keys that are there are touched, since Lua
/// would make room for a missing one, and what dies must not need memory.
void erase(lua_State* L, const void* key);

void erase(lua_State* L, int table, const void* key);

/// Takes a light key out of a table that the registry holds under a name.
void erase(lua_State* L, const char* table, const void* key);

/// Pushes table[light key].
void lookUp(lua_State* L, int table, const void* key);

/// Pushes table[value at index key].
void lookUpValue(lua_State* L, int table, int key);

/// Whether a table has an entry for a handle.
bool knows(lua_State* L, int table, int handle);

} // namespace kelLua::handles
