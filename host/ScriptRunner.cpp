#include "ScriptRunner.h"
#include "Chunk.h"
#include "Interrupt.h"
#include "kelLua/traceback.h"
#include <cstdio>
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
  if (load(L, options) != 0) return fail(L);
  for (const std::string& argument : options.arguments) lua_pushstring(L, argument.c_str());

  const Interrupt interrupt(L);
  return callChunk(L, static_cast<int>(options.arguments.size()), 0) == 0 ? 0 : fail(L);
}
