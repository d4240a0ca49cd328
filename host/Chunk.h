#pragma once

struct lua_State;

/// Calls the function below its arguments on the stack, as `lua_pcall` does. On failure the error is on the
/// stack as text with a traceback.
int callChunk(lua_State* L, int numArguments, int numResults);
