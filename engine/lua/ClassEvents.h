#pragma once

struct lua_State;

namespace kelLua {

/// Prepares a state for classes. Doing it again changes nothing.
void openClassEvents(lua_State* L);

/// Gives a registered type, plain and const, our look-up in place of the binding library's.
///
/// Class tables show what their bases have, but for constructors, `delete` and operators; a new key of a
/// class table stays in that table. Objects gain the unary minus, by `.sub`, and `tostring`, by `.tostring`.
void addClassEvents(lua_State* L, const char* type);

} // namespace kelLua
