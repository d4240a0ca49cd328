#pragma once
#include "kel/String.h"
#include <lua.hpp>

namespace kelLua {

/// A text that goes to Lua often. Each state makes it a Lua string once and finds it again by number.
class Text
{
public:
  explicit Text(const kel::String& text);

  void push(lua_State* L) const
  {
    lua_rawgeti(L, LUA_REGISTRYINDEX, m_key);
    if (lua_type(L, -1) != LUA_TSTRING) enter(L);
  }
  const kel::String& get() const { return m_text; }

private:
  void enter(lua_State* L) const;

  kel::String m_text;
  int m_key;
};

} // namespace kelLua
