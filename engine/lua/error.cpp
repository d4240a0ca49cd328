#include "kelLua/error.h"
#include "Report.h"
#include "kelLua/Wrap.h"

namespace kelLua {

namespace {

/// Stands at stack index 1 in place of a class table that the script left out.
char s_placeholder;

/// Pushes `file:line: ` of the innermost Lua function, "" when only C functions run.
void pushPosition(lua_State* L)
{
  lua_Debug frame;
  for (int level = 1; lua_getstack(L, level, &frame); ++level) {
    lua_getinfo(L, "Sl", &frame);
    if (frame.currentline <= 0) continue;
    lua_pushfstring(L, "%s:%d: ", frame.short_src, frame.currentline);
    return;
  }
  lua_pushliteral(L, "");
}

/// Pushes what the report says of the value beyond its type, "" for nothing.
void pushGiven(lua_State* L, int index)
{
  switch (lua_type(L, index)) {
  case LUA_TNUMBER:
    lua_pushfstring(L, "     given: %f\n", lua_tonumber(L, index));
    return;
  case LUA_TSTRING:
    lua_pushfstring(L, "     given: \"%s\"\n", lua_tostring(L, index));
    return;
  case LUA_TBOOLEAN:
    lua_pushfstring(L, "     given: %s\n", lua_toboolean(L, index) ? "true" : "false");
    return;
  case LUA_TUSERDATA:
    if (handles::isHandle(L, index) && !*static_cast<void**>(lua_touserdata(L, index))) {
      lua_pushliteral(L, "     given: a handle whose object is gone\n");
      return;
    }
    break;
  default:
    break;
  }
  lua_pushliteral(L, "");
}

/// The type of a value as scripts know it; it lies on the stack.
const char* typeName(lua_State* L, int index)
{
  if (lua_type(L, index) != LUA_TUSERDATA || handles::isHandle(L, index)) return tolua_typename(L, index);
  lua_pushliteral(L, "userdata"); // of another library
  return lua_tostring(L, -1);
}

/// Pushes the text behind its "#f" or "#v" with the report on the value that failed, which may lie above the
/// top.
void pushReport(lua_State* L, const char* text, const tolua_Error& failure)
{
  const int argument = failure.index - (isPlaceholder(L, 1) ? 1 : 0);
  const bool isGiven = failure.index <= lua_gettop(L);
  const char* array = failure.array ? "array of " : "";
  const char* provided = typeName(L, failure.index);
  const int report = lua_gettop(L);
  lua_pushfstring(L, "%s\n     ", text + 2);
  if (text[1] == 'f')
    lua_pushfstring(L, "argument #%d", argument);
  else
    lua_pushliteral(L, "value");
  lua_pushfstring(L, " is %s'%s'; %s'%s' expected.\n", array, provided, array, failure.type);
  if (isGiven) pushGiven(L, failure.index);
  lua_concat(L, lua_gettop(L) - report);
  lua_replace(L, report);
}

} // namespace

bool isPlaceholder(lua_State* L, int index) { return lua_touserdata(L, index) == &s_placeholder; }

void insertPlaceholder(lua_State* L)
{
  lua_pushlightuserdata(L, &s_placeholder);
  lua_insert(L, 1);
}

void raise(lua_State* L, const char* text, const tolua_Error* failure, const char* signatures)
{
  luaL_checkstack(L, LUA_MINSTACK, text);
  if (failure && text[0] == '#')
    pushReport(L, text, *failure);
  else
    lua_pushstring(L, text);
  pushPosition(L);
  lua_insert(L, -2);
  lua_pushstring(L, signatures ? "     signatures:\n" : "");
  lua_pushstring(L, signatures ? signatures : "");
  lua_concat(L, 4);
  lua_error(L);
  __builtin_unreachable();
}

void error(lua_State* L, const char* text, tolua_Error* failed) { raise(L, text, failed, nullptr); }

} // namespace kelLua
