#include "Members.h"
#include "HandleState.h"
#include <cctype>
#include <cstring>
#include <tolua++.h>

namespace kelLua::members {

namespace {

/// registry[&s_caches]: the set of tables in which classes remember, as weak keys.
const char s_caches = 0;
/// registry[&s_traits]: class table -> its traits, a number.
const char s_traits = 0;
enum Trait
{
  IS_BASE = 1,
  HAS_FIELDS = 2 ///< Some object of the class has fields of a script's own.
};

// ---- The search itself, which remembers nothing.

/// Pushes table[accessors][key] for the class table on top and the key at index 2; false for none.
bool accessor(lua_State* L, const char* accessors)
{
  if (!rawField(L, accessors)) return false;
  if (lua_istable(L, -1)) {
    lua_pushvalue(L, 2);
    lua_rawget(L, -2);
    lua_remove(L, -2);
    if (lua_iscfunction(L, -1)) return true;
  }
  lua_pop(L, 1);
  return false;
}

/// The value of key (index 2) in the class table on top, got for the object or table at index 1.
bool classField(lua_State* L)
{
  lua_pushvalue(L, 2);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) return true;
  lua_pop(L, 1);
  if (!accessor(L, ".get")) return false;
  lua_pushvalue(L, 1);
  lua_pushvalue(L, 2);
  lua_call(L, 2, 1);
  return true;
}

/// Whether the key at index 2 goes to the index operators: a number, or a text that reads as one. Names are
/// told by their first character, which spares the attempt to read each of them as a number.
bool isElement(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return lua_type(L, 2) == LUA_TNUMBER;
  const char first = *lua_tostring(L, 2);
  return !std::isalpha(static_cast<unsigned char>(first)) && first != '_' && lua_isnumber(L, 2);
}

/// Whether a class table shows this key of its bases: not constructors, `delete`, operators and events.
bool isInherited(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return true;
  const char* key = lua_tostring(L, 2);
  for (const char* own : {"new", "new_local", "delete", "tolua_ubox"})
    if (std::strcmp(key, own) == 0) return false;
  return key[0] != '.' && std::strncmp(key, "__", 2) != 0;
}

int tableIndex(lua_State* L)
{
  if (!lua_istable(L, 1)) return 0;
  lua_pushvalue(L, 1);
  if (classField(L)) return 1;
  if (!isInherited(L)) return 0;
  while (toMetatable(L))
    if (classField(L)) return 1;
  return 0;
}

// ---- What a class remembers: key -> the table that holds it, or the getter as a light userdata.

void pushRegistered(lua_State* L, const char& key)
{
  lua_pushlightuserdata(L, const_cast<char*>(&key));
  lua_rawget(L, LUA_REGISTRYINDEX);
  if (lua_istable(L, -1)) return;
  lua_pop(L, 1);
  lua_newtable(L);
  lua_createtable(L, 0, 1);
  lua_pushliteral(L, "k");
  lua_setfield(L, -2, "__mode");
  lua_setmetatable(L, -2);
  lua_pushlightuserdata(L, const_cast<char*>(&key));
  lua_pushvalue(L, -2);
  lua_rawset(L, LUA_REGISTRYINDEX);
}

/// Pushes a new table to remember in.
void pushNewCache(lua_State* L)
{
  lua_newtable(L);
  pushRegistered(L, s_caches);
  lua_pushvalue(L, -2);
  lua_pushboolean(L, 1);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

/// Takes the key on top out of the table at an index if it is there; pops it. Lua would make room for a
/// missing one.
void eraseTop(lua_State* L, int table)
{
  lua_pushvalue(L, -1);
  lua_rawget(L, table);
  const bool known = !lua_isnil(L, -1);
  lua_pop(L, 1);
  if (!known) return lua_pop(L, 1);
  lua_pushnil(L);
  lua_rawset(L, table);
}

/// Lets all classes forget one key, at an index.
void forgetKey(lua_State* L, int key)
{
  const int top = lua_gettop(L);
  pushRegistered(L, s_caches);
  for (lua_pushnil(L); lua_next(L, top + 1); lua_pop(L, 1)) {
    lua_pushvalue(L, key);
    eraseTop(L, top + 2);
  }
  lua_settop(L, top);
}

/// Lets all classes forget everything.
void forgetAll(lua_State* L)
{
  const int top = lua_gettop(L);
  pushRegistered(L, s_caches);
  for (lua_pushnil(L); lua_next(L, top + 1); lua_settop(L, top + 2))
    for (lua_pushnil(L); lua_next(L, top + 2);) {
      lua_pop(L, 1);
      lua_pushvalue(L, -1);
      lua_pushnil(L);
      lua_rawset(L, top + 2);
    }
  lua_settop(L, top);
}

int traitsOf(lua_State* L, int classTable)
{
  lua_pushvalue(L, classTable);
  pushRegistered(L, s_traits);
  lua_insert(L, -2);
  lua_rawget(L, -2);
  const int traits = static_cast<int>(lua_tointeger(L, -1));
  lua_pop(L, 2);
  return traits;
}

void setTraits(lua_State* L, int classTable, int traits)
{
  pushRegistered(L, s_traits);
  lua_pushvalue(L, classTable);
  lua_pushinteger(L, traits);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

/// table[key at index 2] = light(function), for the table at an index.
void rememberFunction(lua_State* L, int table, lua_CFunction function)
{
  lua_pushvalue(L, 2);
  lua_pushlightuserdata(L, reinterpret_cast<void*>(function));
  lua_rawset(L, table);
}

/// Searches the classes of the object at index 1 for the name at index 2, remembers in which table it lies,
/// and gives its value.
int findMember(lua_State* L)
{
  const int cache = lua_upvalueindex(2);
  lua_settop(L, 2);
  lua_pushvalue(L, 1);
  while (toMetatable(L)) {
    lua_pushvalue(L, 2);
    lua_rawget(L, -2);
    if (!lua_isnil(L, -1)) {
      lua_pushvalue(L, 2);
      lua_pushvalue(L, -3);
      lua_rawset(L, cache);
      return 1;
    }
    lua_pop(L, 1);
    if (!accessor(L, ".get")) continue;
    const lua_CFunction getter = lua_tocfunction(L, -1);
    rememberFunction(L, cache, getter);
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 2);
    lua_call(L, 2, 1);
    return 1;
  }
  return 0;
}

// ---- The events of a class in use. Upvalues of `__index`: class table, cache; of `__newindex`: cache.

int memberIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA) return tableIndex(L);
  lua_getfenv(L, 1);
  if (!lua_rawequal(L, -1, TOLUA_NOPEER) && lua_istable(L, -1)) {
    lua_pushvalue(L, 2);
    lua_gettable(L, -2);
    if (!lua_isnil(L, -1)) return 1;
    lua_settop(L, 2);
  }
  lua_pushvalue(L, 2);
  lua_rawget(L, lua_upvalueindex(1));
  if (!lua_isnil(L, -1)) return 1;
  lua_pushvalue(L, 2);
  lua_rawget(L, lua_upvalueindex(2));
  switch (lua_type(L, -1)) {
  case LUA_TTABLE:
    lua_pushvalue(L, 2);
    lua_rawget(L, -2);
    if (!lua_isnil(L, -1)) return 1;
    break;
  case LUA_TLIGHTUSERDATA: {
    const auto getter = reinterpret_cast<lua_CFunction>(lua_touserdata(L, -1));
    lua_settop(L, 2);
    return getter(L);
  }
  default:
    break;
  }
  return findMember(L);
}

/// The same for a class with index operators.
int elementIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA || !isElement(L)) return memberIndex(L);
  if (handles::pushOwnTable(L, 1)) {
    lua_pushvalue(L, 2);
    lua_gettable(L, -2);
    if (!lua_isnil(L, -1)) return 1;
  }
  lua_settop(L, 2);
  if (!findOperation(L, ".geti")) return memberIndex(L);
  lua_pushvalue(L, 1);
  lua_pushvalue(L, 2);
  lua_call(L, 2, 1);
  return 1;
}

/// Enters key and value into the table that a script sees as the object's own.
int setField(lua_State* L)
{
  if (!handles::pushOwnTable(L, 1)) {
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_setfenv(L, 1);
  }
  objectHasFields(L, 1);
  lua_insert(L, 2);
  lua_settable(L, 2);
  return 0;
}

/// Searches the classes of the object at index 1 for a setter of the name at index 2 and remembers it, or
/// that there is none.
int findSetter(lua_State* L)
{
  const int cache = lua_upvalueindex(1);
  lua_pushvalue(L, 1);
  while (toMetatable(L)) {
    if (!accessor(L, ".set")) continue;
    rememberFunction(L, cache, lua_tocfunction(L, -1));
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 3);
    lua_call(L, 2, 0);
    return 0;
  }
  lua_settop(L, 3);
  if (lua_type(L, 2) == LUA_TSTRING) rememberFunction(L, cache, setField);
  return setField(L);
}

int tableNewIndex(lua_State* L)
{
  if (!lua_istable(L, 1)) return 0;
  lua_pushvalue(L, 1);
  do {
    if (!accessor(L, ".set")) continue;
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 3);
    lua_call(L, 2, 0);
    return 0;
  } while (toMetatable(L));
  lua_settop(L, 3);
  luaL_argcheck(L, !lua_isnil(L, 2), 2, "a key is nil");
  forgetKey(L, 2);
  lua_rawset(L, 1);
  return 0;
}

int memberNewIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA) return tableNewIndex(L);
  lua_pushvalue(L, 2);
  lua_rawget(L, lua_upvalueindex(1));
  const auto setter = reinterpret_cast<lua_CFunction>(lua_touserdata(L, -1));
  lua_settop(L, 3);
  if (setter == setField) return setField(L);
  if (setter) {
    lua_remove(L, 2);
    return setter(L);
  }
  if (!isElement(L) || !findOperation(L, ".seti")) return findSetter(L);
  lua_insert(L, 1);
  lua_settop(L, 4);
  lua_call(L, 3, 0);
  return 0;
}

// ---- How a class comes into use.

/// The metatable on top -> the class table, which is the metatable of plain objects, too.
void toClassTable(lua_State* L)
{
  lua_pushvalue(L, -1);
  lua_rawget(L, LUA_REGISTRYINDEX);
  const char* name = lua_tostring(L, -1);
  const bool isConst = name && std::strncmp(name, "const ", 6) == 0;
  lua_pop(L, 1);
  if (isConst && lua_getmetatable(L, -1)) lua_replace(L, -2);
}

bool hasInChain(lua_State* L, int classTable, const char* key)
{
  const int top = lua_gettop(L);
  bool found = false;
  lua_pushvalue(L, classTable);
  do found = rawField(L, key);
  while (!found && toMetatable(L));
  lua_settop(L, top);
  return found;
}

/// Whether Lua may look members up in the class table itself: nothing lies in bases or behind accessors.
bool isDirect(lua_State* L, int classTable)
{
  if (traitsOf(L, classTable) != 0) return false;
  if (hasInChain(L, classTable, ".get") || hasInChain(L, classTable, ".geti")) return false;
  if (!lua_getmetatable(L, classTable)) return true;
  luaL_getmetatable(L, "tolua_commonclass");
  const bool result = lua_rawequal(L, -1, -2) != 0;
  lua_pop(L, 2);
  return result;
}

/// Lets the class table at an index come into use anew, its const twin, too.
void reset(lua_State* L, int classTable)
{
  const int top = lua_gettop(L);
  lua_pushvalue(L, classTable);
  lua_pushvalue(L, classTable);
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_pushfstring(L, "const %s", lua_tostring(L, -1));
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_remove(L, -2);
  for (; lua_gettop(L) > top; lua_pop(L, 1)) {
    if (!lua_istable(L, -1)) continue;
    for (const luaL_Reg& event : {luaL_Reg{"__index", firstIndex}, luaL_Reg{"__newindex", firstNewIndex}}) {
      lua_pushstring(L, event.name);
      lua_pushcfunction(L, event.func);
      lua_rawset(L, -3);
    }
  }
}

} // namespace

int firstIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA || !lua_getmetatable(L, 1)) return tableIndex(L);
  const int metatable = lua_gettop(L);
  lua_pushvalue(L, metatable);
  toClassTable(L);
  lua_pushliteral(L, "__index");
  lua_insert(L, -2);
  if (!isDirect(L, metatable + 2)) {
    pushNewCache(L);
    lua_pushcclosure(L, hasInChain(L, metatable, ".geti") ? elementIndex : memberIndex, 2);
  }
  lua_rawset(L, metatable);
  lua_settop(L, 2);
  lua_gettable(L, 1);
  return 1;
}

int firstNewIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA || !lua_getmetatable(L, 1)) return tableNewIndex(L);
  lua_pushliteral(L, "__newindex");
  pushNewCache(L);
  lua_pushcclosure(L, memberNewIndex, 1);
  lua_rawset(L, -3);
  lua_settop(L, 3);
  lua_settable(L, 1);
  return 0;
}

void classChanged(lua_State* L, bool isBase)
{
  const int classTable = lua_gettop(L);
  if (isBase) setTraits(L, classTable, traitsOf(L, classTable) | IS_BASE);
  reset(L, classTable);
  forgetAll(L);
}

void objectHasFields(lua_State* L, int handle)
{
  if (!lua_getmetatable(L, handle)) return;
  toClassTable(L);
  const int classTable = lua_gettop(L);
  const int traits = traitsOf(L, classTable);
  if ((traits & HAS_FIELDS) == 0) {
    setTraits(L, classTable, traits | HAS_FIELDS);
    reset(L, classTable);
  }
  lua_pop(L, 1);
}

bool toMetatable(lua_State* L)
{
  const bool found = lua_getmetatable(L, -1) != 0;
  lua_remove(L, found ? -2 : -1);
  return found;
}

bool rawField(lua_State* L, const char* key)
{
  lua_pushstring(L, key);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) return true;
  lua_pop(L, 1);
  return false;
}

bool findOperation(lua_State* L, const char* operation)
{
  lua_pushvalue(L, 1);
  while (toMetatable(L))
    if (rawField(L, operation)) return true;
  return false;
}

} // namespace kelLua::members
