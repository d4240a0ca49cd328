#include "kelLua/Handles.h"
#include "HandleDeaths.h"
#include "HandleState.h"
#include "HandleTables.h"
#include "kel/Referenced.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/Wrap.h"
#include <algorithm>
#include <cstring>
#include <tolua++.h>
#include <utility>

namespace kelLua::handles {

namespace {

/// Pushes the table that maps the addresses of a type's objects to their handles; nil where no package has
/// mentioned the type.
void pushHandles(lua_State* L, const wrap::Type& type)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, type.handlesKey);
  if (lua_istable(L, -1)) return;
  wrap::pushMetatable(L, type);
  if (!lua_istable(L, -1)) return lua_remove(L, -2);
  lua_pushliteral(L, "tolua_ubox"); // a class tree has its own
  lua_rawget(L, -2);
  if (!lua_istable(L, -1)) {
    lua_pushliteral(L, "tolua_ubox");
    lua_rawget(L, LUA_REGISTRYINDEX);
    lua_replace(L, -2);
  }
  lua_pushvalue(L, -1);
  lua_rawseti(L, LUA_REGISTRYINDEX, type.handlesKey);
  lua_replace(L, -3);
  lua_pop(L, 1);
}

/// Whether the handle on top of the stack, or nil, is of the type and has all the marks.
bool isFound(lua_State* L, const wrap::Type& type, std::uintptr_t marks)
{
  const Handle* handle = marked(L, -1);
  if (marks != 0 && (!handle || (handle->marks & marks) != marks)) return false;
  if (handle && handle->type == &type) return true;
  void* object = nullptr;
  tolua_Error failure;
  return lua_touserdata(L, -1) && wrap::slow::isPointer(L, lua_gettop(L), object, type, &failure);
}

/// Pushes the handle that an object has, if it is of the type and has all the marks.
bool pushFound(lua_State* L, const void* object, const wrap::Type& type, std::uintptr_t marks)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, type.handlesKey);
  if (lua_type(L, -1) == LUA_TTABLE) {
    lua_pushlightuserdata(L, const_cast<void*>(object));
    lua_rawget(L, -2);
    lua_remove(L, -2);
    if (isFound(L, type, marks)) return true;
  }
  lua_settop(L, -2);
  return false;
}

/// Pushes the handle of an object, a new one if it has none. A handle of a base becomes one of the type.
void pushOne(lua_State* L, const void* object, const wrap::Type& type)
{
  const int top = lua_gettop(L);
  pushHandles(L, type);
  if (lua_isnil(L, -1)) return;
  lua_pushlightuserdata(L, const_cast<void*>(object));
  lua_rawget(L, -2);
  if (lua_isnil(L, -1)) {
    lua_pop(L, 1);
    *static_cast<Handle*>(lua_newuserdata(L, sizeof(Handle))) = {const_cast<void*>(object), 0, &type};
    wrap::pushMetatable(L, type);
    lua_setmetatable(L, -2);
    lua_pushvalue(L, TOLUA_NOPEER);
    lua_setfenv(L, -2);
    lua_pushlightuserdata(L, const_cast<void*>(object));
    lua_pushvalue(L, -2);
    lua_rawset(L, top + 1);
    lua_replace(L, top + 1);
  } else {
    lua_settop(L, top);
    tolua_pushusertype(L, const_cast<void*>(object), type.name); // may leave a helper value below
    if (lua_gettop(L) > top + 1) lua_replace(L, top + 1);
    lua_settop(L, top + 1);
    if (Handle* handle = marked(L, -1)) handle->type = &type;
  }
  lua_settop(L, top + 1);
}

/// Pushes the argument at an index if it is a handle on the object with the type's string.
bool pushIfSame(lua_State* L, int index, const void* object, const wrap::Type& type)
{
  auto** handle = static_cast<void**>(lua_touserdata(L, index));
  if (!handle || lua_objlen(L, index) < sizeof(void*) || *handle != object || !lua_getmetatable(L, index))
    return false;
  wrap::pushMetatable(L, type);
  const bool same = lua_rawequal(L, -1, -2) != 0;
  lua_settop(L, -3);
  if (same) lua_pushvalue(L, index);
  return same;
}

/// The same for any argument. A method may return self or an argument by reference, and a value inside its
/// handle must not get a second one.
bool pushGiven(lua_State* L, const void* object, const wrap::Type& type, bool isOwner)
{
  if (isOwner && pushIfSame(L, 1, object, type)) return true;
  const int top = lua_gettop(L);
  for (int i = 2; i <= top; ++i)
    if (pushIfSame(L, i, object, type)) return true;
  return false;
}

/// The key under which a view's own table holds the handle of its owner.
void pushOwnerKey(lua_State* L, int handle) { lua_pushlightuserdata(L, lua_touserdata(L, handle)); }

/// Makes the table on top of the stack the own one of a handle, with the owner at another index in it.
void setOwnTable(lua_State* L, int handle, int owner)
{
  pushOwnerKey(L, handle);
  lua_pushvalue(L, owner);
  lua_rawset(L, -3);
  lua_setfenv(L, handle);
}

} // namespace

void push(lua_State* L, const void* object, const wrap::Type& type)
{
  if (!object) return lua_pushnil(L);
  clearReported();
  if (!pushFound(L, object, type, 0)) pushOne(L, object, type);
}

void pushCounted(lua_State* L, const kel::Referenced* counted, const void* object, const wrap::Type& type)
{
  if (!object) return lua_pushnil(L);
  clearReported();
  if (pushFound(L, object, type, isWatched)) return;

  const State& state = get(L);
  const ScriptManager* manager = ScriptManager::instance();
  const bool adapter = manager && manager->hasLuaEntry(object);
  if (adapter) {
    lookUp(L, state.kept, object);
    if (!lua_isnil(L, -1)) return;
    lua_pop(L, 1);
  }
  counted->markShown();
  pushOne(L, object, type);
  watchTop(L, state, counted);
  if (adapter) adapterTop(L, object, false);
}

void pushMember(lua_State* L, const void* object, const wrap::Type& type, bool isOwner)
{
  if (!object) return lua_pushnil(L);
  clearReported();
  if (pushGiven(L, object, type, isOwner) || pushFound(L, object, type, isMember)) return;

  constexpr int owner = 1;
  const State& state = get(L);
  pushOne(L, object, type);
  const int handle = lua_gettop(L);
  if (lua_type(L, owner) != LUA_TUSERDATA || lua_rawequal(L, handle, owner) || knows(L, state.owners, handle))
    return;

  lua_rawgeti(L, LUA_REGISTRYINDEX, state.owners);
  lua_pushvalue(L, handle);
  lua_pushlightuserdata(L, lua_touserdata(L, owner));
  lua_rawset(L, -3);
  lua_pop(L, 1);
  if (!pushOwnTable(L, handle)) lua_newtable(L);
  setOwnTable(L, handle, owner);
  if (Handle* block = marked(L, handle)) block->marks |= isMember;

  lookUpValue(L, state.roots, owner);
  const void* root = lua_touserdata(L, -1);
  lua_pop(L, 1);
  if (root) watchTop(L, state, root);
}

bool isHandle(lua_State* L, int index)
{
  if (lua_type(L, index) != LUA_TUSERDATA || !lua_getmetatable(L, index)) return false;
  lua_rawget(L, LUA_REGISTRYINDEX);
  const bool named = lua_type(L, -1) == LUA_TSTRING;
  lua_pop(L, 1);
  return named;
}

bool isInside(lua_State* L, int index)
{
  return isInOwnBlock(L, index) || (lua_isuserdata(L, index) && knows(L, get(L).owners, index));
}

bool moveOut(lua_State* L, int index)
{
  if (!isInOwnBlock(L, index)) return false;
  auto** handle = static_cast<char**>(lua_touserdata(L, index));
  const char* end = reinterpret_cast<char*>(handle) + lua_objlen(L, index);
  const auto size = static_cast<std::size_t>(end - *handle); // and perhaps some of the room for alignment
  void* copy = ::operator new(size);
  std::memcpy(copy, *handle, size);
  clear(L, index); // members of the old value go
  *reinterpret_cast<void**>(handle) = copy;
  lua_pushvalue(L, index);
  lua_getmetatable(L, -1);
  lua_rawget(L, LUA_REGISTRYINDEX);
  pushHandles(L, wrap::type(lua_tostring(L, -1)));
  lua_pushlightuserdata(L, copy);
  lua_pushvalue(L, index);
  lua_rawset(L, -3);
  lua_pop(L, 3);
  return true;
}

void referenceFirst(lua_State* L, int index)
{
  lookUpValue(L, get(L).roots, index);
  const auto* counted = static_cast<const kel::Referenced*>(lua_touserdata(L, -1));
  if (counted && counted->getReferenceCount() == 0) counted->reference();
  lua_pop(L, 1);
}

void setPeer(lua_State* L, int index)
{
  const int peer = lua_gettop(L);
  if (!pushOwnTable(L, index)) lua_pushnil(L);
  if (lua_istable(L, -1)) {
    pushOwnerKey(L, index);
    lua_rawget(L, -2);
    lua_remove(L, -2);
  }
  const int owner = lua_gettop(L);
  const bool hasPeer = !lua_isnil(L, peer);
  if (lua_isnil(L, owner)) {
    lua_pushvalue(L, hasPeer ? peer : TOLUA_NOPEER);
    lua_setfenv(L, index);
  } else {
    if (hasPeer)
      lua_pushvalue(L, peer);
    else
      lua_newtable(L);
    setOwnTable(L, index, owner);
  }
  lua_settop(L, peer - 1);
}

void collectTop(lua_State* L, std::size_t size)
{
  constexpr std::size_t handleCost = 256; // entries in the runtime's tables, which never shrink
  constexpr std::size_t step = 64 * 1024;
  tolua_register_gc(L, lua_gettop(L));
  State& state = get(L);
  state.debt += size + handleCost;
  if (state.debt < step) return;
  constexpr std::size_t most = std::size_t(1) << 30; // one step ends with the cycle in any case
  const std::size_t debt = std::min(std::exchange(state.debt, 0), most);
  lua_gc(L, LUA_GCSTEP, static_cast<int>(debt / 1024));
}

} // namespace kelLua::handles
