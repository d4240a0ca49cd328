// `require "kel"` in a stock interpreter.
#include "kelLua/ScriptManager.h"
#include "kelLua/exceptions.h"
#include <lua.hpp>

namespace {

bool haveOneRegistry(lua_State* L, lua_State* other)
{
  return lua_topointer(L, LUA_REGISTRYINDEX) == lua_topointer(other, LUA_REGISTRYINDEX);
}

void adopt(kelLua::ScriptManager& manager, lua_State* L)
{
  lua_pushthread(L);
  luaL_ref(L, LUA_REGISTRYINDEX); // it may be a coroutine, which the manager goes on using
  manager.setState(L);
}

} // namespace

/// Lua's entry: fills the interpreter's state and gives the module table `kel`.
extern "C" int luaopen_kel(lua_State* L)
{
  kelLua::setExceptionsAsErrors(true);
  kelLua::ScriptManager* manager = kelLua::ScriptManager::instance(true);
  lua_State* current = manager->getState();
  if (current && !haveOneRegistry(L, current))
    return luaL_error(L, "another Lua state of this process has the kel tree");
  if (!current) adopt(*manager, L);
  if (!manager->requestScriptPlugin("kel"))
    return luaL_error(L, "cannot load the plug-in 'kel': %s", manager->getLastPluginError().c_str());
  lua_getglobal(L, "kel");
  return 1;
}
