#pragma once
#include "kel/Referenced.h"
#include "kelLua/Guards.h"
#include "kelLua/Handles.h"
#include "kelLua/LuaCallback.h"
#include <memory>
#include <type_traits>
#include <utility>

/// How wrappers give results to scripts, and who owns those.
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

/// Whether a T and its base are at the same address, which the scripts' casts rely on; true for opaque and
/// for abstract types, of which there is none to look at.
template <class T, class Base> constexpr bool hasBaseAtStart()
{
  if constexpr (isComplete<T> && isComplete<Base> && !std::is_abstract_v<T>)
    return static_cast<const volatile void*>((const volatile Base*)(&s_unmade<T>.object)) ==
           static_cast<const volatile void*>(&s_unmade<T>.object);
  else
    return true;
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
  if constexpr (isCounted<T>) {
    handles::pushCounted(L, object, object, type);
  } else {
    constexpr bool canBeSelf = !isComplete<T> || derivesFrom<T, Self>() || derivesFrom<Self, T>();
    handles::pushMember(L, object, type, canBeSelf && static_cast<const void*>(object) == self);
  }
}
/// What an object costs outside of Lua, in bytes; a container with the room for its elements.
template <class T> std::size_t cost(const T& object)
{
  if constexpr (requires { object.capacity() * sizeof(typename T::value_type); })
    return sizeof(T) + object.capacity() * sizeof(typename T::value_type);
  else
    return sizeof(T);
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
    handles::collectTop(L, cost(*copy.object));
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
  if (local) handles::collectTop(L, cost(*object));
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
  } else if constexpr (std::is_trivially_destructible_v<T>) {
    ::operator delete(object); // without a size: a value that has left its handle has some room behind it
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

} // namespace kelLua::wrap
