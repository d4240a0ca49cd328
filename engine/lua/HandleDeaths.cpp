#include "HandleDeaths.h"
#include "HandleState.h"
#include "HandleTables.h"
#include "kelLua/Handles.h"
#include <atomic>
#include <utility>

namespace kelLua::handles {

namespace {

std::atomic<bool> s_hasDeaths = false; ///< Of any state.

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

} // namespace

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

void clearReported()
{
  if (!s_hasDeaths.load(std::memory_order_relaxed)) return;
  s_hasDeaths = false;
  for (const auto& state : states()) {
    if (state->thread == std::this_thread::get_id()) {
      for (const void* object : takeDeaths(*state)) clearAll(*state, object);
    } else {
      const std::scoped_lock lock(state->mutex);
      if (!state->deaths.empty()) s_hasDeaths = true;
    }
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
  for (const auto& state : states()) {
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
