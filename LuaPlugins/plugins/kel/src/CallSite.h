#pragma once
#include "kel/String.h"
#include "kelLua/Handles.h"
#include "kelLua/LuaCall.h"
#include "kelLua/LuaCallback.h"
#include "kelLua/push.h"
#include "kelStream/ClassInformation.h"
#include <lua.hpp>
#include <type_traits>

namespace kelLua {

/// An engine object as an argument of a script call, with the type under which the script sees it.
template <class T> struct ObjectArgument
{
  T* object;
  const wrap::Type& type;
};
template <class T> ObjectArgument(T*, const wrap::Type&) -> ObjectArgument<T>;

/// A value as an argument of a script call: the script gets a copy of its own. The type's package must be
/// open.
template <class T> struct ValueArgument
{
  const T& value;
  const wrap::Type& type;
};
template <class T> ValueArgument(const T&, const wrap::Type&) -> ValueArgument<T>;

/// One override of a script adapter: the signature of the method that it stands for, and the protocol by
/// which its calls reach the script. The same protocol serves every adapter, so that an override is one row:
///
///     void Adapter::post(const TimeStamp& time) { site.call(*this, time); }
///
/// A function that the script has not defined costs nothing and gives the fallback. A function that fails is
/// logged, and the site goes on as if it had returned nothing.
class CallSite
{
public:
  /// `signature` is the method's full signature. It reaches the log as it stands and must be a literal.
  explicit CallSite(const char* signature)
      : m_signature(signature), m_method(kelStream::ClassInformation(signature).getMethodName())
  {}

  /// Calls the script's function with arguments in the order of the method's parameters: numbers, enums,
  /// bools, strings, objects as `ObjectArgument` and values as `ValueArgument`.
  template <class... Arguments> void call(const LuaCallback& adapter, const Arguments&... arguments) const
  {
    LuaCall call(adapter.luaState(), m_method, adapter.object());
    if (call.m_valid) run(call, 0, arguments...);
  }

  /// The same for a method with one result, a number, an enum or a bool. The value on top of the Lua stack is
  /// the result, whoever left it there; `fallback` is the result of an empty stack and of a missing function.
  template <class Result, class... Arguments>
  Result callForResult(const LuaCallback& adapter, Result fallback, const Arguments&... arguments) const
  {
    LuaCall call(adapter.luaState(), m_method, adapter.object());
    if (!call.m_valid) return fallback;
    run(call, 1, arguments...);
    double number = 0;
    if (!popResult(call.m_lua, std::is_same_v<Result, bool>, number)) return fallback;
    if constexpr (std::is_same_v<Result, bool>)
      return number != 0;
    else if constexpr (std::is_floating_point_v<Result>)
      return static_cast<Result>(number);
    else
      return static_cast<Result>(truncated(number));
  }

  /// The same for a method with two results of one type, which go to `first` and `second` in the order in
  /// which the script returned them. False, and nothing changes, when the fallback is to be taken.
  template <class T, class... Arguments>
  bool callForTwo(const LuaCallback& adapter, const wrap::Type& type, T& first, T& second,
                  const Arguments&... arguments) const
  {
    LuaCall call(adapter.luaState(), m_method, adapter.object());
    if (!call.m_valid) return false;
    run(call, 2, arguments...);
    const void* objects[2];
    if (!popTwo(call.m_lua, type, objects)) return false;
    first = *static_cast<const T*>(objects[0]);
    second = *static_cast<const T*>(objects[1]);
    return true;
  }

private:
  template <class... Arguments> void run(LuaCall& call, int numResults, const Arguments&... arguments) const
  {
    (add(call, arguments), ...);
    if (!call.call(numResults)) reportFailure(call.getLastError());
  }

  template <class T> static void add(LuaCall& call, const T& argument)
  {
    ++call.m_numArgs;
    push(call.m_lua, argument);
  }

  static void push(lua_State* L, bool value) { lua_pushboolean(L, value); }
  static void push(lua_State* L, std::size_t value) { lua_pushinteger(L, static_cast<lua_Integer>(value)); }
  static void push(lua_State* L, const char* text) { pushstring(L, text); }
  static void push(lua_State* L, const kel::String& text) { pushstring(L, text.c_str()); }
  template <class T> static void push(lua_State* L, const ObjectArgument<T>& argument)
  {
    pushobject(L, argument.object, argument.type);
  }
  template <class T> static void push(lua_State* L, const ValueArgument<T>& argument)
  {
    handles::pushValue<T>(L, argument.type, argument.value);
  }
  template <class T>
  requires std::is_arithmetic_v<T> || std::is_enum_v<T>
  static void push(lua_State* L, T value) { lua_pushnumber(L, static_cast<lua_Number>(value)); }

  static long long truncated(double number);
  bool popResult(lua_State* L, bool asBool, double& value) const;
  /// Takes the two values on top of the Lua stack; the objects hold until Lua runs again.
  bool popTwo(lua_State* L, const wrap::Type& type, const void* (&objects)[2]) const;
  void warn(const char* text) const;
  static void reportFailure(const std::string& text);

  const char* m_signature;
  Text m_method;
};

} // namespace kelLua
