#pragma once

struct lua_State;
struct tolua_Error;

namespace kelLua {

/// `kelLua::error` with the signatures that exist behind the report, one a line; null for none.
[[noreturn]] void raise(lua_State* L, const char* text, const tolua_Error* failure, const char* signatures);

/// Static functions and constructors may be called without the class table. A placeholder then stands for it
/// at stack index 1, so that all overloads count their arguments alike; reports subtract it again.
void insertPlaceholder(lua_State* L);
bool isPlaceholder(lua_State* L, int index);

} // namespace kelLua
