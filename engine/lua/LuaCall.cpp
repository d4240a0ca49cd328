#include "kelLua/LuaCall.h"
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

/// Pushes the function of that name, which is on top, of the table below it. A table with a metatable is a
/// script's own class, whose look-up may fail with an error; that counts as no function. Pops the name.
void pushFunction(lua_State* L)
{
  if (!lua_getmetatable(L, -2)) return lua_rawget(L, -2);
  lua_pop(L, 1);
  lua_pushcfunction(L, getField);
  lua_insert(L, -2);
  lua_pushvalue(L, -3);
  lua_insert(L, -2);
  if (lua_pcall(L, 2, 1, 0) == 0) return;
  lua_pop(L, 1);
  lua_pushnil(L);
}

} // namespace

LuaCall::LuaCall(lua_State* L, const kelStream::ClassInformation& method, const void* object) : m_lua(L)
{
  if (!findFunctions(object)) return;
  lua_pushlstring(L, method.getMethodName().data(), method.getMethodName().size());
  takeFunction();
}

LuaCall::LuaCall(lua_State* L, const Text& method, const void* object) : m_lua(L)
{
  if (!findFunctions(object)) return;
  method.push(L);
  takeFunction();
}

bool LuaCall::findFunctions(const void* object)
{
  if (!m_lua || !handles::pushAdapter(m_lua, object)) return false;
  m_function = lua_gettop(m_lua) + 1;
  return true;
}

/// functions, name -> functions, function, handle, which is the first argument.
void LuaCall::takeFunction()
{
  pushFunction(m_lua);
  m_valid = !lua_isnil(m_lua, -1);
  if (!m_valid) return lua_settop(m_lua, m_function - numBelow - 1);
  lua_pushvalue(m_lua, m_function - 2);
  m_numArgs = 1;
}

LuaCall::~LuaCall()
{
  if (m_valid && !m_called) lua_settop(m_lua, m_function - numBelow - 1);
}

bool LuaCall::call(int numResults)
{
  m_called = true;
  const bool tracebacks = ScriptManager::instance()->getTracebacks();
  if (tracebacks) {
    lua_pushcfunction(m_lua, addTraceback);
    lua_replace(m_lua, m_function - 1);
  }
  const int status = lua_pcall(m_lua, m_numArgs, LUA_MULTRET, tracebacks ? m_function - 1 : 0);
  const int base = m_function - numBelow - 1;
  if (status != 0) {
    m_lastError = errorText(m_lua, -1);
    lua_settop(m_lua, base);
    return false;
  }
  const int numLeft = std::min(lua_gettop(m_lua) - m_function + 1, numResults);
  for (int i = 0; i < numLeft; ++i) {
    lua_pushvalue(m_lua, m_function + i);
    lua_replace(m_lua, base + 1 + i);
  }
  lua_settop(m_lua, base + numLeft);
  return true;
}

} // namespace kelLua
