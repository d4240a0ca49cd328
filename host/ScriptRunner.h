#pragma once
#include "Options.h"

struct lua_State;

/// Runs the script or chunk of the options in a state and reports its failure on standard error. Returns the
/// exit status of the process: 0, 1 for a script that failed, 130 for one that Ctrl-C stopped.
int runScript(lua_State* L, const Options& options);
