#pragma once

#include <lua.hpp>

namespace kelLua {

/// Prepares a state for classes. Doing it again changes nothing.
void openClassEvents(lua_State* L);

/// Makes the metatables of a type string, plain and const, unless they are ours already. Objects and class
/// tables get our look-up in place of the binding library's, and operators that call wrappers without a
/// detour; objects gain the unary minus, by `.sub`, and `tostring`, by `.tostring`.
void addType(lua_State* L, const char* type);

/// Makes `event` what Lua calls for an arithmetic operator on objects of the class whose table is on top of
/// the stack, in place of the search for the operation, such as ".mul". Nothing for other operations.
void setOperation(lua_State* L, const char* operation, lua_CFunction event);
/// Whether the running function is such an event.
bool isOperation(lua_State* L);

/// Lets the objects of a type go without a finaliser, as all their values lie in the handles; but not where
/// another plug-in has made the type, which may push objects of its own.
void dropFinaliser(lua_State* L, const char* type);
/// Undoes that for the class of the handle at a stack index.
void restoreFinaliser(lua_State* L, int handle);

} // namespace kelLua
