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

/// The words behind the options: the script, unless a chunk takes its place, and its arguments.
bool splitWords(const std::vector<std::string>& words, Options& options)
{
  auto first = words.begin();
  if (!options.chunk) {
    if (first != words.end())
      options.script = *first++;
    else if (!isatty(STDIN_FILENO))
      options.script = "-";
    else
      return false;
  }
  options.arguments.assign(first, words.end());
  return true;
}

} // namespace

std::optional<Options> readOptions(int argc, char** argv, int& status)
{
  Options options;
  std::vector<std::string> words;
  bool noPlugin = false;
  std::string chunk;

  CLI::App app("Runs a Lua script in the kel multibody dynamics engine.", "kel");
  app.set_version_flag("--version", kelGetLibraryName() + std::string(" ") + kelGetVersion(true));
  app.add_option("-e", chunk, "Run this Lua code in place of a script")->type_name("CHUNK");
  app.add_option("--log-level", options.logLevel, "Least severe messages to show (default: warning)")
      ->transform(CLI::CheckedTransformer(logLevels, CLI::ignore_case))
      ->type_name("debug|info|warning|error");
  app.add_flag("--no-plugin", noPlugin, "Leave the kel tree out of the Lua state");
  app.add_flag("--traceback", options.tracebacks, "Show a traceback with each callback that fails");
  app.add_option("script", words, "The script, - for standard input, and its arguments")
      ->type_name("SCRIPT ARGS...");
  app.positionals_at_end();
  app.prefix_command();

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    status = app.exit(error, std::cout, std::cerr) == 0 ? 0 : badUsage;
    return std::nullopt;
  }
  const std::vector<std::string> rest = app.remaining();
  words.insert(words.end(), rest.begin(), rest.end());
  if (app.count("-e") != 0) options.chunk = chunk;
  options.plugin = !noPlugin;
  if (!splitWords(words, options)) {
    std::cerr << app.help();
    status = badUsage;
    return std::nullopt;
  }
  return options;
}
