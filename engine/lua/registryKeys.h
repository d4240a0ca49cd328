#pragma once

namespace kelLua {

/// The first of so many numbers that are keys of the registry of every state. Numbers that `luaL_ref` gives are
/// far below.
int newRegistryKeys(int count);

} // namespace kelLua
