#include "kelLua/push.h"
#include "kelLua/Handles.h"
#include <lua.hpp>

namespace kelLua {

void pushusertype(lua_State* L, void* object, const char* typeName)
{
  handles::push(L, object, wrap::type(typeName));
}

void pushusertype(lua_State* L, void* object, const wrap::Type& type) { handles::push(L, object, type); }

void pushcounted(lua_State* L, const kel::Referenced* counted, void* object, const wrap::Type& type)
{
  handles::pushCounted(L, counted, object, type);
}

void pushstring(lua_State* L, const char* text) { lua_pushstring(L, text); }

} // namespace kelLua
