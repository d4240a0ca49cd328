#pragma once
#include <iosfwd>
#include <string>
#include <vector>

struct lua_State;

/// The dialogue with a Lua state, without the terminal: lines in, values and errors out.
class Repl
{
public:
  /// Values go to `out`, errors to `err`; state and streams outlive the dialogue.
  Repl(lua_State* L, std::ostream& out, std::ostream& err) : m_state(L), m_out(out), m_err(err) {}

  /// Takes a line. Runs the chunk that it ends and prints the chunk's values; a chunk that fails prints its
  /// error with a traceback. Ctrl-C stops a running chunk.
  void feed(const std::string& line);
  /// Whether the lines since the last chunk are the beginning of one.
  bool isIncomplete() const { return !m_lines.empty(); }
  /// Drops the beginning of a chunk.
  void cancel() { m_lines.clear(); }
  /// What the word at the end of a line may become: `kel.Ve` gives `kel.Vec2`, `kel.Vec3` and others, and a
  /// word with a colon the methods of an object. A look-up on the way that fails gives nothing.
  std::vector<std::string> complete(const std::string& word) const;

private:
  enum class Loaded
  {
    EXPRESSION,
    STATEMENT,
    BEGINNING,
    ERROR
  };
  Loaded load(const std::string& text, Loaded kind) const;
  Loaded loadLines() const;
  void run(Loaded kind);
  void reportError();

  lua_State* m_state;
  std::ostream& m_out;
  std::ostream& m_err;
  std::string m_lines;
};
