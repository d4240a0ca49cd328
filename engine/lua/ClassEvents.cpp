#include "ClassEvents.h"
#include "Members.h"
#include "kelLua/Handles.h"
#include "kelLua/operations.h"
#include "ownFrame.h"
#include "pushWrapper.h"
#include "toluaFunctions.h"
#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <lua.hpp>
#include <tolua++.h>
#include <unordered_set>

namespace kelLua {

namespace {

using members::findOperation;
using members::rawField;
using wrap::onlyFirst;

/// registry[&s_foreign]: the set of metatables that somebody else's tolua++ has made.
const char s_foreign = 0;
/// registry[&s_events]: the functions that all metatables share, by the event's name.
const char s_events = 0;

// ---- Events

/// Upvalue: the name of the operation, such as ".add".
int operate(lua_State* L)
{
  if (lua_type(L, 1) == LUA_TUSERDATA && lua_getmetatable(L, 1)) {
    do {
      lua_pushvalue(L, lua_upvalueindex(1));
      lua_rawget(L, -2);
      if (const lua_CFunction wrapper = toOwnFrame(L)) {
        lua_settop(L, -3);
        return onlyFirst(L, wrapper(L));
      }
      if (lua_isfunction(L, -1)) {
        lua_pushvalue(L, 1);
        lua_pushvalue(L, 2);
        lua_call(L, 2, 1);
        return 1;
      }
      lua_pop(L, 1);
    } while (members::toMetatable(L));
  }
  wrap::badOperand(L);
}

int equal(lua_State* L)
{
  lua_settop(L, 2);
  if (lua_isuserdata(L, 1) && findOperation(L, ".eq") && lua_isfunction(L, -1)) {
    if (const lua_CFunction wrapper = toOwnFrame(L)) {
      lua_settop(L, 2);
      return onlyFirst(L, wrapper(L));
    }
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 2);
    lua_call(L, 2, 1);
  } else {
    lua_pushboolean(L, 0);
  }
  return 1;
}

/// Upvalue: ".call".
int call(lua_State* L)
{
  if (lua_istable(L, 1)) {
    lua_pushvalue(L, lua_upvalueindex(1));
    lua_rawget(L, 1);
    if (const lua_CFunction wrapper = toOwnFrame(L)) {
      lua_settop(L, -2);
      return onlyFirst(L, wrapper(L));
    }
    if (lua_isfunction(L, -1)) {
      lua_insert(L, 1);
      lua_call(L, lua_gettop(L) - 1, 1);
      return 1;
    }
  }
  tolua_error(L, "Attempt to call a non-callable object.", nullptr);
  return 0;
}

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
  if (!handles::isHandle(L, 1)) {
    tolua_typename(L, 1);
    return 1;
  }
  const void* object = *static_cast<void**>(lua_touserdata(L, 1));
  if (!object || !findOperation(L, ".tostring")) {
    lua_pushfstring(L, "%s: %p", tolua_typename(L, 1), object);
    return 1;
  }
  lua_pushvalue(L, 1);
  lua_call(L, 1, 1);
  return 1;
}

struct Event
{
  const char* name;
  lua_CFunction function;
  const char* operation; ///< Upvalue.
};

/// One function each in a state.
constexpr Event SHARED[] = {{"__index", members::firstIndex, nullptr},
                            {"__newindex", members::firstNewIndex, nullptr},
                            {"__add", operate, ".add"},
                            {"__sub", operate, ".sub"},
                            {"__mul", operate, ".mul"},
                            {"__div", operate, ".div"},
                            {"__call", call, ".call"},
                            {"__unm", unaryMinus, nullptr},
                            {"__tostring", toText, nullptr}};
/// One function each in a metatable: Lua compares two objects only by a function that both have.
constexpr Event COMPARISONS[] = {{"__lt", operate, ".lt"}, {"__le", operate, ".le"}};
/// The one that plain and const objects share, so that a view may equal a value.
constexpr Event EQUALITY = {"__eq", equal, nullptr};

void pushEvent(lua_State* L, const Event& event)
{
  if (event.operation) lua_pushstring(L, event.operation);
  pushWrapper(L, event.function, event.operation ? 1 : 0);
}

void pushEvents(lua_State* L)
{
  lua_pushlightuserdata(L, const_cast<char*>(&s_events));
  lua_rawget(L, LUA_REGISTRYINDEX);
}

/// metatable[name] = the function on top, which stays.
void setEvent(lua_State* L, int metatable, const char* name)
{
  lua_pushstring(L, name);
  lua_pushvalue(L, -2);
  lua_rawset(L, metatable);
}

/// Sets the shared events of the metatable at an index.
void addSharedEvents(lua_State* L, int metatable)
{
  pushEvents(L);
  for (lua_pushnil(L); lua_next(L, -2);) {
    lua_pushvalue(L, -2);
    lua_insert(L, -2);
    lua_rawset(L, metatable);
  }
  lua_pop(L, 1);
}

void pushForeign(lua_State* L)
{
  lua_pushlightuserdata(L, const_cast<char*>(&s_foreign));
  lua_rawget(L, LUA_REGISTRYINDEX);
}

/// Pushes the metatable of a type string, a new one with its name in the registry if there is none. One that
/// a stock tolua++ of somebody else's has made gets our events, too, but keeps its finaliser.
void pushTypeMetatable(lua_State* L, const char* name)
{
  const bool isNew = luaL_newmetatable(L, name) != 0;
  if (isNew) {
    lua_pushvalue(L, -1);
    lua_pushstring(L, name);
    lua_rawset(L, LUA_REGISTRYINDEX);
  }
  const int metatable = lua_gettop(L);
  lua_pushliteral(L, "__gc");
  lua_rawget(L, metatable);
  addSharedEvents(L, metatable);
  if (isNew) return lua_settop(L, metatable);
  lua_pushliteral(L, "__gc");
  lua_insert(L, -2);
  lua_rawset(L, metatable);
  pushForeign(L);
  lua_pushvalue(L, metatable);
  lua_pushboolean(L, 1);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

/// Pushes tolua_super[metatable at an index], the set of its bases. tolua++ makes one only for classes with
/// members, but takes it for granted when it pushes an object for a second time, and otherwise changes a
/// stranger's type.
void pushBases(lua_State* L, int metatable)
{
  lua_pushliteral(L, "tolua_super");
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_pushvalue(L, metatable);
  lua_rawget(L, -2);
  if (!lua_istable(L, -1)) {
    lua_pop(L, 1);
    lua_newtable(L);
    lua_pushvalue(L, metatable);
    lua_pushvalue(L, -2);
    lua_rawset(L, -4);
  }
  lua_remove(L, -2);
}

void pushSharedFinaliser(lua_State* L)
{
  pushEvents(L);
  lua_pushliteral(L, "__gc");
  lua_rawget(L, -2);
  lua_remove(L, -2);
}

/// The events that call a class's own wrapper.
std::unordered_set<lua_CFunction>& operations()
{
  static std::unordered_set<lua_CFunction> s_operations;
  return s_operations;
}

} // namespace

bool isOperation(lua_State* L)
{
  lua_Debug frame;
  if (!lua_getstack(L, 0, &frame)) return false;
  lua_getinfo(L, "f", &frame);
  const bool found = operations().contains(lua_tocfunction(L, -1));
  lua_pop(L, 1);
  return found;
}

void openClassEvents(lua_State* L)
{
  pushEvents(L);
  const bool opened = lua_istable(L, -1);
  lua_pop(L, 1);
  if (opened) return;
  luaL_getmetatable(L, "tolua_commonclass");
  const int common = lua_gettop(L);
  lua_newtable(L);
  for (const Event& event : SHARED) {
    pushEvent(L, event);
    lua_setfield(L, -2, event.name);
  }
  lua_pushliteral(L, "__gc");
  lua_rawget(L, common);
  lua_setfield(L, -2, "__gc");
  lua_pushlightuserdata(L, const_cast<char*>(&s_events));
  lua_insert(L, -2);
  lua_rawset(L, LUA_REGISTRYINDEX);
  lua_pushlightuserdata(L, const_cast<char*>(&s_foreign));
  lua_newtable(L);
  lua_rawset(L, LUA_REGISTRYINDEX);
  addSharedEvents(L, common);
  for (const char* event : {"__unm", "__tostring"}) { // class tables are no values
    lua_pushstring(L, event);
    lua_pushnil(L);
    lua_rawset(L, common);
  }
  lua_pop(L, 1);
  openToluaFunctions(L);
}

void addType(lua_State* L, const char* type)
{
  const int top = lua_gettop(L);
  luaL_getmetatable(L, type);
  if (lua_istable(L, -1) && rawField(L, "__tostring")) return lua_settop(L, top);
  lua_settop(L, top);
  pushTypeMetatable(L, type);
  lua_pushfstring(L, "const %s", type);
  const char* constType = lua_tostring(L, -1);
  pushTypeMetatable(L, constType);
  pushEvent(L, EQUALITY);
  setEvent(L, top + 1, EQUALITY.name);
  setEvent(L, top + 3, EQUALITY.name);
  for (const int metatable : {top + 1, top + 3})
    for (const Event& event : COMPARISONS) {
      pushEvent(L, event);
      setEvent(L, metatable, event.name);
    }
  lua_settop(L, top + 3);
  pushBases(L, top + 3);
  pushBases(L, top + 1);
  lua_pushboolean(L, 1);
  lua_setfield(L, -2, constType); // a plain object is a const one, too
  lua_settop(L, top);
}

void setOperation(lua_State* L, const char* operation, lua_CFunction event)
{
  const int classTable = lua_gettop(L);
  const auto* shared = std::find_if(std::begin(SHARED), std::end(SHARED), [operation](const Event& each) {
    return each.operation && std::strcmp(each.operation, operation) == 0;
  });
  if (shared == std::end(SHARED)) return;
  pushWrapper(L, event, 0);
  setEvent(L, classTable, shared->name);
  if (members::pushConstTwin(L, classTable)) {
    lua_insert(L, -2);
    setEvent(L, classTable + 1, shared->name);
  }
  lua_settop(L, classTable);
  operations().insert(event);
}

void dropFinaliser(lua_State* L, const char* type)
{
  const int top = lua_gettop(L);
  for (const char* prefix : {"", "const "}) {
    pushForeign(L);
    lua_pushfstring(L, "%s%s", prefix, type);
    lua_rawget(L, LUA_REGISTRYINDEX);
    lua_pushvalue(L, -1);
    lua_rawget(L, top + 1);
    if (lua_isnil(L, -1)) {
      lua_pushliteral(L, "__gc");
      lua_pushnil(L);
      lua_rawset(L, top + 2);
    }
    lua_settop(L, top);
  }
}

void restoreFinaliser(lua_State* L, int handle)
{
  const int top = lua_gettop(L);
  if (!lua_getmetatable(L, handle)) return;
  if (!rawField(L, "__gc")) {
    lua_pushliteral(L, "__gc");
    pushSharedFinaliser(L);
    lua_rawset(L, top + 1);
  }
  lua_settop(L, top);
}

} // namespace kelLua
