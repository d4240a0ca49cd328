#include "HandleDeaths.h"
#include "HandleState.h"
#include "HandleTables.h"
#include "kelLua/Handles.h"

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
  for (const auto& state : states()) {
    lua_State* L = state->L;
    if (!lua_checkstack(L, 12)) continue;
    pushAdapter(L, object);
    if (lua_isuserdata(L, -1)) clearTop(L);
    lua_pop(L, 1);
    erase(L, state->kept, object);
    erase(L, state->adapters, object);
  }
}

} // namespace kelLua::handles
