#pragma once
#include "kel/Notify.h"
#include <optional>
#include <string>
#include <vector>

/// What the command line asks for.
struct Options
{
  bool interactive = false;           ///< A dialogue on the terminal in place of a script.
  bool check = false;                 ///< Check the files in `arguments` in place of running a script.
  std::optional<std::string> chunk;   ///< Lua code to run in place of a script.
  std::string script;                 ///< The script's file, "-" for standard input, empty with a chunk.
  std::vector<std::string> arguments; ///< What the script gets in `arg`.
  kel::Notify::NotifyLevel logLevel = kel::Notify::NOTIFY_WARNING;
  bool plugin = true;      ///< Whether to load the kel tree into the state.
  bool tracebacks = false; ///< Whether failed callbacks show tracebacks.
};

/// Reads the command line. Returns nothing when there is nothing to run, with the exit status in `status`: 0
/// after `--help` and `--version`, 2 after bad usage.
std::optional<Options> readOptions(int argc, char** argv, int& status);
