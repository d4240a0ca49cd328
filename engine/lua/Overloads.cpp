#include "forgetWinners.h"
#include "kelLua/Wrap.h"
#include <algorithm>
#include <iterator>

namespace kelLua::wrap {

namespace {

Overloads* s_remembering = nullptr;

/// What tells a value from one that other overloads take: its metatable, or its type.
const void* classOf(lua_State* L, int n)
{
  static const char s_types[16] = {}; // LuaJIT has more than Lua
  if (!lua_getmetatable(L, n)) return &s_types[lua_type(L, n)];
  const void* metatable = lua_topointer(L, -1);
  lua_settop(L, -2);
  return metatable;
}

} // namespace

/// Whether the winner depends on the shape alone: no texts and tables, and no cleared handles.
bool Overloads::hasShape(lua_State* L, int top) const
{
  for (int n = m_first; n <= top; ++n) {
    const int kind = lua_type(L, n);
    if (kind == LUA_TSTRING || kind == LUA_TTABLE) return false;
    if (kind == LUA_TUSERDATA && (!handles::isHandle(L, n) || !*static_cast<void**>(lua_touserdata(L, n))))
      return false;
  }
  return true;
}

int Overloads::call(lua_State* L)
{
  const void* classes[maxArguments];
  const int top = lua_gettop(L);
  const int size = top - m_first + 1;
  if (size < 0 || size > maxArguments) return search(L, top, m_winners[0], nullptr);
  auto hash = static_cast<std::uintptr_t>(size);
  for (int i = 0; i < size; ++i) {
    classes[i] = classOf(L, m_first + i);
    hash = (hash ^ reinterpret_cast<std::uintptr_t>(classes[i])) * 0x9E3779B97F4A7C15u;
  }
  Winner& winner = m_winners[(hash >> 60) % numWinners];
  if (winner.size == size && std::equal(classes, classes + size, winner.classes)) {
    const int results = winner.function(L, top);
    if (results != notTaken) return results;
  }
  return search(L, top, winner, classes);
}

/// Tries the overloads in turn; what wins becomes the winner for the classes unless they are null.
int Overloads::search(lua_State* L, int top, Winner& winner, const void* const* classes)
{
  const bool lasts = classes && hasShape(L, top);
  for (int i = 0; i < m_numOverloads; ++i) {
    const int results = m_overloads[i](L, top);
    if (results == notTaken) continue;
    if (lasts) {
      winner.size = top - m_first + 1;
      winner.function = m_overloads[i];
      std::copy(classes, classes + winner.size, winner.classes);
      if (!std::exchange(m_remembers, true)) m_next = std::exchange(s_remembering, this);
    }
    return results;
  }
  return 0; // not reached: the last one raises
}

void forgetWinners()
{
  for (Overloads* each = s_remembering; each; each = each->m_next) {
    std::fill(std::begin(each->m_winners), std::end(each->m_winners), Overloads::Winner{});
    each->m_remembers = false;
  }
  s_remembering = nullptr;
}

} // namespace kelLua::wrap
