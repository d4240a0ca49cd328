#pragma once
#include <lua.hpp>

namespace kelLua::wrap {

/// Tells a dispatcher that the arguments are not for this overload; the lowest one raises instead.
constexpr int notTaken = -1;

/// One of several wrappers of a name. Gets the number of values on the stack.
using Overload = int (*)(lua_State*, int top);

/// Finds the overload for a call. The order of the overloads decides which one takes an argument list; the
/// winner is remembered for the shape of the list, the classes of its objects and the types of its other
/// values. A list with texts or tables has no shape, as overloads may look into those.
class Overloads
{
public:
  /// The overloads, first tried first. `first` is the index of the first argument that tells them apart.
  template <int N>
  constexpr Overloads(const Overload (&overloads)[N], int first)
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
    Overload function = nullptr;
  };

  bool hasShape(lua_State* L, int top) const;
  int search(lua_State* L, int top, Winner& winner, const void* const* classes);

  const Overload* m_overloads;
  int m_numOverloads;
  int m_first;
  Overloads* m_next = nullptr; ///< Of those that remember something.
  bool m_remembers = false;
  Winner m_winners[numWinners] = {};
};

} // namespace kelLua::wrap
