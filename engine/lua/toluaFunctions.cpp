#include "toluaFunctions.h"
#include "kelLua/Handles.h"
#include <lua.hpp>
#include <tolua++.h>

namespace kelLua {

namespace {

/// tolua.cast(object, type): the object as one of that type; nil for an unknown type and for what is no
/// object.
int cast(lua_State* L)
{
  const char* type = lua_tostring(L, 2);
  if (type) luaL_getmetatable(L, type);
  const bool known = type && lua_istable(L, -1);
  const bool address = lua_islightuserdata(L, 1);
  void* object = address ? lua_touserdata(L, 1) : nullptr;
  if (handles::isHandle(L, 1)) object = tolua_tousertype(L, 1, nullptr);
  if (!known || !object)
    lua_pushnil(L);
  else if (address)
    handles::push(L, object, type);
  else
    handles::pushMember(L, object, type, 1);
  return 1;
}

/// tolua.inherit(table, object): lets the table stand for the object in calls.
int inherit(lua_State* L)
{
  luaL_checktype(L, 1, LUA_TTABLE);
  lua_settop(L, 2);
  lua_pushliteral(L, ".c_instance");
  lua_insert(L, 2);
  lua_rawset(L, 1);
  return 0;
}

/// tolua.setpeer(object, table or nil): gives the object the table that holds a script's own fields.
int setPeer(lua_State* L)
{
  luaL_argcheck(L, handles::isHandle(L, 1), 1, "object expected");
  luaL_argcheck(L, lua_isnoneornil(L, 2) || lua_istable(L, 2), 2, "table or nil expected");
  lua_settop(L, 2);
  handles::setPeer(L, 1);
  return 0;
}

} // namespace

void openToluaFunctions(lua_State* L)
{
  static const luaL_Reg FUNCTIONS[] = {
      {"cast", cast}, {"inherit", inherit}, {"setpeer", setPeer}, {nullptr, nullptr}};
  lua_getglobal(L, "tolua");
  luaL_register(L, nullptr, FUNCTIONS);
  lua_pop(L, 1);
}

} // namespace kelLua
