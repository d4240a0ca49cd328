#pragma once
#include <string>
#include <vector>

struct lua_State;

/// Has the program `luacheck` look for names in the files that the state does not have, but for those that
/// the files give themselves. Prints the findings and returns their number; without the program it says so on
/// standard error and finds nothing.
std::size_t findUnknownNames(lua_State* L, const std::vector<std::string>& files);
