// Opens the test packages and runs a script: PROGRAM SCRIPT [ARGUMENTS].
#include "kelLua/ScriptManager.h"
#include <cstdio>
#include <lua.hpp>

int tolua_test_Vector_open(lua_State* L);
int tolua_test_Body_open(lua_State* L);
int tolua_test_Family_open(lua_State* L);

int main(int argc, char** argv)
{
  if (argc < 2) return 2;
  lua_State* L = kelLua::ScriptManager::instance(true)->openState();
  for (auto* open : {tolua_test_Body_open, tolua_test_Vector_open, tolua_test_Family_open}) open(L);
  bool failed = luaL_loadfile(L, argv[1]) != 0;
  for (int i = 2; i < argc; ++i) lua_pushstring(L, argv[i]);
  failed = failed || lua_pcall(L, argc - 2, 0, 0) != 0;
  if (failed) std::fprintf(stderr, "%s\n", lua_tostring(L, -1));
  kelLua::ScriptManager::instance()->closeState();
  return failed ? 1 : 0;
}
