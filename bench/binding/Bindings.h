#pragma once
#include <array>

struct lua_State;
namespace kelSDK {
class StepEventListener;
}

namespace bench {

/// A way to call the engine from Lua. Each opens in a Lua state of its own.
struct Binding
{
  const char* name;
  /// Makes a state with the standard libraries and the binding; null, after a message, if that fails.
  lua_State* (*open)();
  void (*close)(lua_State* L);
  /// The listener of the script at a stack index.
  kelSDK::StepEventListener* (*toListener)(lua_State* L, int index);
};

extern const Binding OURS;  ///< The plug-in, as the program loads it.
extern const Binding LIMIT; ///< Written by hand for nothing but speed, and safe.
extern const Binding STOCK; ///< What the binding library's own emitter makes of `stock/stock.pkg`.

inline constexpr std::array BINDINGS = {&OURS, &LIMIT, &STOCK};

} // namespace bench
