#include "kelLua/Handles.h"
#include "HandleState.h"
#include "kel/Referenced.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/Wrap.h"
#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <tolua++.h>

namespace kelLua::handles {

namespace {

std::vector<std::unique_ptr<State>> s_states;
std::atomic<bool> s_hasDeaths = false; ///< Of any state.

/// The userdata of a handle that was made here. Handles that another tolua++ made have no marks, and values
/// that lie in their handle need none.
struct Handle
{
  void* object;
  std::uintptr_t marks;
};
constexpr std::uintptr_t isWatched = 1; ///< Is cleared when the counted object at its address dies.
constexpr std::uintptr_t isMember = 2;  ///< Holds the handle of the object that its object lies in.

/// Whether the handle at an index holds its value itself.
bool isInOwnBlock(lua_State* L, int index)
{
  const auto* block = static_cast<const char*>(lua_touserdata(L, index));
  if (!block || lua_objlen(L, index) <= sizeof(void*)) return false;
  const char* object = *reinterpret_cast<const char* const*>(block);
  return object > block && object < block + lua_objlen(L, index);
}

/// Null for a handle without marks.
Handle* marked(lua_State* L, int index)
{
  return lua_objlen(L, index) == sizeof(Handle) ? static_cast<Handle*>(lua_touserdata(L, index)) : nullptr;
}

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

int closed(lua_State* L)
{
  const State* state = find(L);
  ScriptManager* manager = ScriptManager::instance();
  if (state && manager) manager->stateCloses(state->L);
  std::erase_if(s_states, [state](const auto& other) { return other.get() == state; });
  wrap::forgetJudgements(); // their metatables go
  return 0;
}

/// Lua finalises in the reverse order of creation, so this object, made before every handle, goes last.
void addSentinel(lua_State* L)
{
  lua_newuserdata(L, 1);
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, closed);
  lua_setfield(L, -2, "__gc");
  lua_setmetatable(L, -2);
  luaL_ref(L, LUA_REGISTRYINDEX);
}

/// table[light key] = value at index `value`.
void assign(lua_State* L, int table, const void* key, int value)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_pushvalue(L, value);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

/// Takes a light key out of the table on top of the stack. Only keys that are there are touched, since Lua
/// would make room for a missing one, and what dies must not need memory.
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

/// Pushes table[light key].
void lookUp(lua_State* L, int table, const void* key)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_pushlightuserdata(L, const_cast<void*>(key));
  lua_rawget(L, -2);
  lua_remove(L, -2);
}

/// Pushes table[value at index key].
void lookUpValue(lua_State* L, int table, int key)
{
  lua_pushvalue(L, key);
  lua_rawgeti(L, LUA_REGISTRYINDEX, table);
  lua_insert(L, -2);
  lua_rawget(L, -2);
  lua_remove(L, -2);
}

/// Takes a light key out of a table that the registry holds under a name.
void erase(lua_State* L, const char* table, const void* key)
{
  lua_pushstring(L, table);
  lua_rawget(L, LUA_REGISTRYINDEX);
  erase(L, key);
  lua_pop(L, 1);
}

/// Makes the handle on top of the stack null and takes its object out of the runtime's tables, so that a
/// later object at the same address gets a handle and a collector of its own.
void clearTop(lua_State* L)
{
  void** block = static_cast<void**>(lua_touserdata(L, -1));
  void* object = block ? *block : nullptr;
  if (!object) return;
  *block = nullptr;
  if (lua_getmetatable(L, -1)) {
    lua_pushstring(L, "tolua_ubox");
    lua_rawget(L, -2);
    if (lua_istable(L, -1))
      erase(L, object);
    else
      erase(L, "tolua_ubox", object);
    lua_pop(L, 2);
  }
  erase(L, "tolua_gc", object);
}

/// Clears the handle on top of the stack, and the handles on what lies inside its object.
void clearTree(lua_State* L, const State& state)
{
  luaL_checkstack(L, 12, "members inside members");
  const int owner = lua_gettop(L);
  clearTop(L);
  lua_rawgeti(L, LUA_REGISTRYINDEX, state.owners);
  for (lua_pushnil(L); lua_next(L, -2); lua_pop(L, 1)) {
    if (lua_touserdata(L, -1) != lua_touserdata(L, owner)) continue;
    lua_pushvalue(L, -2);
    clearTree(L, state);
    lua_pop(L, 1);
  }
  lua_pop(L, 1);
}

void clearAll(State& state, const void* counted)
{
  lua_State* L = state.L;
  lua_checkstack(L, 12);
  lookUp(L, state.watched, counted);
  if (lua_istable(L, -1))
    for (lua_pushnil(L); lua_next(L, -2); lua_pop(L, 1)) {
      lua_pushvalue(L, -2);
      clearTop(L);
      lua_pop(L, 1);
    }
  lua_pop(L, 1);
  erase(L, state.watched, counted);
}

std::vector<const void*> takeDeaths(State& state)
{
  const std::scoped_lock lock(state.mutex);
  return std::exchange(state.deaths, {});
}

/// What died on other threads loses its handles before one of them is found again.
void clearReported()
{
  if (!s_hasDeaths.load(std::memory_order_relaxed)) return;
  s_hasDeaths = false;
  for (const auto& state : s_states) {
    if (state->thread == std::this_thread::get_id()) {
      for (const void* object : takeDeaths(*state)) clearAll(*state, object);
    } else {
      const std::scoped_lock lock(state->mutex);
      if (!state->deaths.empty()) s_hasDeaths = true;
    }
  }
}

State& get(lua_State* L)
{
  State* state = find(L);
  if (!state) luaL_error(L, "this Lua state was not opened for kel");
  return *state;
}

/// Enters the handle on top of the stack among those that die with a counted object.
void watchTop(lua_State* L, const State& state, const void* counted)
{
  const int handle = lua_gettop(L);
  if (Handle* block = marked(L, handle)) block->marks |= isWatched;
  lua_rawgeti(L, LUA_REGISTRYINDEX, state.roots);
  lua_pushvalue(L, handle);
  lua_pushlightuserdata(L, const_cast<void*>(counted));
  lua_rawset(L, -3);
  lookUp(L, state.watched, counted);
  if (lua_isnil(L, -1)) {
    lua_newtable(L);
    lua_rawgeti(L, LUA_REGISTRYINDEX, state.owners); // any weak-keyed table has the right metatable
    lua_getmetatable(L, -1);
    lua_setmetatable(L, -3);
    lua_pop(L, 1);
    assign(L, state.watched, counted, lua_gettop(L));
  }
  lua_pushvalue(L, handle);
  lua_pushboolean(L, 1);
  lua_rawset(L, -3);
  lua_settop(L, handle);
}

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

/// Whether the handle on top of the stack is of the type and has all the marks.
bool isFound(lua_State* L, const wrap::Type& type, std::uintptr_t marks)
{
  if (!wrap::knownHandle(L, -1, type)) {
    void* object = nullptr;
    tolua_Error failure;
    if (!lua_touserdata(L, -1) || !wrap::slow::isPointer(L, lua_gettop(L), object, type, &failure))
      return false;
  }
  if (marks == 0) return true;
  const Handle* handle = marked(L, -1);
  return handle && (handle->marks & marks) == marks;
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
    *static_cast<Handle*>(lua_newuserdata(L, sizeof(Handle))) = {const_cast<void*>(object), 0};
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

/// Whether a table has an entry for a handle.
bool knows(lua_State* L, int table, int handle)
{
  lookUpValue(L, table, handle);
  const bool known = !lua_isnil(L, -1);
  lua_pop(L, 1);
  return known;
}

} // namespace

State::State(lua_State* mainThread)
    : L(mainThread), registry(lua_topointer(mainThread, LUA_REGISTRYINDEX)), adapters(newTable(L, "v")),
      kept(newTable(L, nullptr)), watched(newTable(L, nullptr)), roots(newTable(L, "k")),
      owners(newTable(L, "k"))
{}

State* find(lua_State* L)
{
  const void* registry = lua_topointer(L, LUA_REGISTRYINDEX);
  for (const auto& state : s_states)
    if (state->registry == registry) return state.get();
  return nullptr;
}

bool pushOwnTable(lua_State* L, int handle)
{
  lua_getfenv(L, handle);
  if (!lua_rawequal(L, -1, TOLUA_NOPEER) && lua_istable(L, -1)) return true;
  lua_pop(L, 1);
  return false;
}

bool isAlive(lua_State* L)
{
  return std::any_of(s_states.begin(), s_states.end(), [L](const auto& state) { return state->L == L; });
}

void open(lua_State* L)
{
  if (find(L)) return;
  addSentinel(L);
  s_states.push_back(std::make_unique<State>(L));
  kel::Referenced::setShownHook(died);
}

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
  pushOne(L, object, type);
  counted->markShown();
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
  state.debt = 0;
  lua_gc(L, LUA_GCSTEP, step / 1024);
}

void adapterTop(lua_State* L, const void* object, bool owned)
{
  const State& state = get(L);
  const int handle = lua_gettop(L);
  assign(L, state.adapters, object, handle);
  if (owned)
    erase(L, state.kept, object);
  else
    assign(L, state.kept, object, handle);
}

void keepAdapter(lua_State* L, const void* object) { assign(L, get(L).kept, object, 1); }

void pushAdapter(lua_State* L, const void* object)
{
  const State& state = get(L);
  lookUp(L, state.adapters, object); // both, or only the other one if the handle was finalised
  if (!lua_isnil(L, -1)) return;
  lua_pop(L, 1);
  lookUp(L, state.kept, object);
}

void forgetAdapter(const void* object) noexcept
{
  for (const auto& state : s_states) {
    lua_State* L = state->L;
    if (!lua_checkstack(L, 12)) continue;
    pushAdapter(L, object);
    if (lua_isuserdata(L, -1)) clearTop(L);
    lua_pop(L, 1);
    erase(L, state->kept, object);
    erase(L, state->adapters, object);
  }
}

void clear(lua_State* L, int index)
{
  const State& state = get(L);
  lua_pushvalue(L, index);
  clearTree(L, state);
  lua_pop(L, 1);
}

void died(const void* object)
{
  for (const auto& state : s_states) {
    if (state->thread == std::this_thread::get_id()) {
      clearAll(*state, object);
      continue;
    }
    const std::scoped_lock lock(state->mutex);
    state->deaths.push_back(object);
    s_hasDeaths = true;
  }
}

} // namespace kelLua::handles
