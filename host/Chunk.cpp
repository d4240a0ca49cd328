#include "Chunk.h"
#include "kelLua/traceback.h"
#include <exception>
#include <lua.hpp>

namespace {

/// Calls the function below its arguments. An engine exception becomes a Lua error here, where the script's
/// frames still stand.
int callThrough(lua_State* L)
{
  try {
    lua_call(L, lua_gettop(L) - 1, LUA_MULTRET);
    return lua_gettop(L);
  } catch (const std::exception& exception) {
    lua_checkstack(L, LUA_MINSTACK);
    lua_settop(L, 0);
    lua_pushstring(L, exception.what());
    kelLua::addTraceback(L);
  }
  return lua_error(L);
}

/// Message handler: errors that already carry a traceback stay as they are.
int handleError(lua_State* L)
{
  const std::string text = kelLua::errorText(L, 1);
  if (text.find("\nstack traceback:") != std::string::npos) return 1;
  return kelLua::addTraceback(L);
}

} // namespace

int callChunk(lua_State* L, int numArguments, int numResults)
{
  const int base = lua_gettop(L) - numArguments;
  lua_pushcfunction(L, handleError);
  lua_insert(L, base);
  lua_pushcfunction(L, callThrough);
  lua_insert(L, base + 1);
  const int status = lua_pcall(L, numArguments + 1, numResults, base);
  lua_remove(L, base);
  return status;
}
