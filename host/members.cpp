#include "members.h"
#include <algorithm>
#include <cctype>
#include <lua.hpp>

namespace {

using Members = std::map<std::string, MemberKind>;

constexpr int deepest = 64; ///< A chain of metatables may be a ring.

bool isRuntimeName(const std::string& name) { return name.starts_with("__") || name == "tolua_ubox"; }

bool isConstructor(const std::string& name) { return name == "new" || name == "new_local"; }

/// Adds the keys of the table on top of the stack.
void addKeys(lua_State* L, bool constructors, bool variables, Members& members)
{
  for (lua_pushnil(L); lua_next(L, -2); lua_pop(L, 1)) {
    if (lua_type(L, -2) != LUA_TSTRING) continue;
    const std::string name = lua_tostring(L, -2);
    if ((name == ".get" || name == ".set") && lua_istable(L, -1)) {
      addKeys(L, constructors, true, members);
      continue;
    }
    if (!isIdentifier(name) || isRuntimeName(name) || (isConstructor(name) && !constructors)) continue;
    const MemberKind kind = lua_isfunction(L, -1) ? MemberKind::FUNCTION : MemberKind::VALUE;
    members.emplace(name, variables ? MemberKind::VARIABLE : kind);
  }
}

/// Replaces the value on top by what its look-up goes on in: the table of an `__index`, else the metatable,
/// where classes have their members. Pops it and gives false when there is none.
bool toNext(lua_State* L, bool& isClass)
{
  const bool found = lua_getmetatable(L, -1) != 0;
  lua_remove(L, found ? -2 : -1);
  if (!found) return false;
  lua_pushliteral(L, "__index");
  lua_rawget(L, -2);
  isClass = !lua_istable(L, -1);
  lua_remove(L, isClass ? -1 : -2);
  return true;
}

/// Pushes what a script has added to the handle on top of the stack; false for none and for other userdata.
bool pushPeer(lua_State* L)
{
  if (!lua_isuserdata(L, -1) || !lua_getmetatable(L, -1)) return false;
  lua_rawget(L, LUA_REGISTRYINDEX); // the binding library keeps a type's name there
  const bool isHandle = lua_type(L, -1) == LUA_TSTRING;
  lua_pop(L, 1);
  if (!isHandle) return false;
  lua_getfenv(L, -1);
  if (lua_istable(L, -1) && !lua_rawequal(L, -1, LUA_REGISTRYINDEX)) return true;
  lua_pop(L, 1);
  return false;
}

/// Adds the members of the value on top of the stack, and pops it.
void addMembers(lua_State* L, Members& members)
{
  if (pushPeer(L)) addMembers(L, members);
  bool isClass = lua_isuserdata(L, -1);
  for (int depth = 0; depth < deepest; ++depth) {
    if (lua_istable(L, -1)) addKeys(L, !isClass, false, members);
    if (!toNext(L, isClass)) return;
  }
  lua_pop(L, 1);
}

} // namespace

bool isIdentifier(const std::string& name)
{
  const auto isWordCharacter = [](unsigned char c) { return std::isalnum(c) || c == '_'; };
  return !name.empty() && !std::isdigit(static_cast<unsigned char>(name[0])) &&
         std::all_of(name.begin(), name.end(), isWordCharacter);
}

std::map<std::string, MemberKind> membersOf(lua_State* L, int index)
{
  Members members;
  luaL_checkstack(L, LUA_MINSTACK, "too many values");
  lua_pushvalue(L, index);
  addMembers(L, members);
  return members;
}
