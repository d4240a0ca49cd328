#include "kelLua/LuaCall.h"
#include "HandleState.h"
#include "kelLua/Handles.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/traceback.h"
#include <algorithm>

namespace kelLua {

namespace {

/// table, key -> table[key], by the script's own metamethods.
int getField(lua_State* L)
{
  lua_gettable(L, 1);
  return 1;
}

/// Replaces the peer table on top by the function of that name. A peer table with a metatable is a script's
/// own class, whose look-up may fail with an error; that counts as no function.
void pushFunction(lua_State* L, const std::string& name)
{
  if (!lua_getmetatable(L, -1)) {
    lua_pushlstring(L, name.data(), name.size());
    lua_rawget(L, -2);
    lua_remove(L, -2);
    return;
  }
  lua_pop(L, 1);
  lua_pushcfunction(L, getField);
  lua_insert(L, -2);
  lua_pushlstring(L, name.data(), name.size());
  if (lua_pcall(L, 2, 1, 0) != 0) {
    lua_pop(L, 1);
    lua_pushnil(L);
  }
}

} // namespace

LuaCall::LuaCall(lua_State* L, const kelStream::ClassInformation& method, const void* object) : m_lua(L)
{
  if (!L || !handles::isAlive(L) || !lua_checkstack(L, LUA_MINSTACK)) return;
  m_base = lua_gettop(L);
  handles::pushAdapter(L, object);
  if (lua_isuserdata(L, -1) && handles::pushOwnTable(L, lua_gettop(L))) {
    pushFunction(L, method.getMethodName());
    lua_insert(L, -2); // function below the handle, the first argument
    m_valid = !lua_isnil(L, -2);
    m_numArgs = 1;
  }
  if (!m_valid) lua_settop(L, m_base);
}

LuaCall::~LuaCall()
{
  if (m_valid && !m_called) lua_settop(m_lua, m_base);
}

bool LuaCall::call(int numResults)
{
  m_called = true;
  const bool tracebacks = ScriptManager::instance()->getTracebacks();
  if (tracebacks) {
    lua_pushcfunction(m_lua, addTraceback);
    lua_insert(m_lua, m_base + 1);
  }
  const int status = lua_pcall(m_lua, m_numArgs, LUA_MULTRET, tracebacks ? m_base + 1 : 0);
  if (tracebacks) lua_remove(m_lua, m_base + 1);
  if (status != 0) {
    m_lastError = errorText(m_lua, -1);
    lua_settop(m_lua, m_base);
    return false;
  }
  lua_settop(m_lua, std::min(lua_gettop(m_lua), m_base + numResults));
  return true;
}

} // namespace kelLua
