#pragma once
#include "kelLua/exceptions.h"
#include <lua.hpp>

namespace kelLua::wrap {

/// Raises that a value on which a script operates has no such operation.
[[noreturn]] void badOperand(lua_State* L);

/// An event has one result: leaves the first of so many on the stack, nil for none. Returns 1.
inline int onlyFirst(lua_State* L, int numResults)
{
  if (numResults == 0) lua_pushnil(L);
  if (numResults > 1) lua_settop(L, -numResults);
  return 1;
}

/// What Lua calls for an arithmetic operator where the class itself has the wrapper: nothing is looked up. A
/// first operand of another library fails in the wrapper's guard.
template <lua_CFunction wrapper> int operated(lua_State* L)
{
  if (!lua_touserdata(L, 1)) badOperand(L);
  return onlyFirst(L, entered<wrapper>(L));
}

/// Finds the member, or the element, of an object or a class table.
int memberOrElement(lua_State* L);

/// What Lua calls for `object[key]` where the class itself has the wrapper for elements.
template <lua_CFunction wrapper> int indexed(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TNUMBER || lua_type(L, 1) != LUA_TUSERDATA) return memberOrElement(L);
  return entered<wrapper>(L);
}

} // namespace kelLua::wrap
