#pragma once

struct lua_State;

/// While it lives, Ctrl-C stops the script in a state with the error "interrupted". A second Ctrl-C ends the
/// process at once, for a script that is stuck in a long engine call or in a loop that LuaJIT has compiled.
class Interrupt
{
public:
  explicit Interrupt(lua_State* L);
  Interrupt(const Interrupt&) = delete;
  Interrupt& operator=(const Interrupt&) = delete;
  ~Interrupt();

  /// Whether Ctrl-C was pressed since the last one was made.
  static bool wasPressed();
};
