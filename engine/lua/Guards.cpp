#include "Report.h"
#include "kelLua/Wrap.h"
#include <cstring>

namespace kelLua::wrap {

namespace {

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

/// The same, with what the type remembers of it.
bool isAccepted(lua_State* L, const Type& type)
{
  const void* metatable = lua_topointer(L, -1);
  const bool accepted = type.accepts(metatable);
  if (accepted || type.refuses(metatable)) {
    lua_pop(L, 1);
    return accepted;
  }
  const bool result = isOrDerives(L, type.name);
  type.remember(metatable, result);
  return result;
}

} // namespace

namespace slow {

bool isClass(lua_State* L, const Type& type)
{
  if (lua_istable(L, 1)) {
    lua_pushvalue(L, 1);
    if (isAccepted(L, type)) return true;
  }
  if (!isPlaceholder(L, 1)) insertPlaceholder(L);
  return true;
}

bool isPointer(lua_State* L, int n, void*& object, const Type& type, tolua_Error* failure)
{
  switch (lua_type(L, n)) {
  case LUA_TNIL:
    return true;
  case LUA_TTABLE: // may stand for an object
    if (!tolua_isusertype(L, n, type.name, 0, failure)) return false;
    object = tolua_tousertype(L, n, nullptr);
    return true;
  case LUA_TUSERDATA:
    if (!lua_getmetatable(L, n) || !isAccepted(L, type)) break;
    object = *static_cast<void**>(lua_touserdata(L, n));
    return true;
  default:
    break;
  }
  *failure = {n, 0, type.name};
  return false;
}

bool isReference(lua_State* L, int n, void*& object, const Type& type, tolua_Error* failure)
{
  if (tolua_isvaluenil(L, n, failure) || !isPointer(L, n, object, type, failure)) return false;
  if (object) return true;
  *failure = {n, 0, type.name};
  return false;
}

bool isNumber(lua_State* L, int n, tolua_Error* failure)
{
  const int kind = lua_type(L, n);
  if (kind == LUA_TNUMBER || (kind == LUA_TSTRING && lua_isnumber(L, n))) return true;
  *failure = {n, 0, "number"};
  return false;
}

} // namespace slow
} // namespace kelLua::wrap
