#pragma once
#include <exception>
#include <lua.hpp>

namespace kelLua {

/// Whether an engine exception that leaves a wrapper becomes a Lua error with its text, behind the script's
/// `file:line: `. False at first: exceptions pass through, which suits a host that catches them itself and
/// whose Lua is built for that. For all states of the process. What is no std::exception always passes.
void setExceptionsAsErrors(bool errors);

} // namespace kelLua

namespace kelLua::wrap {

/// Keeps the text of the exception that is being handled, or passes the exception on.
void keepException(const std::exception& exception);
/// Raises the text that was kept. Not while the exception is handled: where Lua is C, an error does not end
/// the handling.
[[noreturn]] void raiseException(lua_State* L);

/// What scripts call for a wrapper.
template <lua_CFunction wrapper> int entered(lua_State* L)
{
  try {
    return wrapper(L);
  } catch (const std::exception& exception) {
    keepException(exception);
  }
  raiseException(L);
}

} // namespace kelLua::wrap
