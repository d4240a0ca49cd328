#pragma once
#include <lua.hpp>

/// How handles lose their objects.
namespace kelLua::handles {

struct State;

/// Makes the handle on top of the stack null and takes its object out of the runtime's tables, so that a
/// later object at the same address gets a handle and a collector of its own.
void clearTop(lua_State* L);

/// Enters the handle on top of the stack among those that die with a counted object.
void watchTop(lua_State* L, const State& state, const void* counted);

/// What died on other threads loses its handles before one of them is found again.
void clearReported();

} // namespace kelLua::handles
