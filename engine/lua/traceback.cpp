#include "kelLua/traceback.h"
#include <lua.hpp>

namespace kelLua {

std::string errorText(lua_State* L, int index)
{
  if (const char* text = lua_tostring(L, index)) return text;
  if (luaL_callmeta(L, index, "__tostring")) {
    const char* text = lua_tostring(L, -1);
    const std::string result = text ? text : "";
    lua_pop(L, 1);
    if (!result.empty()) return result;
  }
  return std::string("(error object is a ") + luaL_typename(L, index) + " value)";
}

int addTraceback(lua_State* L)
{
  const std::string text = errorText(L, 1);
  lua_getglobal(L, "debug");
  if (!lua_istable(L, -1)) return lua_pushlstring(L, text.data(), text.size()), 1;
  lua_getfield(L, -1, "traceback");
  if (!lua_isfunction(L, -1)) return lua_pushlstring(L, text.data(), text.size()), 1;
  lua_pushlstring(L, text.data(), text.size());
  lua_pushinteger(L, 2);
  lua_call(L, 2, 1);
  return 1;
}

} // namespace kelLua
