#include "kelLua/Text.h"
#include "registryKeys.h"

namespace kelLua {

int newRegistryKeys(int count)
{
  static int s_next = 1 << 20;
  const int first = s_next;
  s_next += count;
  return first;
}

Text::Text(const kel::String& text) : m_text(text), m_key(newRegistryKeys(1)) {}

void Text::enter(lua_State* L) const
{
  lua_pop(L, 1);
  lua_pushlstring(L, m_text.data(), m_text.size());
  lua_pushvalue(L, -1);
  lua_rawseti(L, LUA_REGISTRYINDEX, m_key);
}

} // namespace kelLua
