#include "Terminal.h"
#include "kel/Version.h"
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <editline/readline.h>
#include <iostream>
#include <lua.hpp>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

constexpr int longestHistory = 1000;
constexpr int controlC = 3;

const Repl* s_repl = nullptr; // the line editor calls functions without a context
bool s_cancelled = false;

fs::path historyFile()
{
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  if (state && *state == '/') return fs::path(state) / "kel" / "history";
  if (home && *home == '/') return fs::path(home) / ".local" / "state" / "kel" / "history";
  return {};
}

/// The line editor's generator: the candidates one by one, then null.
char* nextCandidate(const char* word, int state)
{
  static std::vector<std::string> candidates;
  static std::size_t next;
  if (state == 0) {
    candidates = s_repl->complete(word);
    next = 0;
  }
  return next < candidates.size() ? strdup(candidates[next++].c_str()) : nullptr;
}

char** completeWord(const char* word, int, int)
{
  rl_attempted_completion_over = 1; // no file names
  return rl_completion_matches(word, nextCandidate);
}

/// Ctrl-C is a key while a line is edited; at all other times it is the signal that stops the script. The
/// line editor forgets such settings with each line.
int keepControlC() { return rl_parse_and_bind("setty -d -isig"); }

int cancelLine(int, int)
{
  s_cancelled = true;
  rl_done = 1;
  return 0;
}

} // namespace

Terminal::Terminal(const Repl& repl) : m_history(historyFile())
{
  static char name[] = "kel", breaks[] = " \t\n\"'`><=;+-*/%^~#{}()[],";
  s_repl = &repl;
  rl_readline_name = name;
  rl_initialize();
  rl_completer_word_break_characters = breaks;
  rl_attempted_completion_function = completeWord;
  rl_completion_append_character = '\0';
  rl_pre_input_hook = keepControlC;
  rl_add_defun("cancel-line", cancelLine, controlC);

  using_history();
  stifle_history(longestHistory);
  if (m_history.empty()) return;
  std::error_code failure;
  fs::create_directories(m_history.parent_path(), failure);
  if (!failure) read_history(m_history.c_str());
}

Terminal::~Terminal() { s_repl = nullptr; }

std::optional<std::string> Terminal::readLine(const char* prompt)
{
  s_cancelled = false;
  rl_done = 0;
  char* text = readline(prompt);
  if (s_cancelled) {
    std::free(text);
    std::puts("^C");
    return "";
  }
  if (!text) return std::nullopt;
  std::string line = text;
  std::free(text);
  remember(line);
  return line;
}

bool Terminal::wasCancelled() const { return s_cancelled; }

/// Writes at once: a script may end the process.
void Terminal::remember(const std::string& line)
{
  if (line.find_first_not_of(" \t") == std::string::npos) return;
  add_history(line.c_str());
  if (!m_history.empty()) write_history(m_history.c_str());
}

void runRepl(lua_State* L)
{
  Repl repl(L, std::cout, std::cerr);
  Terminal terminal(repl);
  std::cout << kelGetLibraryName() << ' ' << kelGetVersion(true) << ". Tab completes, Ctrl-D ends."
            << std::endl;
  while (const std::optional<std::string> line = terminal.readLine(repl.isIncomplete() ? ">> " : "> ")) {
    if (terminal.wasCancelled())
      repl.cancel();
    else
      repl.feed(*line);
  }
  std::cout << std::endl;
}
