#include "Interrupt.h"
#include <csignal>
#include <initializer_list>
#include <lua.hpp>

namespace {

lua_State* s_state = nullptr;
volatile std::sig_atomic_t s_pressed = 0;

/// Raises at every instruction once Ctrl-C was pressed, so that a script that catches the error, or a
/// callback whose errors are only logged, stops all the same.
void stop(lua_State* L, lua_Debug*)
{
  if (!s_pressed) return;
  lua_sethook(L, stop, LUA_MASKCOUNT, 1);
  luaL_error(L, "interrupted");
}

/// In place of coroutine.create and coroutine.wrap, its upvalue. The signal handler can only reach the main
/// thread; a coroutine inherits a hook that looks for Ctrl-C now and then, unless it inherits a debugger's.
int makeCoroutine(lua_State* L)
{
  constexpr int instructions = 1000;
  luaL_argcheck(L, lua_isfunction(L, 1) && !lua_iscfunction(L, 1), 1, "Lua function expected");
  lua_settop(L, 1);
  lua_pushvalue(L, lua_upvalueindex(1));
  lua_insert(L, 1);
  const bool isHooked = lua_gethook(L) != nullptr;
  if (!isHooked) lua_sethook(L, stop, LUA_MASKCOUNT, instructions);
  lua_call(L, 1, 1);
  if (!isHooked && !s_pressed) lua_sethook(L, nullptr, 0, 0);
  return 1;
}

void replaceMakers(lua_State* L)
{
  lua_getglobal(L, "coroutine");
  for (const char* maker : {"create", "wrap"}) {
    lua_getfield(L, -1, maker);
    if (lua_tocfunction(L, -1) == makeCoroutine) { // from an earlier chunk
      lua_pop(L, 1);
      continue;
    }
    lua_pushcclosure(L, makeCoroutine, 1);
    lua_setfield(L, -2, maker);
  }
  lua_pop(L, 1);
}

void onSignal(int signal)
{
  std::signal(signal, SIG_DFL);
  s_pressed = 1;
  lua_sethook(s_state, stop, LUA_MASKCOUNT, 1);
}

} // namespace

Interrupt::Interrupt(lua_State* L)
{
  s_state = L;
  replaceMakers(L);
  s_pressed = 0;
  std::signal(SIGINT, onSignal);
}

Interrupt::~Interrupt()
{
  std::signal(SIGINT, SIG_DFL);
  lua_sethook(s_state, nullptr, 0, 0);
}

bool Interrupt::wasPressed() { return s_pressed != 0; }
