#include "kelLua/traceback.h"
#include <lua.hpp>

namespace kelLua {

std::string errorText(lua_State* L, int index)
{
  if (const char* text = lua_tostring(L, index)) return text;
  lua_pushvalue(L, index);
  const int value = lua_gettop(L);
  if (luaL_getmetafield(L, value, "__tostring")) {
    lua_insert(L, value);
    const bool done = lua_pcall(L, 1, 1, 0) == 0;
    const char* text = done ? lua_tostring(L, value) : nullptr;
    const std::string result = text ? text : "";
    lua_settop(L, value - 1);
    if (!result.empty()) return result;
  } else {
    lua_pop(L, 1);
  }
  return std::string("(error object is a ") + luaL_typename(L, index) + " value)";
}

int addTraceback(lua_State* L)
{
  const std::string text = errorText(L, 1);
  lua_getglobal(L, "debug");
  if (lua_istable(L, -1)) lua_getfield(L, -1, "traceback");
  const bool canTrace = lua_isfunction(L, -1); // a script may have hidden it
  lua_pushlstring(L, text.data(), text.size());
  if (!canTrace) return 1;
  lua_pushinteger(L, 2);
  lua_call(L, 2, 1);
  return 1;
}

} // namespace kelLua
