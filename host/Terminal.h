#pragma once
#include "Repl.h"
#include <filesystem>
#include <optional>

/// A line editor on the terminal of the process, with the history of earlier dialogues in a file and
/// completion by a dialogue. There is one at a time.
class Terminal
{
public:
  explicit Terminal(const Repl& repl);
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal();

  /// Lets the user edit a line; nothing at the end of the input, by Ctrl-D.
  std::optional<std::string> readLine(const char* prompt);
  /// Whether Ctrl-C ended the line that was read last, which is empty then.
  bool wasCancelled() const;

private:
  void remember(const std::string& line);

  std::filesystem::path m_history; ///< Empty where there is no place for a history.
};

/// Runs the dialogue on the terminal until the input ends.
void runRepl(lua_State* L);
