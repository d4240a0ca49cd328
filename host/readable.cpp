#include "readable.h"
#include "kelLua/traceback.h"
#include "members.h"
#include <algorithm>
#include <cstdio>
#include <lua.hpp>
#include <numeric>
#include <vector>

namespace {

constexpr std::size_t longestLine = 100;
constexpr std::size_t mostEntries = 200;

std::string quoted(const char* text, std::size_t length)
{
  std::string result = "\"";
  for (std::size_t i = 0; i < length; ++i) {
    const char c = text[i];
    if (c == '\n')
      result += "\\n";
    else if (c == '\t')
      result += "\\t";
    else if (c == '"' || c == '\\')
      result += std::string("\\") + c;
    else if (static_cast<unsigned char>(c) < ' ' || c == '\x7f') {
      char code[5];
      std::snprintf(code, sizeof code, "\\%03d", c);
      result += code;
    } else
      result += c;
  }
  return result + '"';
}

bool isPlainTable(lua_State* L, int index)
{
  if (!lua_istable(L, index)) return false;
  if (luaL_getmetafield(L, index, "__tostring") == 0) return true;
  lua_pop(L, 1);
  return false;
}

bool isEmpty(lua_State* L, int index)
{
  lua_pushvalue(L, index);
  lua_pushnil(L);
  const bool empty = lua_next(L, -2) == 0;
  lua_pop(L, empty ? 1 : 3);
  return empty;
}

/// As `tostring` in a script, but strings quoted and the insides of tables left out.
std::string brief(lua_State* L, int index)
{
  if (lua_type(L, index) == LUA_TSTRING) {
    std::size_t length = 0;
    const char* text = lua_tolstring(L, index, &length);
    return quoted(text, length);
  }
  if (isPlainTable(L, index)) return isEmpty(L, index) ? "{}" : "{...}";
  lua_getglobal(L, "tostring");
  lua_pushvalue(L, index);
  lua_call(L, 1, 1);
  const std::string text = kelLua::errorText(L, -1);
  lua_pop(L, 1);
  return text;
}

/// Of the key at an index, as it stands in a table constructor.
std::string keyText(lua_State* L, int index)
{
  if (lua_type(L, index) != LUA_TSTRING) return "[" + brief(L, index) + "]";
  const std::string name = lua_tostring(L, index);
  return isIdentifier(name) ? name : "[" + brief(L, index) + "]";
}

/// The entries of the table on top of the stack: a sequence first, then the others by their keys.
std::vector<std::string> entriesOf(lua_State* L)
{
  std::vector<std::string> sequence, others;
  const auto length = static_cast<int>(lua_objlen(L, -1));
  for (int i = 1; i <= length; ++i) {
    lua_rawgeti(L, -1, i);
    sequence.push_back(brief(L, lua_gettop(L)));
    lua_pop(L, 1);
  }
  for (lua_pushnil(L); lua_next(L, -2); lua_pop(L, 1)) {
    const lua_Number number = lua_type(L, -2) == LUA_TNUMBER ? lua_tonumber(L, -2) : 0;
    if (number >= 1 && number <= length && number == static_cast<int>(number)) continue;
    const int value = lua_gettop(L);
    others.push_back(keyText(L, value - 1) + " = " + brief(L, value));
  }
  std::sort(others.begin(), others.end());
  sequence.insert(sequence.end(), others.begin(), others.end());
  return sequence;
}

std::string tableText(lua_State* L, int index)
{
  lua_pushvalue(L, index);
  std::vector<std::string> entries = entriesOf(L);
  lua_pop(L, 1);
  if (entries.size() > mostEntries) {
    const std::size_t rest = entries.size() - mostEntries;
    entries.resize(mostEntries);
    entries.push_back("... " + std::to_string(rest) + " more");
  }
  const auto width = [](std::size_t sum, const std::string& entry) { return sum + entry.size() + 2; };
  const bool oneLine = std::accumulate(entries.begin(), entries.end(), std::size_t{0}, width) < longestLine;
  const std::string separator = oneLine ? ", " : ",\n  ";
  std::string text;
  for (const std::string& entry : entries) text += (text.empty() ? "" : separator) + entry;
  return oneLine ? "{" + text + "}" : "{\n  " + text + "\n}";
}

} // namespace

std::string readable(lua_State* L, int index)
{
  return isPlainTable(L, index) ? tableText(L, index) : brief(L, index);
}
