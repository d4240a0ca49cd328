#pragma once
#include "kelSDK/StepEventListener.h"
#include <lua.hpp>
#include <tolua++.h>

namespace kelSDK {

/// A listener whose functions lie on its script object, called as one writes that by hand.
class StockListener : public StepEventListener
{
public:
  explicit StockListener(lua_State* L) : m_lua(L) {}
  void post(const kel::TimeStamp& time) override
  {
    if (!pushFunction("post")) return;
    lua_pushnumber(m_lua, time);
    call(2);
  }
  void addNotification() override
  {
    if (pushFunction("addNotification")) call(1);
  }

private:
  /// Pushes the function and this object; nothing if there is no such function.
  bool pushFunction(const char* name)
  {
    const int top = lua_gettop(m_lua);
    tolua_pushusertype(m_lua, this, "kelSDK::StockListener");
    lua_insert(m_lua, top + 1); // a helper value may lie below it
    lua_settop(m_lua, top + 1);
    lua_getfield(m_lua, -1, name);
    lua_insert(m_lua, -2);
    if (lua_isfunction(m_lua, -2)) return true;
    lua_settop(m_lua, top);
    return false;
  }
  void call(int arguments)
  {
    if (lua_pcall(m_lua, arguments, 0, 0) != 0) lua_pop(m_lua, 1);
  }

  lua_State* m_lua;
};

} // namespace kelSDK
