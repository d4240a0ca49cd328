#include "Chunk.h"
#include "kelLua/traceback.h"
#include <lua.hpp>

namespace {

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
  const int status = lua_pcall(L, numArguments, numResults, base);
  lua_remove(L, base);
  return status;
}
