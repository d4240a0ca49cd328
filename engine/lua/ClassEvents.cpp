#include "ClassEvents.h"
#include "HandleState.h"
#include "toluaFunctions.h"
#include <cctype>
#include <cstring>
#include <initializer_list>
#include <lua.hpp>
#include <tolua++.h>

namespace kelLua {

namespace {

const char s_opened = 0;

/// Replaces the value on top by its metatable; pops it and gives false if it has none.
bool toMetatable(lua_State* L)
{
  const bool found = lua_getmetatable(L, -1) != 0;
  lua_remove(L, found ? -2 : -1);
  return found;
}

/// table on top -> table, table[key]; pops the value and gives false if it is nil.
bool rawField(lua_State* L, const char* key)
{
  lua_pushstring(L, key);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) return true;
  lua_pop(L, 1);
  return false;
}

/// Pushes table[accessors][key] for the class table on top and the key at index 2; false for none.
bool accessor(lua_State* L, const char* accessors)
{
  if (!rawField(L, accessors)) return false;
  lua_pushvalue(L, 2);
  lua_rawget(L, -2);
  lua_remove(L, -2);
  if (lua_iscfunction(L, -1)) return true;
  lua_pop(L, 1);
  return false;
}

/// The value of key (index 2) in the class table on top, got for the object or table at index 1.
bool classField(lua_State* L)
{
  lua_pushvalue(L, 2);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) return true;
  lua_pop(L, 1);
  if (!accessor(L, ".get")) return false;
  lua_pushvalue(L, 1);
  lua_pushvalue(L, 2);
  lua_call(L, 2, 1);
  return true;
}

/// Pushes the first `operation` in the classes of the value at index 1; false for none.
bool findOperation(lua_State* L, const char* operation)
{
  lua_pushvalue(L, 1);
  while (toMetatable(L))
    if (rawField(L, operation)) return true;
  return false;
}

/// Whether the key at index 2 goes to the index operators: a number, or a text that reads as one. Names are
/// told by their first character, which spares the attempt to read each of them as a number.
bool isElement(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return lua_type(L, 2) == LUA_TNUMBER;
  const char first = *lua_tostring(L, 2);
  return !std::isalpha(static_cast<unsigned char>(first)) && first != '_' && lua_isnumber(L, 2);
}

int objectIndex(lua_State* L)
{
  if (handles::pushOwnTable(L, 1)) {
    lua_pushvalue(L, 2);
    lua_gettable(L, -2);
    if (!lua_isnil(L, -1)) return 1;
  }
  lua_settop(L, 2);
  if (isElement(L) && findOperation(L, ".geti")) {
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 2);
    lua_call(L, 2, 1);
    return 1;
  }
  lua_settop(L, 2);
  lua_pushvalue(L, 1);
  while (toMetatable(L))
    if (classField(L)) return 1;
  return 0;
}

/// Whether a class table shows this key of its bases: not constructors, `delete`, operators and events.
bool isInherited(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return true;
  const char* key = lua_tostring(L, 2);
  for (const char* own : {"new", "new_local", "delete", "tolua_ubox"})
    if (std::strcmp(key, own) == 0) return false;
  return key[0] != '.' && std::strncmp(key, "__", 2) != 0;
}

int tableIndex(lua_State* L)
{
  lua_pushvalue(L, 1);
  if (classField(L)) return 1;
  if (!isInherited(L)) return 0;
  while (toMetatable(L))
    if (classField(L)) return 1;
  return 0;
}

int index(lua_State* L)
{
  switch (lua_type(L, 1)) {
  case LUA_TUSERDATA:
    return objectIndex(L);
  case LUA_TTABLE:
    return tableIndex(L);
  default:
    return 0;
  }
}

/// Enters key and value into the table that a script sees as the object's own.
int setPeer(lua_State* L)
{
  if (!handles::pushOwnTable(L, 1)) {
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_setfenv(L, 1);
  }
  lua_insert(L, 2);
  lua_settable(L, 2);
  return 0;
}

int objectNewIndex(lua_State* L)
{
  if (isElement(L) && findOperation(L, ".seti")) {
    lua_insert(L, 1);
    lua_settop(L, 4);
    lua_call(L, 3, 0);
    return 0;
  }
  lua_settop(L, 3);
  lua_pushvalue(L, 1);
  while (toMetatable(L)) {
    if (!accessor(L, ".set")) continue;
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 3);
    lua_call(L, 2, 0);
    return 0;
  }
  return setPeer(L);
}

int tableNewIndex(lua_State* L)
{
  lua_pushvalue(L, 1);
  do {
    if (!accessor(L, ".set")) continue;
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 3);
    lua_call(L, 2, 0);
    return 0;
  } while (toMetatable(L));
  lua_settop(L, 3);
  lua_rawset(L, 1);
  return 0;
}

int newIndex(lua_State* L) { return lua_istable(L, 1) ? tableNewIndex(L) : objectNewIndex(L); }

int unaryMinus(lua_State* L)
{
  if (!findOperation(L, ".sub"))
    return luaL_error(L, "attempt to perform arithmetic on a '%s' value", tolua_typename(L, 1));
  lua_pushvalue(L, 1);
  lua_call(L, 1, 1);
  return 1;
}

int toText(lua_State* L)
{
  if (!lua_isuserdata(L, 1)) {
    tolua_typename(L, 1);
    return 1;
  }
  const void* object = tolua_tousertype(L, 1, nullptr);
  if (!object || !findOperation(L, ".tostring")) {
    lua_pushfstring(L, "%s: %p", tolua_typename(L, 1), object);
    return 1;
  }
  lua_pushvalue(L, 1);
  lua_call(L, 1, 1);
  return 1;
}

} // namespace

void openClassEvents(lua_State* L)
{
  lua_pushlightuserdata(L, const_cast<char*>(&s_opened));
  lua_rawget(L, LUA_REGISTRYINDEX);
  const bool opened = lua_toboolean(L, -1) != 0;
  lua_pop(L, 1);
  if (opened) return;
  lua_pushlightuserdata(L, const_cast<char*>(&s_opened));
  lua_pushboolean(L, 1);
  lua_rawset(L, LUA_REGISTRYINDEX);
  openToluaFunctions(L);
}

void addClassEvents(lua_State* L, const char* type)
{
  static const luaL_Reg EVENTS[] = {
      {"__index", index}, {"__newindex", newIndex}, {"__unm", unaryMinus}, {"__tostring", toText}};
  for (const char* prefix : {"", "const "}) {
    lua_pushfstring(L, "%s%s", prefix, type);
    lua_rawget(L, LUA_REGISTRYINDEX);
    for (const luaL_Reg& event : EVENTS) {
      lua_pushstring(L, event.name);
      lua_pushcfunction(L, event.func);
      lua_rawset(L, -3);
    }
    lua_pop(L, 1);
  }
  // tolua_pushusertype breaks the stack when it changes the type of a handle whose old type has no entry
  // here.
  lua_getfield(L, LUA_REGISTRYINDEX, "tolua_super");
  lua_pushfstring(L, "const %s", type);
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_pushvalue(L, -1);
  lua_rawget(L, -3);
  if (lua_isnil(L, -1)) {
    lua_pushvalue(L, -2);
    lua_newtable(L);
    lua_rawset(L, -5);
  }
  lua_pop(L, 3);
  // Lua compares two values only if both have the same function, so a view would never equal a value.
  luaL_getmetatable(L, type);
  lua_pushfstring(L, "const %s", type);
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_insert(L, -2);
  rawField(L, "__eq");
  lua_setfield(L, -3, "__eq");
  lua_pop(L, 2);
}

} // namespace kelLua
