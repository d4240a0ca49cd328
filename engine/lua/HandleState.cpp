#include "HandleState.h"
#include "HandleDeaths.h"
#include "HandleTables.h"
#include "kel/Referenced.h"
#include "kelLua/Handles.h"
#include "kelLua/ScriptManager.h"
#include <tolua++.h>

namespace kelLua::handles {

namespace {

int closed(lua_State* L)
{
  const State* state = find(L);
  ScriptManager* manager = ScriptManager::instance();
  if (state && manager) manager->stateCloses(state->L);
  std::erase_if(states(), [state](const auto& other) { return other.get() == state; });
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

} // namespace

std::vector<std::unique_ptr<State>>& states()
{
  // Never destroyed: adapters that die at the end of the process still look for their states.
  static auto& s_states = *new std::vector<std::unique_ptr<State>>;
  return s_states;
}

Handle* marked(lua_State* L, int index)
{
  return lua_objlen(L, index) == sizeof(Handle) ? static_cast<Handle*>(lua_touserdata(L, index)) : nullptr;
}

bool isInOwnBlock(lua_State* L, int index)
{
  const auto* block = static_cast<const char*>(lua_touserdata(L, index));
  if (!block || lua_objlen(L, index) <= sizeof(void*)) return false;
  const char* object = *reinterpret_cast<const char* const*>(block);
  return object > block && object < block + lua_objlen(L, index);
}

State::State(lua_State* mainThread)
    : L(mainThread), registry(lua_topointer(mainThread, LUA_REGISTRYINDEX)), adapters(newTable(L, "v")),
      kept(newTable(L, nullptr)), watched(newTable(L, nullptr)), roots(newTable(L, "k")),
      owners(newTable(L, "k"))
{}

State* find(lua_State* L)
{
  const void* registry = lua_topointer(L, LUA_REGISTRYINDEX);
  for (const auto& state : states())
    if (state->registry == registry) return state.get();
  return nullptr;
}

State& get(lua_State* L)
{
  State* state = find(L);
  if (!state) luaL_error(L, "this Lua state was not opened for kel");
  return *state;
}

bool pushOwnTable(lua_State* L, int handle)
{
  lua_getfenv(L, handle);
  if (!lua_rawequal(L, -1, TOLUA_NOPEER) && lua_istable(L, -1)) return true;
  lua_pop(L, 1);
  return false;
}

void open(lua_State* L)
{
  if (find(L)) return;
  addSentinel(L);
  states().push_back(std::make_unique<State>(L));
  kel::Referenced::setShownHook(died);
}

} // namespace kelLua::handles
