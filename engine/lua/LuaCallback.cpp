#include "kelLua/LuaCallback.h"
#include "kelLua/ScriptManager.h"

namespace kelLua {

LuaCallback::LuaCallback(const void* object, const char* text) : m_object(object), m_luaState(nullptr)
{
  ScriptManager* manager = ScriptManager::instance(false);
  if (!manager) return;
  m_luaState = manager->getState();
  manager->registerLuaEntry(m_object, text);
}

LuaCallback::~LuaCallback()
{
  if (ScriptManager* manager = ScriptManager::instance(false)) manager->unregisterLuaEntry(m_object);
}

} // namespace kelLua
