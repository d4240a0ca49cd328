#pragma once
#include <string>

struct lua_State;

/// The value at a stack index as a reader wants it: strings quoted, tables with what lies directly in them,
/// all else as `tostring` shows it. Raises what a script's `__tostring` raises.
std::string readable(lua_State* L, int index);
