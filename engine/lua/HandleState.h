#pragma once
#include "kelLua/Type.h"
#include <cstdint>
#include <lua.hpp>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace kelLua::handles {

/// The userdata of a handle that was made here. Handles that another tolua++ made have no marks, and values
/// that lie in their handle need none.
struct Handle
{
  void* object;
  std::uintptr_t marks;
  const wrap::Type* type; ///< As which it was pushed last: that or a base of its class.
};
inline constexpr std::uintptr_t isWatched = 1; ///< Is cleared when the counted object at its address dies.
inline constexpr std::uintptr_t isMember = 2;  ///< Holds the handle of the object that its object lies in.

/// Null for a handle without marks.
Handle* marked(lua_State* L, int index);
/// Whether the handle at an index holds its value itself.
bool isInOwnBlock(lua_State* L, int index);

/// What the handles of one Lua state need: references to its tables in the registry, and the deaths that
/// other threads have reported.
struct State
{
  explicit State(lua_State* mainThread);

  lua_State* L;         ///< The main thread of the state.
  const void* registry; ///< Identifies the state, also from a coroutine.
  std::thread::id thread = std::this_thread::get_id();

  // Tables by light userdata (object) or by handle.
  int adapters; ///< adapter -> its handle, weak: a handle that only scripts know may be collected
  int kept;     ///< adapter -> its handle, strong: the engine holds the adapter, so the functions must stay
  int watched;  ///< counted object -> set of the handles to clear when it dies
  int roots;    ///< handle -> counted object on whose death it is cleared
  int owners;   ///< handle on a member -> address of the handle on the object that the member lies in, which
                ///< the member's own table holds: here, it could never be collected once it holds the member

  std::size_t debt = 0; ///< bytes of new objects that the collector of Lua has not been driven on by

  std::mutex mutex;
  std::vector<const void*> deaths;
};

/// All living states.
std::vector<std::unique_ptr<State>>& states();

/// The state that a Lua thread belongs to, null for one that was never opened or is closed.
State* find(lua_State* L);

/// The same; raises for one that was never opened.
State& get(lua_State* L);

/// Pushes the table of a handle's own fields; false, and nothing, if it has none, which the runtime marks by
/// the registry.
bool pushOwnTable(lua_State* L, int handle);

} // namespace kelLua::handles
