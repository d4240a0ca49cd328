#include "kelLua/ScriptManager.h"

namespace {

/// The plug-in that describes the engine's entity data. The engine's models have no members for scripts yet,
/// so it leaves the state as it is.
class LuaPluginKelEntities : public kelLua::ScriptManager::ScriptPlugin
{
public:
  std::string getName() const override { return "kelEntities"; }
  void init(lua_State*) override {}
  void close() override {}
};

} // namespace

/// The library's entry: makes the plug-in, lets it fill the manager's current state and hands it over.
extern "C" void initPlugin(kelLua::ScriptManager* manager)
{
  if (!manager) return;
  const kel::ref_ptr<kelLua::ScriptManager::ScriptPlugin> plugin(new LuaPluginKelEntities);
  plugin->init(manager->getState());
  manager->addScriptPlugin(plugin.get());
}
