#pragma once
#include <lua.hpp>

namespace kelLua {

/// Enters a wrapper that events may run in their own frame, which spares a Lua call. It has no upvalues.
void addToOwnFrame(lua_CFunction wrapper);

/// The function on top of the stack if it is such a wrapper; null for any other value.
lua_CFunction toOwnFrame(lua_State* L);

} // namespace kelLua
