#pragma once
#include "kel/Referenced.h"
#include "kelLua/Type.h"
#include <type_traits>

struct lua_State;

namespace kelLua {

/// Pushes a plain engine object as a value of a type, without transfer of ownership; nil for null.
void pushusertype(lua_State* L, void* object, const char* typeName);
void pushusertype(lua_State* L, void* object, const wrap::Type& type);

/// The same for a counted object, whose handle is cleared when it dies.
void pushcounted(lua_State* L, const kel::Referenced* counted, void* object, const wrap::Type& type);

/// Picks the right one of the two by the object's static type.
template <class T> void pushobject(lua_State* L, T* object, const wrap::Type& type)
{
  if constexpr (std::is_base_of_v<kel::Referenced, T>)
    pushcounted(L, object, const_cast<std::remove_const_t<T>*>(object), type);
  else
    pushusertype(L, const_cast<std::remove_const_t<T>*>(object), type);
}

/// Pushes a text up to its first NUL; nil for null.
void pushstring(lua_State* L, const char* text);

} // namespace kelLua
