#pragma once
#include "kelLua/Text.h"
#include "kelStream/ClassInformation.h"
#include <string>

struct lua_State;

namespace kelLua {

/// One call from the engine into a function that a script gave to an adapter. Lives on the stack for that
/// call.
///
/// The function is called with the adapter's handle first, then with the arguments that the caller pushes on
/// `m_lua` after adding one to `m_numArgs` for each.
class LuaCall
{
public:
  /// Looks for the function that carries the method's name on the script's handle for `object`. Finding none
  /// is no error: `m_valid` is false, and the stack of the state is as it was.
  LuaCall(lua_State* L, const kelStream::ClassInformation& method, const void* object);
  /// The same by the method's name alone.
  LuaCall(lua_State* L, const Text& method, const void* object);
  LuaCall(const LuaCall&) = delete;
  LuaCall& operator=(const LuaCall&) = delete;
  /// Ends the call. An engine exception that passes by leaves no arguments behind.
  ~LuaCall();

  /// Calls the function and leaves what it returned, at most `numResults` values, on the stack. False on
  /// failure, which leaves nothing; the text is then at `getLastError`.
  bool call(int numResults);
  /// The text of the failure, "file:line: message".
  const std::string& getLastError() const { return m_lastError; }

  lua_State* m_lua;     ///< The state to push arguments on.
  int m_numArgs = 0;    ///< How many arguments lie on the stack.
  bool m_valid = false; ///< Whether there is a function to call.

private:
  static constexpr int numBelow = 3; ///< Values that the call keeps below the function.

  bool findFunctions(const void* object);
  void takeFunction();

  int m_function = 0; ///< Its place on the stack.
  bool m_called = false;
  std::string m_lastError;
};

} // namespace kelLua
