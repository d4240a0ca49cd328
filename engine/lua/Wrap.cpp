#include "kelLua/Wrap.h"
#include "ClassEvents.h"
#include "Members.h"
#include "Report.h"
#include "ownFrame.h"
#include "pushWrapper.h"
#include <cstdio>
#include <cstring>

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
  if (*entry.base) {
    luaL_getmetatable(L, entry.base);
    members::classChanged(L, true);
    lua_pop(L, 1);
  }
  tolua_beginmodule(L, entry.name);
}

/// Ends the module or class whose table is on top.
void leave(lua_State* L)
{
  lua_pushvalue(L, -1);
  lua_rawget(L, LUA_REGISTRYINDEX);
  const bool isClass = lua_type(L, -1) == LUA_TSTRING;
  lua_pop(L, 1);
  if (isClass) members::classChanged(L, false);
  tolua_endmodule(L);
}

void enterFunction(lua_State* L, const Entry& entry)
{
  if (entry.name[0] == '.') addToOwnFrame(entry.function);
  lua_pushstring(L, entry.name);
  pushWrapper(L, entry.function, 0);
  lua_rawset(L, -3);
  if (!entry.event) return;
  if (std::strcmp(entry.name, ".geti") == 0)
    members::addElementEvent(entry.function, entry.event);
  else
    setOperation(L, entry.name, entry.event);
}

/// Enters a closure over the variable's context.
void enterAccessor(lua_State* L, const char* accessors, const Entry& entry, lua_CFunction function)
{
  if (!members::rawField(L, accessors)) {
    lua_newtable(L);
    lua_pushstring(L, accessors);
    lua_pushvalue(L, -2);
    lua_rawset(L, -4);
  }
  lua_pushstring(L, entry.name);
  lua_pushlightuserdata(L, const_cast<void*>(entry.context));
  lua_pushcclosure(L, function, 1);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

void enterVariable(lua_State* L, const Entry& entry)
{
  if (entry.context) {
    enterAccessor(L, ".get", entry, entry.function);
    if (entry.setter) enterAccessor(L, ".set", entry, entry.setter);
    return;
  }
  addToOwnFrame(entry.function);
  if (entry.setter) addToOwnFrame(entry.setter);
  tolua_variable(L, entry.name, entry.function, entry.setter);
}

void runChunk(lua_State* L, const Entry& entry)
{
  const int top = lua_gettop(L);
  tolua_dobuffer(L, const_cast<char*>(entry.type), static_cast<unsigned>(entry.value), entry.name);
  lua_settop(L, top);
}

/// Registers a type and the collector of values that carry its string, plain or const.
void enterType(lua_State* L, const TypeEntry& entry)
{
  addType(L, entry.name);
  if (entry.isInline) dropFinaliser(L, entry.name);
  for (const char* prefix : {"", "const "}) {
    lua_pushfstring(L, "%s%s", prefix, entry.name);
    const Type& each = type(lua_tostring(L, -1));
    lua_rawget(L, LUA_REGISTRYINDEX);
    if (entry.collector) {
      lua_pushcfunction(L, entry.collector);
      lua_setfield(L, -2, ".collector");
    }
    lua_rawseti(L, LUA_REGISTRYINDEX, each.metatableKey);
  }
}

bool hasOperation(lua_State* L, const char* name)
{
  const int top = lua_gettop(L);
  const bool found = members::findOperation(L, name);
  lua_settop(L, top);
  return found;
}

} // namespace

void failed(lua_State* L, const char* name, tolua_Error* failure, const char* signatures)
{
  if (name[0] == '.' && isOperation(L) && !hasOperation(L, name)) badOperand(L);
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

void badOperand(lua_State* L)
{
  tolua_error(L, "Attempt to perform operation on an invalid operand", nullptr);
  __builtin_unreachable();
}

int memberOrElement(lua_State* L) { return members::elementIndex(L); }

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
      leave(L);
      --depth;
      break;
    case Entry::Kind::Function:
      enterFunction(L, *entry);
      break;
    case Entry::Kind::Constant:
      tolua_constant(L, entry->name, entry->value);
      break;
    case Entry::Kind::Variable:
      enterVariable(L, *entry);
      break;
    case Entry::Kind::Chunk:
      runChunk(L, *entry);
      break;
    }
  }
  return 1;
}

} // namespace kelLua::wrap
