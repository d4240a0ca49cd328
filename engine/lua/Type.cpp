#include "kelLua/Type.h"
#include "forgetWinners.h"
#include "registryKeys.h"
#include <algorithm>
#include <deque>
#include <iterator>
#include <lua.hpp>
#include <string>
#include <unordered_map>

namespace kelLua::wrap {

namespace {

struct Types
{
  std::deque<Type> all;
  std::unordered_map<std::string, Type*> byName; ///< Holds the names.
  bool haveJudged = false;
};

/// Packages ask for their types while libraries load, in any order.
Types& types()
{
  static Types instance;
  return instance;
}

} // namespace

void Type::remember(const void* metatable, bool accepted) const
{
  const void** slots = accepted ? m_accepted : m_refused;
  const std::size_t i = slot(metatable);
  slots[i ^ 1] = slots[i];
  slots[i] = metatable;
  types().haveJudged = true;
}

const Type& type(const char* name)
{
  Types& known = types();
  const auto [entry, isNew] = known.byName.try_emplace(name, nullptr);
  if (isNew) entry->second = &known.all.emplace_back(entry->first.c_str(), newRegistryKeys(2));
  return *entry->second;
}

void forgetJudgements()
{
  Types& known = types();
  if (!known.haveJudged) return;
  known.haveJudged = false;
  for (const Type& each : known.all) {
    std::fill(std::begin(each.m_accepted), std::end(each.m_accepted), nullptr);
    std::fill(std::begin(each.m_refused), std::end(each.m_refused), nullptr);
  }
  forgetWinners();
}

void pushMetatable(lua_State* L, const Type& type)
{
  lua_rawgeti(L, LUA_REGISTRYINDEX, type.metatableKey);
  if (!lua_isnil(L, -1)) return;
  lua_pop(L, 1);
  luaL_getmetatable(L, type.name);
  lua_pushvalue(L, -1);
  lua_rawseti(L, LUA_REGISTRYINDEX, type.metatableKey);
}

} // namespace kelLua::wrap
