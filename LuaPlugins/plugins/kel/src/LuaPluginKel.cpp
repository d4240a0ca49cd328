#include "LuaPluginKel.h"
#include "OpenOrder.h"
#include "kel/Notify.h"

kel::ref_ptr<kelLua::ScriptManager::ScriptPlugin> g_luakel_kel_plugin;

namespace {

constexpr const char* pluginVersion = "1.0";

void logError(const std::string& text) { kel::Notify::writeLine(kel::Notify::NOTIFY_ERROR, text); }

} // namespace

LuaPluginKel::LuaPluginKel()
{
  m_manager = kelLua::ScriptManager::instance(false);
  kel::Notify::writeLine(kel::Notify::NOTIFY_INFO, "LuaPluginKel::LuaPluginKel(): " __DATE__ " " __TIME__);
  m_dependencies.emplace_back("kelEntities");
}

std::string LuaPluginKel::getName() const { return "kel"; }

void LuaPluginKel::init(lua_State* L)
{
  for (const kelLua::plugin::Package& package : kelLua::plugin::openOrder())
    if (package.open) package.open(L);
  addGlobals();
}

void initPlugin(kelLua::ScriptManager* manager)
{
  if (!manager) return;
  const kel::ref_ptr<kelLua::ScriptManager::ScriptPlugin> plugin(new LuaPluginKel);
  g_luakel_kel_plugin = plugin;

  const std::string& required = manager->getRequiredPluginVersion();
  if (required != pluginVersion)
    logError(std::string("Plugin version (") + pluginVersion + ") does not match required version (" +
             required + ")");

  for (const std::string& name : kelLua::ScriptManager::getDependencies(*plugin))
    if (!manager->requestScriptPlugin(name)) logError("Error loading plugin: " + name);

  plugin->init(manager->getState());
  manager->addScriptPlugin(plugin.get());
}
