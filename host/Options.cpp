#include "Options.h"
#include "kel/Version.h"
#include <CLI/CLI.hpp>
#include <iostream>
#include <unistd.h>

namespace {

constexpr int badUsage = 2;

const std::map<std::string, kel::Notify::NotifyLevel> logLevels = {{"debug", kel::Notify::NOTIFY_DEBUG},
                                                                   {"info", kel::Notify::NOTIFY_INFO},
                                                                   {"warning", kel::Notify::NOTIFY_WARNING},
                                                                   {"error", kel::Notify::NOTIFY_ERROR}};

/// The words behind the options: files to check, or the script, unless a chunk takes its place, and its
/// arguments.
void splitWords(const std::vector<std::string>& words, Options& options)
{
  auto first = words.begin();
  if (options.check) {
    if (words.empty()) throw CLI::RequiredError("A file to check");
  } else if (!options.chunk) {
    if (first != words.end())
      options.script = *first++;
    else if (!isatty(STDIN_FILENO))
      options.script = "-";
    else
      options.interactive = true;
    if (options.script.size() > 1 && options.script[0] == '-') throw CLI::ExtrasError({options.script});
  }
  options.arguments.assign(first, words.end());
}

} // namespace

std::optional<Options> readOptions(int argc, char** argv, int& status)
{
  Options options;
  bool noPlugin = false;
  std::string chunk, logLevel = "warning";

  CLI::App app("Runs a Lua script in the kel multibody dynamics engine.", "kel");
  app.set_version_flag("--version", kelGetLibraryName() + std::string(" ") + kelGetVersion(true));
  CLI::Option* code =
      app.add_option("-e", chunk, "Run this Lua code in place of a script")->type_name("CHUNK");
  app.add_flag("--check", options.check,
               "Check the syntax and the names of the files that follow, run nothing")
      ->excludes(code);
  app.add_option("--log-level", logLevel, "Least severe messages to show (default: warning)")
      ->check(CLI::IsMember(logLevels).description(""))
      ->type_name("debug|info|warning|error");
  app.add_flag("--no-plugin", noPlugin, "Leave the kel tree out of the Lua state");
  app.add_flag("--traceback", options.tracebacks, "Show a traceback with each callback that fails");
  // Everything from the script on is the script's own, also what looks like an option.
  app.prefix_command();
  app.footer("SCRIPT [ARGS...] follows the options; - reads standard input.\n"
             "Without a script, on a terminal: a dialogue with history and completion.");

  try {
    app.parse(argc, argv);
    if (app.count("-e") != 0) options.chunk = chunk;
    splitWords(app.remaining(), options);
  } catch (const CLI::ParseError& error) {
    status = app.exit(error, std::cout, std::cerr) == 0 ? 0 : badUsage;
    return std::nullopt;
  }
  options.logLevel = logLevels.at(logLevel);
  options.plugin = !noPlugin;
  return options;
}
