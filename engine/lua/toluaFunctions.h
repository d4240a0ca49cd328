#pragma once

struct lua_State;

namespace kelLua {

/// Puts our own functions in place of those of the table `tolua` that would touch memory which is not theirs
/// when a script gives them odd values: `cast`, `inherit` and `setpeer`.
void openToluaFunctions(lua_State* L);

} // namespace kelLua
