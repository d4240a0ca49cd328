#pragma once
#include "kelLua/operations.h"
#include <cstddef>
#include <lua.hpp>

/// How packages enter their members into a state.
namespace kelLua::wrap {

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
  lua_CFunction event = nullptr;    ///< Function: what Lua calls for the operator of its name.
  double value = 0;                 ///< Constant. Module: whether it has variables. Chunk: its length.
  const void* context = nullptr;    ///< Variable: light userdata that its functions find as their upvalue.
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
/// A function that the class's arithmetic operator of that name calls.
template <lua_CFunction f> constexpr Entry operation(const char* name)
{
  return {.kind = Entry::Kind::Function, .name = name, .function = entered<f>, .event = operated<f>};
}
/// A function that reads elements of objects of the class.
template <lua_CFunction f> constexpr Entry elements(const char* name)
{
  return {.kind = Entry::Kind::Function, .name = name, .function = entered<f>, .event = indexed<f>};
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
