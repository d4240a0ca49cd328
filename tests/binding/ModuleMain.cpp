// The test packages as a module for any Lua program: `require "test_module"`.
#include <initializer_list>
#include <lua.hpp>

int tolua_test_Vector_open(lua_State* L);
int tolua_test_Body_open(lua_State* L);
int tolua_test_Extra_open(lua_State* L);

extern "C" int luaopen_test_module(lua_State* L)
{
  for (auto* open : {tolua_test_Vector_open, tolua_test_Body_open, tolua_test_Extra_open}) open(L);
  return 0;
}
