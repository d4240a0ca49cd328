#include "Repl.h"
#include "Chunk.h"
#include "Interrupt.h"
#include "kelLua/traceback.h"
#include "members.h"
#include "readable.h"
#include <lua.hpp>
#include <ostream>

namespace {

/// values... -> their text, a line each
int describe(lua_State* L)
{
  std::string text;
  for (int i = 1; i <= lua_gettop(L); ++i) text += readable(L, i) + '\n';
  lua_pushlstring(L, text.data(), text.size());
  return 1;
}

/// table, key -> table[key]
int getField(lua_State* L)
{
  lua_gettable(L, 1);
  return 1;
}

/// Replaces the value on top by the field of it that a dotted path names; pops it and gives false if there is
/// none.
bool follow(lua_State* L, const std::string& path)
{
  for (std::size_t begin = 0; begin < path.size();) {
    const std::size_t end = std::min(path.find_first_of(".:", begin), path.size());
    lua_pushcfunction(L, getField);
    lua_insert(L, -2);
    lua_pushlstring(L, path.data() + begin, end - begin);
    if (lua_pcall(L, 2, 1, 0) != 0 || lua_isnil(L, -1)) {
      lua_pop(L, 1);
      return false;
    }
    begin = end + 1;
  }
  return true;
}

} // namespace

Repl::Loaded Repl::load(const std::string& text, Loaded kind) const
{
  if (luaL_loadbuffer(m_state, text.data(), text.size(), "=stdin") == 0) return kind;
  const std::string error = kelLua::errorText(m_state, -1);
  // Lua has no other sign that more input could make a chunk of it.
  return error.ends_with("'<eof>'") ? Loaded::BEGINNING : Loaded::ERROR;
}

/// Pushes the lines as a function, else an error text.
Repl::Loaded Repl::loadLines() const
{
  // A value in front: a call alone would be a tail call, and errors in it could not name their line.
  const std::string results = "return nil, ";
  if (m_lines[0] == '=') return load(results + m_lines.substr(1), Loaded::EXPRESSION);
  const Loaded expression = load(results + m_lines, Loaded::EXPRESSION);
  if (expression == Loaded::EXPRESSION) return expression;
  lua_pop(m_state, 1);
  const Loaded statement = load(m_lines, Loaded::STATEMENT);
  return std::min(expression, statement);
}

void Repl::feed(const std::string& line)
{
  m_lines += (m_lines.empty() ? "" : "\n") + line;
  if (m_lines.empty()) return;
  const Loaded loaded = loadLines();
  if (loaded == Loaded::BEGINNING) {
    lua_pop(m_state, 1);
    return;
  }
  m_lines.clear();
  if (loaded == Loaded::ERROR)
    reportError();
  else
    run(loaded);
}

/// Calls the function on top of the stack and prints its results.
void Repl::run(Loaded kind)
{
  const Interrupt interrupt(m_state);
  const int base = lua_gettop(m_state) - 1;
  if (callChunk(m_state, 0, LUA_MULTRET) != 0) return reportError();
  if (kind == Loaded::EXPRESSION) lua_remove(m_state, base + 1);
  const int numResults = lua_gettop(m_state) - base;
  if (numResults == 0) return;
  luaL_checkstack(m_state, LUA_MINSTACK, "too many results");
  lua_pushcfunction(m_state, describe);
  lua_insert(m_state, base + 1);
  if (callChunk(m_state, numResults, 1) != 0) return reportError();
  m_out << lua_tostring(m_state, -1) << std::flush;
  lua_pop(m_state, 1);
}

/// Pops an error.
void Repl::reportError()
{
  m_err << kelLua::errorText(m_state, -1) << std::endl;
  lua_pop(m_state, 1);
}

std::vector<std::string> Repl::complete(const std::string& word) const
{
  const std::size_t separator = word.find_last_of(".:");
  const bool isGlobal = separator == std::string::npos;
  const std::string front = isGlobal ? "" : word.substr(0, separator + 1);
  const std::string begun = word.substr(front.size());
  if (front == "." || front == ":") return {};

  lua_pushvalue(m_state, LUA_GLOBALSINDEX);
  if (!follow(m_state, front)) return {};
  std::vector<std::string> found;
  for (const auto& [name, kind] : membersOf(m_state, -1)) {
    const bool fits = front.ends_with(':') ? kind == MemberKind::FUNCTION : true;
    if (fits && name.starts_with(begun)) found.push_back(front + name);
  }
  lua_pop(m_state, 1);
  return found;
}
