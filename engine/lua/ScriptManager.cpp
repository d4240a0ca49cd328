#include "kelLua/ScriptManager.h"
#include "PluginFiles.h"
#include "kel/Logger.h"
#include "kel/abort.h"
#include "kelLua/Handles.h"
#include "kelLua/traceback.h"
#include <algorithm>
#include <cstdio>
#include <lua.hpp>
#include <tolua++.h>
#include <utility>

namespace kelLua {

namespace {

ScriptManager* s_instance = nullptr;

/// Shows where the script stands when the engine ends the process.
void printScriptPosition()
{
  lua_State* L = s_instance ? s_instance->getState() : nullptr;
  lua_Debug frame;
  if (!L || !lua_getstack(L, 0, &frame)) return;
  lua_settop(L, 0);
  lua_pushliteral(L, "");
  addTraceback(L);
  if (const char* text = lua_tostring(L, -1)) std::fprintf(stderr, "%s\n", text + (*text == '\n'));
}

} // namespace

ScriptManager::ScriptManager() { kel::setAbortHook(printScriptPosition); }

ScriptManager* ScriptManager::instance(bool create)
{
  // Never destroyed: adapters that die at the end of the process still leave it.
  if (!s_instance && create) s_instance = new ScriptManager;
  return s_instance;
}

lua_State* ScriptManager::openState()
{
  closeState();
  lua_State* L = luaL_newstate();
  if (!L) return nullptr;
  luaL_openlibs(L);
  setState(L);
  m_ownsState = true;
  return L;
}

void ScriptManager::setState(lua_State* L)
{
  if (L == m_scriptState) return;
  closeState();
  m_scriptState = L;
  if (!L) return;
  tolua_open(L);
  handles::open(L);
}

void ScriptManager::closeState()
{
  for (const kel::ref_ptr<ScriptPlugin>& plugin : m_plugins) plugin->close();
  m_plugins.clear();
  lua_State* state = std::exchange(m_scriptState, nullptr);
  if (std::exchange(m_ownsState, false)) lua_close(state);
}

void ScriptManager::stateCloses(lua_State* L)
{
  if (L != m_scriptState) return;
  m_ownsState = false;
  closeState();
}

bool ScriptManager::loadScriptPlugin(const kel::String& file)
{
  m_lastPluginError.clear();
  const PluginEntry entry = loadPlugin(file, m_lastPluginError);
  if (!entry) return false;
  entry(this);
  return true;
}

bool ScriptManager::requestScriptPlugin(const kel::String& name)
{
  const auto loaded = [&](const kel::ref_ptr<ScriptPlugin>& plugin) { return plugin->getName() == name; };
  if (std::any_of(m_plugins.begin(), m_plugins.end(), loaded)) return true;
  const kel::String file = findPlugin(name, m_lastPluginError);
  return !file.empty() && loadScriptPlugin(file);
}

void ScriptManager::addScriptPlugin(ScriptPlugin* plugin)
{
  if (!plugin) return;
  std::erase_if(m_plugins, [plugin](const kel::ref_ptr<ScriptPlugin>& other) {
    return other.get() != plugin && other->getName() == plugin->getName();
  });
  if (std::find(m_plugins.begin(), m_plugins.end(), plugin) == m_plugins.end())
    m_plugins.emplace_back(plugin);
}

void ScriptManager::registerLuaEntry(const void* object, const char* text) { m_entries[object] = text; }

void ScriptManager::unregisterLuaEntry(const void* object) noexcept
{
  if (m_entries.erase(object) != 0) handles::forgetAdapter(object);
}

} // namespace kelLua
