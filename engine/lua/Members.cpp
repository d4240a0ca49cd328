#include "Members.h"
#include "HandleState.h"
#include "ownFrame.h"
#include "pushWrapper.h"
#include <algorithm>
#include <cctype>
#include <cstring>
#include <iterator>
#include <tolua++.h>
#include <unordered_map>

namespace kelLua::members {

namespace {

/// registry[&s_inUse]: the set of metatables whose events know their bases.
const char s_inUse = 0;
/// registry[&s_traits]: class table -> its traits, a number.
const char s_traits = 0;
enum Trait
{
  IS_BASE = 1,
  HAS_FIELDS = 2,            ///< Some object of the class has fields of a script's own.
  DERIVED_HAVE_VARIABLES = 4 ///< A class table right above it has variables.
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

/// Whether the key at index 2 goes to the index operators: a number, or a text that reads as one. Names are
/// told by their first character, which spares the attempt to read each of them as a number.
bool isElement(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return lua_type(L, 2) == LUA_TNUMBER;
  const char first = *lua_tostring(L, 2);
  return !std::isalpha(static_cast<unsigned char>(first)) && first != '_' && lua_isnumber(L, 2);
}

constexpr const char* OWN_KEYS[] = {"new", "new_local", "delete", "tolua_ubox"};

/// Whether a class table shows this key of its bases: not constructors, `delete`, operators and events.
bool isInherited(lua_State* L)
{
  if (lua_type(L, 2) != LUA_TSTRING) return true;
  const char* key = lua_tostring(L, 2);
  if (key[0] == '.' || (key[0] == '_' && key[1] == '_')) return false;
  if (key[0] != 'n' && key[0] != 'd' && key[0] != 't') return true;
  return std::none_of(std::begin(OWN_KEYS), std::end(OWN_KEYS),
                      [key](const char* own) { return std::strcmp(key, own) == 0; });
}

// ---- What is known of classes

void pushRegistered(lua_State* L, const char& key)
{
  lua_pushlightuserdata(L, const_cast<char*>(&key));
  lua_rawget(L, LUA_REGISTRYINDEX);
  if (lua_istable(L, -1)) return;
  lua_pop(L, 1);
  lua_newtable(L);
  lua_pushlightuserdata(L, const_cast<char*>(&key));
  lua_pushvalue(L, -2);
  lua_rawset(L, LUA_REGISTRYINDEX);
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

void addTrait(lua_State* L, int classTable, Trait trait)
{
  const int traits = traitsOf(L, classTable) | trait;
  pushRegistered(L, s_traits);
  lua_pushvalue(L, classTable);
  lua_pushinteger(L, traits);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

// ---- The events of a class in use: closures over the tables to search, nearest class first.

/// What a closure searches: `size` tables, its last upvalues. Bit i says that table i holds accessors.
struct Chain
{
  int size = 0;
  int accessors = 0;
  bool derivedHaveVariables = false;
};
constexpr int maxChain = 12; ///< Each look-up that fails takes a place on the stack.

void pushChain(lua_State* L, const Chain& chain)
{
  lua_pushinteger(L, chain.size | (chain.derivedHaveVariables ? 1 << 7 : 0) | chain.accessors << 8);
}
Chain chainOf(lua_State* L)
{
  const auto bits = static_cast<int>(lua_tointeger(L, lua_upvalueindex(1)));
  return {bits & 0x7F, bits >> 8, (bits & 0x80) != 0};
}

/// Calls the getter or index operator on top of the stack, which a script may have put there, and leaves its
/// result.
int callGetter(lua_State* L)
{
  if (const lua_CFunction wrapper = toOwnFrame(L)) {
    lua_settop(L, 2);
    return wrapper(L);
  }
  lua_pushvalue(L, 1);
  lua_pushvalue(L, 2);
  lua_call(L, 2, 1);
  return 1;
}

/// Pushes the first value of the key at index 2 in the tables of the chain, or calls the getter of that name.
/// The look-ups that failed before it stay on the stack.
int searchChain(lua_State* L, const Chain& chain)
{
  for (int i = 0; i < chain.size; ++i) {
    lua_pushvalue(L, 2);
    lua_rawget(L, lua_upvalueindex(3 + i));
    if (lua_isnil(L, -1)) continue;
    if ((chain.accessors >> i & 1) == 0) return 1;
    if (lua_iscfunction(L, -1)) return callGetter(L);
  }
  return 0;
}

/// A class table whose base this class is, or an object that asked its class table.
int baseIndex(lua_State* L)
{
  const Chain chain = chainOf(L);
  if (chain.derivedHaveVariables) {
    lua_pushvalue(L, lua_upvalueindex(2));
    lua_rawget(L, 1);
    if (lua_istable(L, -1)) {
      lua_pushvalue(L, 2);
      lua_rawget(L, -2);
      if (lua_iscfunction(L, -1)) return callGetter(L);
    }
  }
  return isInherited(L) ? searchChain(L, chain) : 0;
}

/// Upvalues: the chain, ".get", then the tables: of each class its own and that of its getters.
int memberIndex(lua_State* L)
{
  if (lua_type(L, 1) == LUA_TTABLE) return baseIndex(L);
  lua_getfenv(L, 1);
  if (!lua_rawequal(L, -1, TOLUA_NOPEER)) {
    if (!lua_istable(L, -1)) return 0; // no object at all
    lua_pushvalue(L, 2);
    lua_gettable(L, -2);
    if (!lua_isnil(L, -1)) return 1;
  }
  return searchChain(L, chainOf(L));
}

} // namespace

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
  return findOperation(L, ".geti") ? callGetter(L) : memberIndex(L);
}

namespace {

/// Enters key and value into the table that a script sees as the object's own.
int setField(lua_State* L)
{
  if (!handles::pushOwnTable(L, 1)) {
    lua_newtable(L);
    lua_pushvalue(L, -1);
    lua_setfenv(L, 1);
  }
  if (!lua_toboolean(L, lua_upvalueindex(2))) objectHasFields(L, 1);
  lua_insert(L, 2);
  lua_settable(L, 2);
  return 0;
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
  if (lua_isnil(L, 2)) return luaL_error(L, "index is nil");
  lua_rawset(L, 1);
  return 0;
}

/// Upvalues: the chain, whether objects may have fields of a script's own, and the tables of setters.
int memberNewIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA) return tableNewIndex(L);
  if (isElement(L) && findOperation(L, ".seti")) {
    lua_insert(L, 1);
    lua_settop(L, 4);
    lua_call(L, 3, 0);
    return 0;
  }
  lua_settop(L, 3);
  const Chain chain = chainOf(L);
  for (int i = 0; i < chain.size; ++i) {
    lua_pushvalue(L, 2);
    lua_rawget(L, lua_upvalueindex(3 + i));
    if (!lua_iscfunction(L, -1)) {
      lua_settop(L, 3);
      continue;
    }
    if (const lua_CFunction wrapper = toOwnFrame(L)) {
      lua_settop(L, 3);
      lua_remove(L, 2);
      return wrapper(L);
    }
    lua_pushvalue(L, 1);
    lua_pushvalue(L, 3);
    lua_call(L, 2, 0);
    return 0;
  }
  return setField(L);
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

/// Pushes the first value of a key in a class table and its bases, nil for none; whether there is one.
bool pushInChain(lua_State* L, int classTable, const char* key)
{
  const int place = lua_gettop(L) + 1;
  lua_pushvalue(L, classTable);
  bool found = false;
  do found = rawField(L, key);
  while (!found && toMetatable(L));
  if (!found) lua_pushnil(L);
  lua_replace(L, place);
  lua_settop(L, place);
  return found;
}

bool hasInChain(lua_State* L, int classTable, const char* key)
{
  const bool found = pushInChain(L, classTable, key);
  lua_pop(L, 1);
  return found;
}

/// Pushes the metatable of the value at index 1 if it is that of a class: scripts may call events by hand.
bool pushClass(lua_State* L)
{
  if (!lua_getmetatable(L, 1)) return false;
  lua_pushvalue(L, -1);
  lua_rawget(L, LUA_REGISTRYINDEX);
  const bool isClass = lua_type(L, -1) == LUA_TSTRING;
  lua_pop(L, isClass ? 1 : 2);
  return isClass;
}

/// Whether a base has a key that class tables do not inherit and that the class does not have itself.
bool hidesKeys(lua_State* L, int classTable)
{
  const int top = lua_gettop(L);
  bool hides = false;
  for (const char* key : {"new", "delete"}) {
    lua_pushvalue(L, classTable);
    hides = hides || (!rawField(L, key) && hasInChain(L, classTable, key));
    lua_settop(L, top);
  }
  return hides;
}

/// Whether Lua may look members up in the class table itself. What is missing there goes to the base as a
/// look-up of the class table, so nothing may depend on the object; and the class itself is nobody's base.
bool isDirect(lua_State* L, int classTable)
{
  if (traitsOf(L, classTable) != 0 || !lua_getmetatable(L, classTable)) return false;
  lua_pop(L, 1);
  return !hasInChain(L, classTable, ".get") && !hasInChain(L, classTable, ".geti") &&
         !hidesKeys(L, classTable);
}

/// Pushes the chain of a class and its tables: the class tables with what they have under the key, such as
/// ".get", or only that.
Chain pushTables(lua_State* L, int classTable, const char* accessors, bool withClasses)
{
  Chain chain;
  lua_pushvalue(L, classTable);
  do {
    if (withClasses && chain.size < maxChain) {
      lua_pushvalue(L, -1);
      lua_insert(L, -2);
      ++chain.size;
    }
    if (chain.size < maxChain && rawField(L, accessors)) {
      if (lua_istable(L, -1)) {
        lua_insert(L, -2);
        chain.accessors |= 1 << chain.size++;
      } else {
        lua_pop(L, 1); // a script's
      }
    }
  } while (toMetatable(L));
  return chain;
}

/// The events that call a class's own index operator, by its wrapper.
std::unordered_map<lua_CFunction, lua_CFunction>& elementEvents()
{
  static std::unordered_map<lua_CFunction, lua_CFunction> s_events;
  return s_events;
}

/// The `__index` of a class in use.
lua_CFunction indexOf(lua_State* L, int classTable)
{
  const bool hasElements = pushInChain(L, classTable, ".geti");
  const auto event = elementEvents().find(lua_tocfunction(L, -1));
  lua_pop(L, 1);
  if (!hasElements) return memberIndex;
  const bool hasFields = (traitsOf(L, classTable) & HAS_FIELDS) != 0;
  return hasFields || event == elementEvents().end() ? elementIndex : event->second;
}

/// Lets the metatable at an index come into use anew.
void reset(lua_State* L, int metatable)
{
  for (const luaL_Reg& event : {luaL_Reg{"__index", firstIndex}, luaL_Reg{"__newindex", firstNewIndex}}) {
    lua_pushstring(L, event.name);
    lua_pushcfunction(L, event.func);
    lua_rawset(L, metatable);
  }
}

/// The same for the class table at an index and its const twin.
void resetClass(lua_State* L, int classTable)
{
  reset(L, classTable);
  if (!pushConstTwin(L, classTable)) return;
  reset(L, lua_gettop(L));
  lua_pop(L, 1);
}

/// Notes that the events of the metatable at an index know its bases from now on.
void use(lua_State* L, int metatable)
{
  pushRegistered(L, s_inUse);
  lua_pushvalue(L, metatable);
  lua_pushboolean(L, 1);
  lua_rawset(L, -3);
  lua_pop(L, 1);
}

} // namespace

int firstIndex(lua_State* L)
{
  if (!pushClass(L)) return 0;
  luaL_checkstack(L, 3 * maxChain, "a chain of classes");
  const int metatable = lua_gettop(L);
  use(L, metatable);
  lua_pushliteral(L, "__index");
  lua_pushvalue(L, metatable);
  toClassTable(L);
  const int classTable = lua_gettop(L);
  if (lua_istable(L, 1) || !isDirect(L, classTable)) {
    lua_pushnil(L);
    lua_pushliteral(L, ".get");
    Chain chain = pushTables(L, classTable, ".get", true);
    chain.derivedHaveVariables = (traitsOf(L, classTable) & DERIVED_HAVE_VARIABLES) != 0;
    pushChain(L, chain);
    lua_replace(L, classTable + 1);
    pushWrapper(L, indexOf(L, classTable), 2 + chain.size);
    lua_remove(L, classTable);
  }
  lua_rawset(L, metatable);
  lua_settop(L, 2);
  lua_gettable(L, 1);
  return 1;
}

int firstNewIndex(lua_State* L)
{
  if (lua_type(L, 1) != LUA_TUSERDATA) return tableNewIndex(L);
  if (!pushClass(L)) return 0;
  luaL_checkstack(L, 3 * maxChain, "a chain of classes");
  const int metatable = lua_gettop(L);
  use(L, metatable);
  lua_pushvalue(L, metatable);
  toClassTable(L);
  const int classTable = lua_gettop(L);
  lua_pushliteral(L, "__newindex");
  lua_pushnil(L);
  lua_pushboolean(L, (traitsOf(L, classTable) & HAS_FIELDS) != 0);
  const Chain chain = pushTables(L, classTable, ".set", false);
  pushChain(L, chain);
  lua_replace(L, classTable + 2);
  lua_pushcclosure(L, memberNewIndex, 2 + chain.size);
  lua_rawset(L, metatable);
  lua_settop(L, 3);
  lua_settable(L, 1);
  return 0;
}

void addElementEvent(lua_CFunction wrapper, lua_CFunction event) { elementEvents()[wrapper] = event; }

void classChanged(lua_State* L, bool isBase)
{
  const int classTable = lua_gettop(L);
  if (isBase) addTrait(L, classTable, IS_BASE);
  if (rawField(L, ".get") && lua_getmetatable(L, classTable))
    addTrait(L, lua_gettop(L), DERIVED_HAVE_VARIABLES);
  lua_settop(L, classTable);
  pushRegistered(L, s_inUse);
  for (lua_pushnil(L); lua_next(L, classTable + 1);) {
    lua_pop(L, 1);
    reset(L, classTable + 2);
    lua_pushvalue(L, -1);
    lua_pushnil(L);
    lua_rawset(L, classTable + 1);
  }
  lua_settop(L, classTable);
}

void objectHasFields(lua_State* L, int handle)
{
  if (!lua_getmetatable(L, handle)) return;
  toClassTable(L);
  const int classTable = lua_gettop(L);
  if ((traitsOf(L, classTable) & HAS_FIELDS) == 0) {
    addTrait(L, classTable, HAS_FIELDS);
    resetClass(L, classTable);
  }
  lua_pop(L, 1);
}

bool pushConstTwin(lua_State* L, int classTable)
{
  lua_pushvalue(L, classTable);
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_pushfstring(L, "const %s", lua_tostring(L, -1));
  lua_rawget(L, LUA_REGISTRYINDEX);
  lua_remove(L, -2);
  if (lua_istable(L, -1)) return true;
  lua_pop(L, 1);
  return false;
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
