// How fast scripts call the engine: our wrappers against a binding written by hand and against the binding
// library's own wrappers, in one run.
#include "Process.h"
#include "Session.h"
#include "kel/Logger.h"
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace {

using namespace bench;

struct Options
{
  std::string row;
  int passes = 31;
  long operations = 0;
  double length = 5; // ms; short passes side by side meet the same load
  bool csv = false;
  bool list = false;
};

constexpr std::size_t COUNT = BINDINGS.size();
using Sessions = std::array<std::unique_ptr<Session>, COUNT>;
using Times = std::array<double, COUNT>;

/// How many operations make a pass that is long enough. The last trial is the warm-up too.
long calibrated(Session& session, const Options& options)
{
  if (options.operations > 0) return options.operations;
  long count = 1000;
  double time = session.time(count);
  while (time < options.length * 1e6 / 4 && count < 1'000'000'000) time = session.time(count *= 2);
  return std::max(1000L, static_cast<long>(static_cast<double>(count) * options.length * 1e6 / time));
}

/// ns an operation; null for the empty loop.
Times measure(const Sessions& sessions, const Row* row, const Options& options)
{
  std::array<long, COUNT> counts{};
  std::array<std::vector<double>, COUNT> passes;
  for (std::size_t i = 0; i < COUNT; ++i) {
    sessions[i]->prepare(row);
    counts[i] = calibrated(*sessions[i], options);
  }
  for (int pass = 0; pass < options.passes; ++pass)
    for (std::size_t i = 0; i < COUNT; ++i)
      passes[i].push_back(sessions[i]->time(counts[i]) / static_cast<double>(counts[i]));
  Times times;
  for (std::size_t i = 0; i < COUNT; ++i) times[i] = median(passes[i]);
  return times;
}

/// All bindings must do the same, or their times say nothing.
void compare(const Sessions& sessions, const Row& row)
{
  const std::string expected = sessions[0]->result(row);
  for (std::size_t i = 1; i < COUNT; ++i) {
    const std::string result = sessions[i]->result(row);
    if (result == expected) continue;
    std::string text = row.name;
    text.append(": ").append(expected).append(" in ").append(sessions[0]->name());
    throw std::runtime_error(text.append(", ").append(result).append(" in ").append(sessions[i]->name()));
  }
}

/// The ratio as text; "-" where the compiler of Lua left nothing to measure.
std::string ratio(double a, double b)
{
  constexpr double shortest = 0.5; // ns
  if (a < shortest || b < shortest) return "-";
  char text[32];
  std::snprintf(text, sizeof text, "%.2f", a / b);
  return text;
}

void print(const Row& row, const Times& times, bool csv)
{
  const auto [ours, limit, stock] = times;
  const char* format = csv ? "\"%s\",%.1f,%.1f,%.1f,%s,%s\n" : "%-38s %9.1f %9.1f %9.1f %9s %11s\n";
  std::string name = row.name;
  if (csv)
    for (std::size_t i = 0; (i = name.find('"', i)) != std::string::npos; i += 2) name.insert(i, 1, '"');
  std::printf(format, name.c_str(), ours, limit, stock, ratio(ours, limit).c_str(),
              ratio(stock, ours).c_str());
  std::fflush(stdout);
}

void printRows(const Sessions& sessions, const Options& options)
{
  std::printf(options.csv ? "%s,%s,%s,%s,%s,%s\n" : "%-38s %9s %9s %9s %9s %11s\n", "row", "ours ns", "C ns",
              "stock ns", "ours/C", "stock/ours");
  const Times empty = measure(sessions, nullptr, options);
  for (const Row& row : rows()) {
    if (std::string(row.name).find(options.row) == std::string::npos) continue;
    compare(sessions, row);
    Times times = measure(sessions, &row, options);
    if (row.kind != Row::EVENT)
      for (std::size_t i = 0; i < COUNT; ++i) times[i] -= empty[i];
    print(row, times, options.csv);
  }
}

Sessions openSessions()
{
  Sessions sessions;
  for (std::size_t i = 0; i < COUNT; ++i) sessions[i] = std::make_unique<Session>(*BINDINGS[i]);
  return sessions;
}

void printKeptValues(const Sessions& sessions)
{
  constexpr int kept = 100'000;
  std::printf("\nbytes of a kept kel.Vec3:");
  const char* separator = " ";
  for (const auto& session : sessions) {
    const KeptValue value = keptValue(*session, kept);
    std::printf("%s%s %.0f (process %.0f)", separator, session->name(), value.lua, value.process);
    separator = ", ";
  }
  std::printf("\n");
}

void run(const Options& options)
{
  if (options.list) {
    for (const Row& row : rows()) std::printf("%s\n", row.name);
    return;
  }
  const double first = openingTime();
  {
    const Sessions sessions = openSessions();
    int size = 0;
    for (const auto& session : sessions) {
      session->run(OBJECTS);
      size = std::max(size, session->kilobytes());
    }
    for (const auto& session : sessions) session->growTo(size);
    printRows(sessions, options);
  }
  if (!options.row.empty() || options.csv) return;
  // After the rows, which should find a young heap.
  printKeptValues(openSessions());
  printOpening(first, options.passes);
  printEmptyScript(options.passes);
}

} // namespace

int main(int argc, char** argv)
{
  Options options;
  CLI::App app("Measures how fast scripts call the engine.");
  app.add_option("--row", options.row, "Only the rows whose names contain this text");
  app.add_option("--passes", options.passes, "Passes of which the median counts")->check(CLI::PositiveNumber);
  app.add_option("--ms", options.length, "Length of a pass in milliseconds")->check(CLI::PositiveNumber);
  app.add_option("--ops", options.operations, "Operations of a pass, in place of a length")
      ->check(CLI::PositiveNumber);
  app.add_flag("--csv", options.csv, "The table alone, as comma-separated values");
  app.add_flag("--list", options.list, "Only print the names of the rows");
  CLI11_PARSE(app, argc, argv);

  kel::Logger::instance().setLevel(kel::Notify::NOTIFY_ERROR);
  try {
    run(options);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
