// How true and how fast the engines are on the same scenes, as a table.
#include "scenes.h"
#include <CLI/CLI.hpp>
#include <cstdio>
#include <string>

namespace {

void printScenes(const std::string& text)
{
  for (const bench::Scene& scene : bench::scenes()) {
    const std::string name = std::string(scene.name) + " (" + scene.unit + ")";
    if (name.find(text) == std::string::npos) continue;
    std::printf("| %-55s |", name.c_str());
    for (const bench::EngineKind& kind : bench::engineKinds()) {
      std::printf(" %9.3g |", scene.run(kind));
      std::fflush(stdout);
    }
    std::printf("\n");
  }
}

/// A row of times in ms, "-" for engines that are too slow for it.
void printTimes(const std::string& name, const std::vector<double>& times)
{
  std::printf("| %-55s |", name.c_str());
  for (const double time : times) time < 0 ? std::printf("         - |") : std::printf(" %9.2f |", time);
  std::printf("\n");
}

void printPile(int count)
{
  std::vector<double> settled;
  std::vector<double> worst;
  for (const bench::EngineKind& kind : bench::engineKinds()) {
    const auto times = kind.isForPiles ? bench::timePile(kind, count) : bench::PileTimes{-1, -1};
    settled.push_back(times.settled);
    worst.push_back(times.worst);
  }
  printTimes(std::to_string(count) + " bodies in a pit, settled (ms a step)", settled);
  printTimes(std::to_string(count) + " bodies in a pit, worst step (ms)", worst);
}

void printSleep(int count)
{
  std::vector<double> times;
  for (const bench::EngineKind& kind : bench::engineKinds())
    times.push_back(kind.isForPiles ? bench::timeSleep(kind, count) : -1);
  printTimes(std::to_string(count) + " boxes in a pit, free to sleep (ms a step)", times);
}

} // namespace

int main(int argc, char** argv)
{
  CLI::App app("Compares the engine with others on the same scenes; errors and times, less is better.");
  std::string scene;
  std::vector<int> piles = {1000};
  std::vector<int> sleepers = {1000};
  app.add_option("--scene", scene, "Only the scenes whose names contain this text");
  app.add_option("--pile", piles, "Numbers of bodies in piles, 0 for none");
  app.add_option("--sleep", sleepers, "Numbers of boxes in piles that may sleep, 0 for none");
  CLI11_PARSE(app, argc, argv);

  std::printf("| %-55s |", "");
  for (const bench::EngineKind& kind : bench::engineKinds()) std::printf(" %9s |", kind.name);
  std::printf("\n|%s|", std::string(57, '-').c_str());
  for (std::size_t i = 0; i < bench::engineKinds().size(); ++i) std::printf("----------:|");
  std::printf("\n");
  printScenes(scene);
  for (const int count : piles)
    if (count > 0) printPile(count);
  for (const int count : sleepers)
    if (count > 0) printSleep(count);
}
