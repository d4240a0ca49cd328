#pragma once
#include <lua.hpp>
#include <tolua++.h>
#include <vector>

namespace kelEntities {

/// How values of a C++ type look to scripts.
struct ValueType
{
  const char* implementation; ///< the compiler's name of the C++ type
  const char* name;           ///< the type string of objects, null for numbers, booleans and texts
  /// Pushes a copy of a value.
  void (*push)(lua_State* L, const void* value);
  /// Sets a value to the one at a stack index; false, with the failure, for one of another type.
  bool (*read)(lua_State* L, int n, void* value, tolua_Error* failure);

  /// That of an implementation, null if scripts have no such values.
  static const ValueType* find(const char* implementation);
  static const std::vector<ValueType>& all();
};

} // namespace kelEntities
