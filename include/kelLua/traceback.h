#pragma once
#include <string>

struct lua_State;

namespace kelLua {

/// The error value at a stack index as text: strings as they are, others by `__tostring`, else by their type.
std::string errorText(lua_State* L, int index);

/// Message handler of protected calls: error value in, the same as text with a traceback behind it out.
int addTraceback(lua_State* L);

} // namespace kelLua
