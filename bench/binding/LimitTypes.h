#pragma once
#include <lua.hpp>
#include <new>
#include <type_traits>

/// What a binding written by hand is made of: a type is known by the address of its metatable, a value lies
/// in its userdata, and an engine object is found again by its address in a weak table.
///
/// There is one state at a time. Every handle on a counted object holds a reference, so none dangles.
namespace bench::limit {

template <class T> struct Class
{
  static inline const void* metatable = nullptr;
  static inline int reference = LUA_NOREF;
  static inline const char* name = "";
};

/// The weak table from address to handle.
inline int s_handles = LUA_NOREF;

/// The address of a userdata's metatable, null for anything else.
inline const void* typeOf(lua_State* L, int n)
{
  if (lua_type(L, n) != LUA_TUSERDATA || !lua_getmetatable(L, n)) return nullptr;
  const void* metatable = lua_topointer(L, -1);
  lua_pop(L, 1);
  return metatable;
}

inline void expectArguments(lua_State* L, int count)
{
  if (lua_gettop(L) != count) luaL_error(L, "%d arguments expected, got %d", count, lua_gettop(L));
}

// ---- Values.

template <class T> bool isValue(lua_State* L, int n) { return typeOf(L, n) == Class<T>::metatable; }

template <class T> T& value(lua_State* L, int n)
{
  if (!isValue<T>(L, n)) luaL_typerror(L, n, Class<T>::name);
  return *static_cast<T*>(lua_touserdata(L, n));
}

template <class T> int pushValue(lua_State* L, const T& value)
{
  static_assert(std::is_trivially_destructible_v<T> && alignof(T) <= alignof(void*));
  new (lua_newuserdata(L, sizeof(T))) T(value);
  lua_rawgeti(L, LUA_REGISTRYINDEX, Class<T>::reference);
  lua_setmetatable(L, -2);
  return 1;
}

// ---- Objects. A handle holds the pointer as that of the outermost base, `Root`.

template <class Root> struct Handle
{
  Root* object;
};

/// The object at a stack index, which must be a T.
template <class Root, class T = Root> Root* object(lua_State* L, int n)
{
  if (typeOf(L, n) != Class<T>::metatable) luaL_typerror(L, n, Class<T>::name);
  return static_cast<Handle<Root>*>(lua_touserdata(L, n))->object;
}

/// Pushes the handle that the object has, or a new one, and says whether it is new.
template <class T, class Root> bool pushHandle(lua_State* L, Root* object)
{
  void* const address = const_cast<std::remove_const_t<Root>*>(object);
  lua_rawgeti(L, LUA_REGISTRYINDEX, s_handles);
  lua_pushlightuserdata(L, address);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) {
    lua_remove(L, -2);
    return false;
  }
  lua_pop(L, 1);
  new (lua_newuserdata(L, sizeof(Handle<Root>))) Handle<Root>{object};
  lua_rawgeti(L, LUA_REGISTRYINDEX, Class<T>::reference);
  lua_setmetatable(L, -2);
  lua_pushlightuserdata(L, address);
  lua_pushvalue(L, -2);
  lua_rawset(L, -4);
  lua_remove(L, -2);
  return true;
}

template <class T, class Root = T> int pushObject(lua_State* L, Root* object)
{
  if (!object)
    lua_pushnil(L);
  else if (pushHandle<T, Root>(L, object))
    object->reference();
  return 1;
}

/// A part of the object at stack index 1, whose handle it keeps.
template <class T> int pushMember(lua_State* L, T* member)
{
  if (!pushHandle<T>(L, member)) return 1;
  lua_createtable(L, 1, 0);
  lua_pushvalue(L, 1);
  lua_rawseti(L, -2, 1);
  lua_setfenv(L, -2);
  return 1;
}

template <class Root> int release(lua_State* L)
{
  static_cast<Handle<Root>*>(lua_touserdata(L, 1))->object->unreference();
  return 0;
}

// ---- Registration.

/// Makes the metatable of T: `events` in it, `__index` a table of all the methods, those of bases too.
template <class T>
void addClass(lua_State* L, const char* name, const luaL_Reg* events,
              std::initializer_list<const luaL_Reg*> methods)
{
  lua_newtable(L);
  Class<T>::metatable = lua_topointer(L, -1);
  Class<T>::name = name;
  lua_newtable(L);
  for (const luaL_Reg* list : methods) luaL_register(L, nullptr, list);
  lua_setfield(L, -2, "__index");
  luaL_register(L, nullptr, events);
  Class<T>::reference = luaL_ref(L, LUA_REGISTRYINDEX);
}

/// Adds the class as a callable table to the module on top of the stack and leaves that table on it.
inline void addConstructor(lua_State* L, const char* name, lua_CFunction construct)
{
  lua_newtable(L);
  lua_pushvalue(L, -1);
  lua_setfield(L, -3, name);
  lua_createtable(L, 0, 1);
  lua_pushcfunction(L, construct);
  lua_setfield(L, -2, "__call");
  lua_setmetatable(L, -2);
}

} // namespace bench::limit
