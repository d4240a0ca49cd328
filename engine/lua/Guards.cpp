#include "Guards.h"
#include "Report.h"
#include "kelLua/Wrap.h"
#include <algorithm>
#include <cstring>
#include <iterator>

namespace kelLua::wrap {

namespace {

unsigned s_generation = 1;

/// Whether a class, given by its metatable on top of the stack, is that of the type string or derives from
/// it. Pops the metatable.
bool isOrDerives(lua_State* L, const char* type)
{
  const int metatable = lua_gettop(L);
  lua_pushvalue(L, metatable);
  lua_rawget(L, LUA_REGISTRYINDEX);
  const char* name = lua_tostring(L, -1);
  bool result = name && std::strcmp(name, type) == 0;
  if (name && !result) {
    lua_getfield(L, LUA_REGISTRYINDEX, "tolua_super");
    lua_pushvalue(L, metatable);
    lua_rawget(L, -2);
    if (lua_istable(L, -1)) {
      lua_getfield(L, -1, type);
      result = lua_toboolean(L, -1) != 0;
    }
  }
  lua_settop(L, metatable - 1);
  return result;
}

/// The same, with what the record remembers of it.
bool isAccepted(lua_State* L, const Type& type)
{
  const void* metatable = lua_topointer(L, -1);
  const void* registry = lua_topointer(L, LUA_REGISTRYINDEX);
  if (type.generation != s_generation || type.registry != registry) {
    std::fill(std::begin(type.judged), std::end(type.judged), Type::Judged{});
    type.generation = s_generation;
    type.registry = registry;
  }
  for (const Type::Judged& judged : type.judged)
    if (judged.metatable == metatable) {
      lua_pop(L, 1);
      return judged.accepted;
    }
  Type::Judged& judged = type.judged[type.next++ % std::size(type.judged)];
  judged.accepted = isOrDerives(L, type.name);
  judged.metatable = metatable;
  return judged.accepted;
}

} // namespace

void forgetJudgements() { ++s_generation; }

bool isClass(lua_State* L, const Type& type, tolua_Error*)
{
  if (lua_istable(L, 1)) {
    lua_pushvalue(L, 1);
    if (isAccepted(L, type)) return true;
  }
  if (!isPlaceholder(L, 1)) insertPlaceholder(L);
  return true;
}

bool isPointer(lua_State* L, int n, const Type& type, tolua_Error* failure)
{
  const int kind = lua_type(L, n);
  if (kind == LUA_TNIL) return true;
  if (kind == LUA_TTABLE)
    return tolua_isusertype(L, n, type.name, 0, failure) != 0; // may stand for an object
  if (kind == LUA_TUSERDATA && lua_getmetatable(L, n) && isAccepted(L, type)) return true;
  *failure = {n, 0, type.name};
  return false;
}

bool isReference(lua_State* L, int n, const Type& type, tolua_Error* failure)
{
  if (tolua_isvaluenil(L, n, failure) || !isPointer(L, n, type, failure)) return false;
  if (pointer<const void>(L, n)) return true;
  *failure = {n, 0, type.name};
  return false;
}

} // namespace kelLua::wrap
