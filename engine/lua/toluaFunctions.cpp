#include "toluaFunctions.h"
#include "ClassEvents.h"
#include "Members.h"
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
    handles::push(L, object, wrap::type(type));
  else
    handles::pushMember(L, object, wrap::type(type), true);
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
  members::objectHasFields(L, 1);
  handles::setPeer(L, 1);
  return 0;
}

/// tolua.takeownership(object): Lua frees the object from now on; whether that is new. A value that lies in
/// its handle is Lua's already. The script gets a reference of its own on a counted object, as giving back
/// one of the engine's would leave the engine with a dead object.
int takeOwnership(lua_State* L)
{
  bool isNew = false;
  if (handles::isHandle(L, 1) && !handles::isInside(L, 1) && *static_cast<void**>(lua_touserdata(L, 1))) {
    lua_settop(L, 1);
    restoreFinaliser(L, 1);
    lua_gc(L, LUA_GCCOLLECT, 0); // what is to be collected must not be registered
    isNew = tolua_register_gc(L, 1) != 0;
    if (isNew) handles::referenceFirst(L, 1);
  }
  lua_pushboolean(L, isNew);
  return 1;
}

/// tolua.releaseownership(object): Lua does not free the object any more; whether it did. A value that lies
/// in its handle moves to memory of its own.
int releaseOwnership(lua_State* L)
{
  const bool isHandle = handles::isHandle(L, 1);
  if (!isHandle || handles::moveOut(L, 1)) {
    lua_pushboolean(L, isHandle);
    return 1;
  }
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  lua_call(L, lua_gettop(L) - 1, 1);
  return 1;
}

} // namespace

void openToluaFunctions(lua_State* L)
{
  static const luaL_Reg FUNCTIONS[] = {{"cast", cast},
                                       {"inherit", inherit},
                                       {"setpeer", setPeer},
                                       {"takeownership", takeOwnership},
                                       {nullptr, nullptr}};
  lua_getglobal(L, "tolua");
  lua_getfield(L, -1, "releaseownership");
  lua_pushcclosure(L, releaseOwnership, 1);
  lua_setfield(L, -2, "releaseownership");
  luaL_register(L, nullptr, FUNCTIONS);
  lua_pop(L, 1);
}

} // namespace kelLua
