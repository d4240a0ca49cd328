#pragma once
#include <lua.hpp>

namespace kelLua {

/// Pushes a C function with upvalues whose environment is the registry. A new userdata gets the environment
/// of the function that makes it, and that of the registry says that a handle has no fields of a script's
/// own.
inline void pushWrapper(lua_State* L, lua_CFunction function, int numUpvalues)
{
  lua_pushcclosure(L, function, numUpvalues);
  lua_pushvalue(L, LUA_REGISTRYINDEX);
  lua_setfenv(L, -2);
}

} // namespace kelLua
