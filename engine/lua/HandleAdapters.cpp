#include "HandleDeaths.h"
#include "HandleState.h"
#include "HandleTables.h"
#include "kelLua/Handles.h"
#include <algorithm>

namespace kelLua::handles {

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

namespace {

/// Pushes two values: a table, and the handle of the adapter in it; false, and nothing, if it has none.
bool pushHandle(lua_State* L, const State& state, const void* object)
{
  for (const int table : {state.adapters, state.kept}) { // both, or only the other one after finalisation
    lua_rawgeti(L, LUA_REGISTRYINDEX, table);
    lua_pushlightuserdata(L, const_cast<void*>(object));
    lua_rawget(L, -2);
    if (lua_isuserdata(L, -1)) return true;
    lua_pop(L, 2);
  }
  return false;
}

} // namespace

bool pushAdapter(lua_State* L, const void* object)
{
  const auto isOfThread = [L](const auto& state) { return state->L == L; };
  const auto state = std::find_if(states().begin(), states().end(), isOfThread);
  if (state == states().end() || !lua_checkstack(L, LUA_MINSTACK)) return false;
  if (!pushHandle(L, **state, object)) return false;
  lua_getfenv(L, -1);
  if (lua_topointer(L, -1) != (*state)->registry) return true;
  lua_pop(L, 3);
  return false;
}

void forgetAdapter(const void* object) noexcept
{
  for (const auto& state : states()) {
    lua_State* L = state->L;
    if (!lua_checkstack(L, 12)) continue;
    if (pushHandle(L, *state, object)) {
      clearTop(L);
      lua_pop(L, 2);
    }
    erase(L, state->kept, object);
    erase(L, state->adapters, object);
  }
}

} // namespace kelLua::handles
