#pragma once
#include "kel/Referenced.h"
#include "kelLua/Handles.h"
#include "kelLua/LuaCallback.h"
#include "kelLua/Type.h"
#include "kelLua/exceptions.h"
#include <cstdint>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <tolua++.h>
#include <type_traits>
#include <utility>

/// What the generated wrappers are made of: guards, readers, results, registration.
///
/// A wrapper guards self and its arguments in order, calls the engine and pushes the results. Guards of
/// objects and required numbers also fetch what they let pass; texts and optional values are read behind the
/// guards. Guards that fail fill in a `tolua_Error` and raise nothing; functions that raise say so.
namespace kelLua::wrap {

// ---- Traits, as template arguments of what uses them: an opaque type may be complete in another source.

template <class T, class = void> constexpr bool isComplete = false;
template <class T> constexpr bool isComplete<T, std::void_t<decltype(sizeof(T))>> = true;

template <class Base, class T> constexpr bool derivesFrom()
{
  if constexpr (std::is_class_v<T> && isComplete<T>)
    return std::is_base_of_v<Base, T>;
  else
    return false;
}
template <class T> constexpr bool isCounted = derivesFrom<kel::Referenced, std::remove_cv_t<T>>();
template <class T> constexpr bool isAdapter = derivesFrom<LuaCallback, std::remove_cv_t<T>>();

/// Room for a T that is never made.
template <class T> union Unmade {
  char none = 0;
  T object;
  constexpr Unmade() {}
  ~Unmade() {}
};
template <class T> inline Unmade<T> s_unmade;

/// Whether a T and its base are at the same address, which the scripts' casts rely on; true for opaque types.
template <class T, class Base> constexpr bool hasBaseAtStart()
{
  if constexpr (isComplete<T> && isComplete<Base>)
    return static_cast<const volatile void*>((const volatile Base*)(&s_unmade<T>.object)) ==
           static_cast<const volatile void*>(&s_unmade<T>.object);
  else
    return true;
}

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
/// No argument from index n on.
inline bool isEnd(lua_State* L, int n, tolua_Error* failure)
{
  if (lua_gettop(L) < n) return true;
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

// ---- Results. Each pushes one value.

template <class T> void pushNumber(lua_State* L, T value)
{
  lua_pushnumber(L, static_cast<lua_Number>(value));
}
inline void pushBool(lua_State* L, bool value) { lua_pushboolean(L, value); }
inline void pushString(lua_State* L, const char* value) { lua_pushstring(L, value); }
/// Up to the first NUL. Anything that has `c_str()`: texts, names, paths.
template <class T> void pushString(lua_State* L, const T& value) { lua_pushstring(L, value.c_str()); }
void pushAddress(lua_State* L, const void* value);

/// The plain pointer behind any of the engine's pointers.
template <class T> T* plain(T* object) { return object; }
template <class P> auto plain(const P& smart) -> decltype(smart.get()) { return smart.get(); }

/// An object that is no part of another one; a view, never owned by the script.
template <class T, bool Counted = isCounted<T>>
void pushObject(lua_State* L, const T* object, const Type& type)
{
  if constexpr (Counted)
    handles::pushCounted(L, object, object, type);
  else
    handles::push(L, object, type);
}
/// An object that self gives: self, a counted object, or a part of self whose handle lives and dies with that
/// of self.
template <class T, class Self>
void pushMember(lua_State* L, const T* object, const Type& type, const Self* self)
{
  if constexpr (isCounted<T>)
    handles::pushCounted(L, object, object, type);
  else
    handles::pushMember(L, object, type, static_cast<const void*>(object) == self);
}
/// Holds a new object until its handle does: pushing raises when Lua has no memory.
template <class T> struct Unpushed
{
  T* object;
  explicit Unpushed(T* unpushed) : object(unpushed) {}
  Unpushed(const Unpushed&) = delete;
  Unpushed& operator=(const Unpushed&) = delete;
  ~Unpushed()
  {
    if constexpr (isCounted<T>) {
      if (object) object->reference();
      if (object) object->unreference();
    } else {
      delete object;
    }
  }
};

/// A copy that the script owns.
template <class T> void pushCopy(lua_State* L, T value, const Type& type)
{
  if constexpr (std::is_trivially_destructible_v<T>) {
    handles::pushValue<T>(L, type, std::move(value));
  } else {
    Unpushed<T> copy(new T(std::move(value)));
    handles::push(L, copy.object, type);
    handles::collectTop(L, sizeof(T));
    copy.object = nullptr;
  }
}
/// A new object; `local` gives the script a reference of its own, or the object itself where T is not
/// counted.
template <class T> void pushNew(lua_State* L, T* object, const Type& type, bool local)
{
  Unpushed<T> unpushed(object);
  if constexpr (std::is_trivially_destructible_v<T>) {
    if (local) return pushCopy<T>(L, *object, type);
  }
  if constexpr (isCounted<T>)
    handles::pushCounted(L, object, object, type);
  else
    handles::push(L, object, type);
  if (local) handles::collectTop(L, sizeof(T));
  if constexpr (isAdapter<T>) handles::adapterTop(L, object->object(), local);
  if constexpr (isCounted<T>)
    if (local) object->reference();
  unpushed.object = nullptr;
}

/// The same of a T made of these arguments, in place where that is possible.
template <class T, class... Arguments>
void construct(lua_State* L, const Type& type, bool local, Arguments&&... arguments)
{
  if constexpr (std::is_trivially_destructible_v<T>)
    if (local) {
      handles::pushValue<T>(L, type, std::forward<Arguments>(arguments)...);
      return;
    }
  pushNew(L, new T(std::forward<Arguments>(arguments)...), type, local);
}

/// Collector and `delete` of a class: the reference goes, or the object where T is not counted.
template <class T> void release(lua_State* L, T* object)
{
  if constexpr (isCounted<T>) {
    const std::uint32_t count = object->getReferenceCount();
    if (count == 0) return; // made by `new` and never owned
    if constexpr (isAdapter<T>)
      if (count > 1) handles::keepAdapter(L, object->object());
    object->unreference();
  } else {
    delete object;
  }
}
template <class T> int collect(lua_State* L, const Type& type)
{
  T* object = nullptr;
  tolua_Error failure;
  if (!isSelf(L, object, type, &failure) || !object || handles::isInside(L, 1)) return 0;
  // A finaliser of the script's own may still see this handle.
  if constexpr (!isCounted<T>) *static_cast<void**>(lua_touserdata(L, 1)) = nullptr;
  release(L, object);
  return 0;
}
template <class T> int destroy(lua_State* L, T* object)
{
  if (!object) badSelf(L, "delete");
  const bool isInside = handles::isInside(L, 1);
  handles::clear(L, 1);
  if (!isInside) release(L, object);
  return 0;
}

/// The text for `tostring` of a class: its namespace's `toString`.
template <class T> int printed(lua_State* L, const Type& type)
{
  const T* object = nullptr;
  tolua_Error failure;
  if (!isSelf(L, object, type, &failure)) failed(L, "tostring", &failure, nullptr);
  if (!object) badSelf(L, "tostring");
  pushString(L, toString(*object));
  return 1;
}

// ---- Overloads of one name that share a number of arguments.

/// Tells a dispatcher that the arguments are not for this overload; the lowest one raises instead.
constexpr int notTaken = -1;

/// Finds the overload for a call. The order of the overloads decides which one takes an argument list; the
/// winner is remembered for the shape of the list, the classes of its objects and the types of its other
/// values. A list with texts or tables has no shape, as overloads may look into those.
class Overloads
{
public:
  /// The overloads, first tried first. `first` is the index of the first argument that tells them apart.
  template <int N>
  constexpr Overloads(const lua_CFunction (&overloads)[N], int first)
      : m_overloads(overloads), m_numOverloads(N), m_first(first)
  {}
  int call(lua_State* L);

private:
  friend void forgetWinners();
  static constexpr int maxArguments = 4;
  static constexpr int numWinners = 16;

  struct Winner
  {
    int size = -1; ///< Of the list, from the first argument that counts.
    const void* classes[maxArguments] = {};
    lua_CFunction function = nullptr;
  };

  bool hasShape(lua_State* L) const;
  int search(lua_State* L, Winner& winner, const void* const* classes, int size);

  const lua_CFunction* m_overloads;
  int m_numOverloads;
  int m_first;
  Overloads* m_next = nullptr; ///< Of those that remember something.
  bool m_remembers = false;
  Winner m_winners[numWinners] = {};
};

// ---- Registration.

/// A type string that a package mentions, with the collector of its by-value results where it has one.
struct TypeEntry
{
  const char* name;
  lua_CFunction collector;
  bool isInline; ///< Values lie in their handles, so that handles need no finaliser.
};

/// One step of a package's open function.
struct Entry
{
  enum class Kind : unsigned char
  {
    Module,
    Class,
    End,
    Function,
    Constant,
    Variable,
    Chunk
  };

  Kind kind = Kind::End;
  const char* name = nullptr;
  const char* type = nullptr;       ///< Class: its type string. Chunk: its text.
  const char* base = nullptr;       ///< Class: the type string of its base, or "".
  lua_CFunction function = nullptr; ///< Function; class: its collector; variable: its getter.
  lua_CFunction setter = nullptr;   ///< Variable: null for read-only.
  double value = 0;                 ///< Constant. Module: whether it has variables. Chunk: its length.
};

constexpr Entry module(const char* name, bool hasVariables)
{
  return {.kind = Entry::Kind::Module, .name = name, .value = hasVariables ? 1.0 : 0.0};
}
constexpr Entry klass(const char* name, const char* type, const char* base, lua_CFunction collector)
{
  return {.kind = Entry::Kind::Class, .name = name, .type = type, .base = base, .function = collector};
}
constexpr Entry end() { return {.kind = Entry::Kind::End}; }
template <lua_CFunction f> constexpr Entry function(const char* name)
{
  return {.kind = Entry::Kind::Function, .name = name, .function = entered<f>};
}
constexpr Entry constant(const char* name, double value)
{
  return {.kind = Entry::Kind::Constant, .name = name, .value = value};
}
template <lua_CFunction get> constexpr Entry variable(const char* name)
{
  return {.kind = Entry::Kind::Variable, .name = name, .function = entered<get>};
}
template <lua_CFunction get, lua_CFunction set> constexpr Entry variable(const char* name)
{
  return {.kind = Entry::Kind::Variable, .name = name, .function = entered<get>, .setter = entered<set>};
}
template <std::size_t N> constexpr Entry chunk(const char* name, const char (&text)[N])
{
  return {.kind = Entry::Kind::Chunk, .name = name, .type = text, .value = N - 1};
}

/// Enters a package into the state: its types, then its members, which end with the one `end()` too many.
/// The types end with a null name. Doing it again changes nothing. Returns 1.
int openPackage(lua_State* L, const TypeEntry* types, const Entry* entries);

} // namespace kelLua::wrap
