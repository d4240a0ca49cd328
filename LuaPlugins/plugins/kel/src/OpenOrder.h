#pragma once
#include <span>

struct lua_State;

namespace kelLua::plugin {

/// A package of the binding.
struct Package
{
  const char* name;
  int (*open)(lua_State* L); ///< Null while the package has no declaration.
};

/// All packages in the order in which they open. `kel_types` stands twice.
std::span<const Package> openOrder();

} // namespace kelLua::plugin
