#pragma once
#include "kelLua/Handles.h"
#include "kelLua/Type.h"
#include <cstdint>
#include <limits>
#include <string>
#include <tolua++.h>
#include <type_traits>

/// How wrappers test and read their arguments.
namespace kelLua::wrap {

// ---- Failures. None of these comes back.

/// No overload took the arguments: `error in function 'name'.` and a report on the lowest overload's
/// argument. `signatures` lists the overloads, one a line.
[[noreturn]] void failed(lua_State* L, const char* name, tolua_Error* failure, const char* signatures);
/// `invalid 'self' in function 'name'`.
[[noreturn]] void badSelf(lua_State* L, const char* name);
/// `invalid 'self' in accessing variable 'name'`.
[[noreturn]] void badVariableSelf(lua_State* L, const char* name);
/// `invalid type in variable assignment.` and a report on the value.
[[noreturn]] void badValue(lua_State* L, tolua_Error* failure);
/// A required object is missing at an optional position: the same report as `failed`.
[[noreturn]] void missingObject(lua_State* L, int n, const Type& type, const char* name);

/// An index lies outside the object's memory: the text on top of the stack.
[[noreturn]] void outOfRange(lua_State* L);

// ---- Guards: whether stack index n holds a value for a parameter. The `opt` forms also take nil or nothing.

namespace slow {

// What the inlined guards do not decide.
bool isClass(lua_State* L, const Type& type);
bool isPointer(lua_State* L, int n, void*& object, const Type& type, tolua_Error* failure);
bool isReference(lua_State* L, int n, void*& object, const Type& type, tolua_Error* failure);
bool isNumber(lua_State* L, int n, tolua_Error* failure);

} // namespace slow

/// The handle at index n when its class is known to be of the type; null says nothing.
inline void** knownHandle(lua_State* L, int n, const Type& type)
{
  auto** handle = static_cast<void**>(lua_touserdata(L, n));
  if (!handle || !lua_getmetatable(L, n)) return nullptr;
  const void* metatable = lua_topointer(L, -1);
  lua_settop(L, -2);
  return type.accepts(metatable) ? handle : nullptr;
}

/// The class table, or that of a derived class. Where index 1 holds neither, the script left it out: a
/// placeholder moves the arguments up by one. Always true.
inline bool isClass(lua_State* L, const Type& type)
{
  const void* table = lua_topointer(L, 1);
  return (table && type.accepts(table)) || slow::isClass(L, type);
}
/// An object of the type, plain or derived, or nil. Null for nil and for a cleared handle.
template <class T> bool isPointer(lua_State* L, int n, T*& object, const Type& type, tolua_Error* failure)
{
  if (void** handle = knownHandle(L, n, type)) {
    object = static_cast<T*>(*handle);
    return true;
  }
  void* found = nullptr;
  const bool result = slow::isPointer(L, n, found, type, failure);
  object = static_cast<T*>(found);
  return result;
}
template <class T> bool isSelf(lua_State* L, T*& object, const Type& type, tolua_Error* failure)
{
  return isPointer(L, 1, object, type, failure);
}
/// An object of the type that lives: neither nil nor a cleared handle.
template <class T> bool isReference(lua_State* L, int n, T*& object, const Type& type, tolua_Error* failure)
{
  static_assert(!std::is_enum_v<T>, "an enum of another package is named by ##enum");
  void** handle = knownHandle(L, n, type);
  void* found = handle ? *handle : nullptr;
  const bool result = found || slow::isReference(L, n, found, type, failure);
  object = static_cast<T*>(found);
  return result;
}
/// A number, or a text that reads as one.
inline bool isNumber(lua_State* L, int n, double& value, tolua_Error* failure)
{
  value = lua_tonumber(L, n);
  return value != 0 || slow::isNumber(L, n, failure);
}
inline bool isBool(lua_State* L, int n, bool& value, tolua_Error* failure)
{
  value = lua_toboolean(L, n) != 0;
  return lua_type(L, n) == LUA_TBOOLEAN || tolua_isboolean(L, n, 0, failure) != 0;
}
inline bool isNumber(lua_State* L, int n, tolua_Error* failure)
{
  return tolua_isnumber(L, n, 0, failure) != 0;
}
inline bool isBool(lua_State* L, int n, tolua_Error* failure)
{
  return tolua_isboolean(L, n, 0, failure) != 0;
}
inline bool isString(lua_State* L, int n, tolua_Error* failure)
{
  return lua_type(L, n) == LUA_TSTRING || tolua_isstring(L, n, 0, failure) != 0;
}
/// An address, an object or nil; a userdata of another library may be smaller than a pointer.
inline bool isAddress(lua_State* L, int n, tolua_Error* failure)
{
  if (lua_isnil(L, n) || lua_islightuserdata(L, n) || handles::isHandle(L, n)) return true;
  *failure = {n, 0, "userdata"};
  return false;
}
inline bool isTable(lua_State* L, int n, tolua_Error* failure)
{
  return tolua_istable(L, n, 0, failure) != 0;
}
/// A table with at least `size` numbers.
inline bool isNumberArray(lua_State* L, int n, int size, tolua_Error* failure)
{
  const int top = lua_gettop(L);
  const bool result = tolua_isnumberarray(L, n, size, 0, failure) != 0;
  lua_settop(L, top); // it leaves the element that failed
  return result;
}
/// No argument from index n on, with so many values on the stack.
inline bool isEnd(int top, int n, tolua_Error* failure)
{
  if (top < n) return true;
  *failure = {n, 0, "[no object]"};
  return false;
}

inline bool isGiven(lua_State* L, int n) { return !lua_isnoneornil(L, n); }
inline bool optNumber(lua_State* L, int n, tolua_Error* e) { return !isGiven(L, n) || isNumber(L, n, e); }
inline bool optBool(lua_State* L, int n, tolua_Error* e) { return !isGiven(L, n) || isBool(L, n, e); }
inline bool optString(lua_State* L, int n, tolua_Error* e) { return !isGiven(L, n) || isString(L, n, e); }
inline bool optAddress(lua_State* L, int n, tolua_Error* e) { return !isGiven(L, n) || isAddress(L, n, e); }
/// Null also for nothing.
template <class T> bool optPointer(lua_State* L, int n, T*& object, const Type& type, tolua_Error* failure)
{
  object = nullptr;
  return !isGiven(L, n) || isPointer(L, n, object, type, failure);
}
template <class T> bool optReference(lua_State* L, int n, T*& object, const Type& type, tolua_Error* failure)
{
  object = nullptr;
  return !isGiven(L, n) || isReference(L, n, object, type, failure);
}

// ---- Readers of guarded values.

/// A Lua number as a T: truncated toward zero and wrapped to the width of an integer or enum, never
/// undefined. NaN and what no 64-bit integer holds give the processor's "indefinite" value,
/// 0x8000000000000000.
template <class T> T toNumber(double value)
{
  constexpr double half = 9223372036854775808.0; // 2^63
  const auto truncate = [](double v) {
    return v >= -half && v < half ? static_cast<std::int64_t>(v) : std::numeric_limits<std::int64_t>::min();
  };
  if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(value);
  else if constexpr (std::is_enum_v<T>)
    return static_cast<T>(toNumber<std::underlying_type_t<T>>(value));
  else if constexpr (std::is_unsigned_v<T> && sizeof(T) == 8)
    return value < half ? static_cast<T>(truncate(value))
                        : static_cast<T>(truncate(value - half)) ^ (static_cast<T>(1) << 63);
  else
    return static_cast<T>(truncate(value));
}

template <class T> T number(lua_State* L, int n) { return toNumber<T>(lua_tonumber(L, n)); }
template <class T> T number(lua_State* L, int n, T absent)
{
  return isGiven(L, n) ? number<T>(L, n) : absent;
}

inline bool flag(lua_State* L, int n) { return lua_toboolean(L, n) != 0; }
inline bool flag(lua_State* L, int n, bool absent) { return isGiven(L, n) ? flag(L, n) : absent; }

/// The text up to its first NUL; "" for nil.
inline const char* text(lua_State* L, int n, const char* absent = "")
{
  const char* s = lua_tostring(L, n);
  return s ? s : absent;
}
inline std::string string(lua_State* L, int n) { return text(L, n); }
inline std::string string(lua_State* L, int n, const std::string& absent)
{
  return text(L, n, absent.c_str());
}

inline void* address(lua_State* L, int n) { return tolua_touserdata(L, n, nullptr); }

/// The object of an optional reference that has no default: raises when there is none.
template <class T> T& required(lua_State* L, T* object, int n, const Type& type, const char* function)
{
  if (!object) missingObject(L, n, type, function);
  return *object;
}

/// The first N numbers of a table.
template <class T, int N> struct NumberArray
{
  T values[N];
  NumberArray(lua_State* L, int n)
  {
    for (int i = 0; i < N; ++i) values[i] = toNumber<T>(tolua_tofieldnumber(L, n, i + 1, 0));
  }
};

/// The object of a variable; raises for nil, for a cleared handle and for what is no object of the type.
template <class T> T* owner(lua_State* L, const Type& type, const char* variable)
{
  T* object = nullptr;
  tolua_Error failure;
  if (!isSelf(L, object, type, &failure) || !object) badVariableSelf(L, variable);
  return object;
}

} // namespace kelLua::wrap
