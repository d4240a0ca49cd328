#pragma once
#include <cstddef>
#include <lua.hpp>

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
void push(lua_State* L, const void* object, const char* type);

/// Pushes a handle on a counted object; nil for null. Takes no reference. The handle is cleared when it dies.
void pushCounted(lua_State* L, const kel::Referenced* counted, const void* object, const char* type);

/// Pushes a handle on something that lies inside the object at stack index `owner`; nil for null. The new
/// handle keeps the owner's handle alive and is cleared when the owner dies. An object that is itself the
/// owner, or another value on the stack, is pushed as the handle that it has.
void pushMember(lua_State* L, const void* object, const char* type, int owner);

/// Pushes a handle on a new value that lies inside the handle itself, and returns where to construct it. Such
/// a value needs no collector; it must be trivially destructible.
void* pushValue(lua_State* L, std::size_t size, std::size_t alignment, const char* type);

/// Whether the value at a stack index is a handle at all.
bool isHandle(lua_State* L, int index);

/// Whether the object of the handle at a stack index lies inside that handle or inside another object, so
/// that it cannot be freed by itself.
bool isInside(lua_State* L, int index);

/// Makes the table on top of the stack the place of a script's own fields of the handle at a stack index; nil
/// for a new one when it is needed. Pops it.
void setPeer(lua_State* L, int index);

/// Registers the handle on top of the stack for collection, so that the class's collector runs on its object.
/// `size` is what the object costs outside of Lua, in bytes: the collector of Lua is driven on by that much,
/// as it would let the process grow without bounds for objects that look small to it.
void collectTop(lua_State* L, std::size_t size);

/// Notes that the engine object at `object` is a script adapter whose functions live in the handle on top of
/// the stack; `owned` says that the handle holds a reference. One that holds none is kept until the adapter
/// dies.
void adapterTop(lua_State* L, const void* object, bool owned);

/// The finaliser's half of that: the handle at stack index 1 has just given up its reference on an adapter
/// that lives on; keeps the handle, and so the script's functions, until the adapter dies.
void keepAdapter(lua_State* L, const void* object);

/// Pushes the handle of an adapter that entered itself with the script manager; nil when no script has seen
/// it.
void pushAdapter(lua_State* L, const void* object);

/// An adapter left the script manager: clears its handle and lets the script's functions go. Harmless for an
/// adapter that no script has seen and while a state closes. Never throws.
void forgetAdapter(const void* object) noexcept;

/// Clears the handle at stack index `index` (`delete`): its object is null from now on and no collector runs.
void clear(lua_State* L, int index);

/// Clears every handle on the object and on its members, in all living states.
void died(const void* object);

} // namespace kelLua::handles
