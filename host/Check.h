#pragma once
#include <string>
#include <vector>

struct lua_State;

/// Checks scripts without running them: their syntax, and, where the program `luacheck` is installed, the
/// globals, modules, classes and class members that they name against what the state has. Prints each finding
/// as `file:line:column: text` on standard output. Returns the exit status: 0 for none, 1 for some.
int checkScripts(lua_State* L, const std::vector<std::string>& files);
