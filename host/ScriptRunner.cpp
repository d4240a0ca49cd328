#include "ScriptRunner.h"
#include "Interrupt.h"
#include "kelLua/traceback.h"
#include <cstdio>
#include <exception>
#include <lua.hpp>

namespace {

constexpr int scriptFailed = 1;
constexpr int interrupted = 130;

void setArguments(lua_State* L, const Options& options)
{
  lua_createtable(L, static_cast<int>(options.arguments.size()), 1);
  lua_pushstring(L, options.chunk ? "-e" : options.script.c_str());
  lua_rawseti(L, -2, 0);
  for (std::size_t i = 0; i < options.arguments.size(); ++i) {
    lua_pushstring(L, options.arguments[i].c_str());
    lua_rawseti(L, -2, static_cast<int>(i) + 1);
  }
  lua_setglobal(L, "arg");
}

int load(lua_State* L, const Options& options)
{
  if (options.chunk)
    return luaL_loadbuffer(L, options.chunk->data(), options.chunk->size(), "=(command line)");
  return luaL_loadfile(L, options.script == "-" ? nullptr : options.script.c_str());
}

/// Calls the chunk below its arguments. An engine exception becomes a Lua error here, where the script's
/// frames still stand, so that its traceback shows where the script was.
int callChunk(lua_State* L)
{
  try {
    lua_call(L, lua_gettop(L) - 1, 0);
    return 0;
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

int fail(lua_State* L)
{
  std::fprintf(stderr, "kel: %s\n", kelLua::errorText(L, -1).c_str());
  lua_pop(L, 1);
  return Interrupt::wasPressed() ? interrupted : scriptFailed;
}

} // namespace

int runScript(lua_State* L, const Options& options)
{
  setArguments(L, options);
  lua_pushcfunction(L, handleError);
  lua_pushcfunction(L, callChunk);
  if (load(L, options) != 0) return fail(L);
  for (const std::string& argument : options.arguments) lua_pushstring(L, argument.c_str());

  const Interrupt interrupt(L);
  const int numArguments = static_cast<int>(options.arguments.size()) + 1;
  return lua_pcall(L, numArguments, 0, 1) == 0 ? 0 : fail(L);
}
