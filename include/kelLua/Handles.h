#pragma once
#include "kelLua/Type.h"
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <lua.hpp>
#include <new>
#include <tolua++.h>
#include <type_traits>
#include <utility>

namespace kel {
class Referenced;
}

/// Handles: the userdata through which scripts see engine objects.
///
/// A handle holds the object's address and is unique for address and class tree as long as it lives. It never
/// dangles: when a counted object dies, its handles and the handles on its members become null, so that the
/// next use says "invalid 'self'". All functions run on the Lua thread.
namespace kelLua::handles {

/// Prepares a state: called once for each state, after `tolua_open`. Opening again changes nothing.
void open(lua_State* L);

/// Pushes a handle on an object that nobody watches (a singleton, a plain engine object); nil for null.
void push(lua_State* L, const void* object, const wrap::Type& type);

/// Pushes a handle on a counted object; nil for null. Takes no reference. The handle is cleared when it dies.
void pushCounted(lua_State* L, const kel::Referenced* counted, const void* object, const wrap::Type& type);

/// Pushes a handle on something that the object at stack index 1 gives and that lies inside it; nil for null.
/// The new handle keeps the owner's handle alive and is cleared when the owner dies. What is itself the
/// owner, as `isOwner` says, or another value on the stack is pushed as the handle that it has.
void pushMember(lua_State* L, const void* object, const wrap::Type& type, bool isOwner);

/// Pushes a handle on a new T that lies inside the handle itself and needs no collector. Only for wrappers:
/// the type's package must have been opened in this state.
template <class T, class... Arguments>
void pushValue(lua_State* L, const wrap::Type& type, Arguments&&... arguments)
{
  static_assert(std::is_trivially_destructible_v<T>);
  constexpr std::size_t slack = alignof(T) > alignof(void*) ? alignof(T) : 0;
  constexpr std::size_t room = std::max(sizeof(T), 3 * sizeof(void*)); // tells it from the other handles
  auto** handle = static_cast<void**>(lua_newuserdata(L, sizeof(void*) + room + slack));
  auto* place = reinterpret_cast<char*>(handle + 1);
  if constexpr (slack != 0) place += -reinterpret_cast<std::uintptr_t>(place) & (slack - 1);
  *handle = new (place) T(std::forward<Arguments>(arguments)...);
  lua_rawgeti(L, LUA_REGISTRYINDEX, type.metatableKey);
  lua_setmetatable(L, -2); // the environment, and so the lack of own fields, is the wrapper's
}

/// Whether the value at a stack index is a handle at all.
bool isHandle(lua_State* L, int index);

/// Whether the object of the handle at a stack index lies inside that handle or inside another object, so
/// that it cannot be freed by itself.
bool isInside(lua_State* L, int index);

/// Moves a value that lies in its own handle, at a stack index, to memory of `operator new` that nobody owns.
/// False, and nothing, for any other handle.
bool moveOut(lua_State* L, int index);

/// Makes the table on top of the stack the place of a script's own fields of the handle at a stack index; nil
/// for a new one when it is needed. Pops it.
void setPeer(lua_State* L, int index);

/// Registers the handle on top of the stack for collection, so that the class's collector runs on its object.
/// `size` is what the object costs outside of Lua, in bytes: the collector of Lua is driven on by that much,
/// as it would let the process grow without bounds for objects that look small to it.
void collectTop(lua_State* L, std::size_t size);

/// Takes the first reference on the object of the handle at a stack index, if it is counted and has none.
void referenceFirst(lua_State* L, int index);

/// Notes that the engine object at `object` is a script adapter whose functions live in the handle on top of
/// the stack; `owned` says that the handle holds a reference. One that holds none is kept until the adapter
/// dies.
void adapterTop(lua_State* L, const void* object, bool owned);

/// The finaliser's half of that: the handle at stack index 1 has just given up its reference on an adapter
/// that lives on; keeps the handle, and so the script's functions, until the adapter dies.
void keepAdapter(lua_State* L, const void* object);

/// Pushes three values: any one, the handle of an adapter that entered itself with the script manager, and
/// the table in which the script's functions live. False, and nothing, if there are none, or if the state,
/// which is given by its main thread, has been closed.
bool pushAdapter(lua_State* L, const void* object);

/// An adapter left the script manager: clears its handle and lets the script's functions go. Harmless for an
/// adapter that no script has seen and while a state closes. Never throws.
void forgetAdapter(const void* object) noexcept;

/// Clears the handle at stack index `index` (`delete`): its object is null from now on and no collector runs.
void clear(lua_State* L, int index);

/// Clears every handle on the object and on its members, in all living states.
void died(const void* object);

} // namespace kelLua::handles
