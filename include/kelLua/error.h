#pragma once

struct lua_State;
struct tolua_Error;

namespace kelLua {

/// Raises a Lua error and does not come back. A text that begins with `#f` reports a function and its
/// argument that failed, by `failed`; one that begins with `#v` the value of an assignment that failed; any
/// other text stands as it is. In front of it comes the script's `file:line:`, behind a report the value that
/// was given.
void error(lua_State* L, const char* text, tolua_Error* failed);

} // namespace kelLua
