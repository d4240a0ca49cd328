// The two bindings whose wrappers are generated.
#include "Bindings.h"
#include "kelLua/ScriptManager.h"
#include "kelSDK/StepEventListener.h"
#include <cstdio>
#include <lua.hpp>
#include <tolua++.h>

int tolua_stock_open(lua_State* L);

namespace bench {

namespace {

/// Adapters have the engine's listener at their start.
kelSDK::StepEventListener* toListener(lua_State* L, int index)
{
  return static_cast<kelSDK::StepEventListener*>(tolua_tousertype(L, index, nullptr));
}

lua_State* openOurs()
{
  kelLua::ScriptManager* manager = kelLua::ScriptManager::instance(true);
  lua_State* L = manager->openState();
  if (!L || manager->requestScriptPlugin("kel")) return L;
  std::fprintf(stderr, "cannot load the plug-in: %s\n", manager->getLastPluginError().c_str());
  return nullptr;
}

lua_State* openStock()
{
  lua_State* L = luaL_newstate();
  if (!L) return nullptr;
  luaL_openlibs(L);
  tolua_stock_open(L);
  lua_settop(L, 0);
  return L;
}

} // namespace

const Binding OURS = {"ours", openOurs, [](lua_State*) { kelLua::ScriptManager::instance()->closeState(); },
                      toListener};
const Binding STOCK = {"stock", openStock, lua_close, toListener};

} // namespace bench
