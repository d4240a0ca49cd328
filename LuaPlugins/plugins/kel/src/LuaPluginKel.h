#pragma once
#include "kelLua/ScriptManager.h"

/// The plug-in that fills a Lua state with the engine's classes.
class LuaPluginKel : public kelLua::ScriptManager::ScriptPlugin
{
public:
  /// Takes the manager of the process as its own, logs when it was built, and asks for the plug-in
  /// "kelEntities".
  LuaPluginKel();

  std::string getName() const override;
  /// Opens every declared package in the one fixed order, then adds the plug-in's globals.
  void init(lua_State* L) override;
  /// Does nothing: the tree stays in the state.
  void close() override {}
  /// The place for globals outside every package; there are none.
  void addGlobals() {}
};

/// Keeps the plug-in alive for the library.
extern kel::ref_ptr<kelLua::ScriptManager::ScriptPlugin> g_luakel_kel_plugin;

/// The library's entry: makes the plug-in, fills the manager's current state and hands the plug-in over.
/// Version and dependency trouble is logged and stops nothing. Does nothing for a null manager.
extern "C" void initPlugin(kelLua::ScriptManager* manager);
