#include "kelLua/Wrap.h"
#include "ClassEvents.h"
#include "Guards.h"
#include "Report.h"
#include <cstdio>

namespace kelLua::wrap {

namespace {

/// A text with a name in it. It is made off the Lua stack, where the failed argument's place may be the next
/// free.
struct Text
{
  char text[256] = "";
  Text(const char* format, const char* name) { std::snprintf(text, sizeof text, format, name); }
  operator const char*() const { return text; }
};

void enterClass(lua_State* L, const Entry& entry)
{
  tolua_cclass(L, entry.name, entry.type, entry.base, entry.function);
  tolua_beginmodule(L, entry.name);
}

void runChunk(lua_State* L, const Entry& entry)
{
  const int top = lua_gettop(L);
  tolua_dobuffer(L, const_cast<char*>(entry.type), static_cast<unsigned>(entry.value), entry.name);
  lua_settop(L, top);
}

/// Registers a type and the collector of values that carry its string, plain or const.
void enterType(lua_State* L, const TypeEntry& type)
{
  luaL_getmetatable(L, type.name);
  const bool known = lua_istable(L, -1);
  lua_pop(L, 1);
  if (!known) {
    tolua_usertype(L, type.name);
    addClassEvents(L, type.name);
  }
  if (!type.collector) return;
  for (const char* prefix : {"", "const "}) {
    lua_pushfstring(L, "%s%s", prefix, type.name);
    lua_rawget(L, LUA_REGISTRYINDEX);
    lua_pushcfunction(L, type.collector);
    lua_setfield(L, -2, ".collector");
    lua_pop(L, 1);
  }
}

} // namespace

void failed(lua_State* L, const char* name, tolua_Error* failure, const char* signatures)
{
  raise(L, Text("#ferror in function '%s'.", name), failure, signatures);
}

void badSelf(lua_State* L, const char* name)
{
  raise(L, Text("invalid 'self' in function '%s'", name), nullptr, nullptr);
}

void badVariableSelf(lua_State* L, const char* name)
{
  raise(L, Text("invalid 'self' in accessing variable '%s'", name), nullptr, nullptr);
}

void badValue(lua_State* L, tolua_Error* failure)
{
  raise(L, "#vinvalid type in variable assignment.", failure, nullptr);
}

void missingObject(lua_State* L, int n, const Type& type, const char* name)
{
  tolua_Error failure = {n, 0, type.name};
  failed(L, name, &failure, nullptr);
}

void outOfRange(lua_State* L) { raise(L, lua_tostring(L, -1), nullptr, nullptr); }

void pushAddress(lua_State* L, const void* value) { tolua_pushuserdata(L, const_cast<void*>(value)); }

int openPackage(lua_State* L, const TypeEntry* types, const Entry* entries)
{
  tolua_open(L);
  handles::open(L);
  openClassEvents(L);
  forgetJudgements();
  for (const TypeEntry* type = types; type->name; ++type) enterType(L, *type);
  tolua_module(L, nullptr, 0);
  tolua_beginmodule(L, nullptr);
  int depth = 1;
  for (const Entry* entry = entries; depth > 0; ++entry) {
    switch (entry->kind) {
    case Entry::Kind::Module:
      tolua_module(L, entry->name, entry->value != 0);
      tolua_beginmodule(L, entry->name);
      ++depth;
      break;
    case Entry::Kind::Class:
      enterClass(L, *entry);
      ++depth;
      break;
    case Entry::Kind::End:
      tolua_endmodule(L);
      --depth;
      break;
    case Entry::Kind::Function:
      tolua_function(L, entry->name, entry->function);
      break;
    case Entry::Kind::Constant:
      tolua_constant(L, entry->name, entry->value);
      break;
    case Entry::Kind::Variable:
      tolua_variable(L, entry->name, entry->function, entry->setter);
      break;
    case Entry::Kind::Chunk:
      runChunk(L, *entry);
      break;
    }
  }
  return 1;
}

} // namespace kelLua::wrap
