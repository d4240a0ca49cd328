// Opens the test packages and runs a script: PROGRAM SCRIPT [ARGUMENTS].
#include "kelLua/ScriptManager.h"
#include <cstdio>
#include <lua.hpp>

int tolua_test_Vector_open(lua_State* L);
int tolua_test_Body_open(lua_State* L);

int main(int argc, char** argv)
{
  if (argc < 2) return 2;
  lua_State* L = kelLua::ScriptManager::instance(true)->openState();
  tolua_test_Body_open(L);
  tolua_test_Vector_open(L);
  if (luaL_dofile(L, argv[1])) {
    std::fprintf(stderr, "%s\n", lua_tostring(L, -1));
    return 1;
  }
  kelLua::ScriptManager::instance()->closeState();
  return 0;
}
