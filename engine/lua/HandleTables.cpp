#include "HandleTables.h"

namespace kelLua::handles {

int newTable(lua_State* L, const char* mode)
{
  lua_newtable(L);
  if (mode) {
    lua_createtable(L, 0, 1);
    lua_pushstring(L, mode);
    lua_setfield(L, -2, "__mode");
    lua_setmetatable(L, -2);
  }
  return luaL_ref(L, LUA_REGISTRYINDEX);
}

void assign(lua_State* L, int table, const void* key, int value)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_pushvalue(L, value);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

void erase(lua_State* L, const void* key)
{
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_rawget(L, -2);
  const bool present = !lua_isnil(L, -1);
  lua_pop(L, 1);
  if (!present) return;
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_pushnil(L);
  lua_rawset(L, -3);
}

void erase(lua_State* L, int table, const void* key)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  erase(L, key);
  lua_pop(L, 1);
}

void erase(lua_State* L, const char* table, const void* key)
{
  lua_pushstring(L, table);
  lua_rawget(L, LUA_REGISTRYINDEX);
  erase(L, key);
  lua_pop(L, 1);
}

void lookUp(lua_State* L, int table, const void* key)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_rawget(L, -2);
  lua_remove(L, -2);
}

void lookUpValue(lua_State* L, int table, int key)
{
  lua_pushvalue(L, key);
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_insert(L, -2);
  lua_rawget(L, -2);
  lua_remove(L, -2);
}

bool knows(lua_State* L, int table, int handle)
{
  lookUpValue(L, table, handle);
  const bool known = !lua_isnil(L, -1);
  lua_pop(L, 1);
  return known;
}

} // namespace kelLua::handles
