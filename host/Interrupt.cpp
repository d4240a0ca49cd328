#include "Interrupt.h"
#include <csignal>
#include <lua.hpp>

namespace {

lua_State* s_state = nullptr;
volatile std::sig_atomic_t s_pressed = 0;

/// Stays set, so that a script that catches the error, or a callback whose errors are only logged, stops all
/// the same.
void stop(lua_State* L, lua_Debug*) { luaL_error(L, "interrupted"); }

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
  s_pressed = 0;
  std::signal(SIGINT, onSignal);
}

Interrupt::~Interrupt()
{
  std::signal(SIGINT, SIG_DFL);
  lua_sethook(s_state, nullptr, 0, 0);
}

bool Interrupt::wasPressed() { return s_pressed != 0; }
