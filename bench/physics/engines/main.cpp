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

void printPile(int count)
{
  std::vector<bench::PileTimes> times;
  for (const bench::EngineKind& kind : bench::engineKinds())
    times.push_back(kind.isForPiles ? bench::timePile(kind, count) : bench::PileTimes{-1, -1});
  const auto row = [&](const char* text, double bench::PileTimes::*figure) {
    std::printf("| %-55s |", (std::to_string(count) + text).c_str());
    for (const bench::PileTimes& each : times)
      each.*figure < 0 ? std::printf("         - |") : std::printf(" %9.2f |", each.*figure);
    std::printf("\n");
  };
  row(" bodies in a pit, settled (ms a step)", &bench::PileTimes::settled);
  row(" bodies in a pit, worst step (ms)", &bench::PileTimes::worst);
}

} // namespace

int main(int argc, char** argv)
{
  CLI::App app("Compares the engine with others on the same scenes; errors and times, less is better.");
  std::string scene;
  std::vector<int> piles = {1000};
  app.add_option("--scene", scene, "Only the scenes whose names contain this text");
  app.add_option("--pile", piles, "Numbers of bodies in piles, 0 for none");
  CLI11_PARSE(app, argc, argv);

  std::printf("| %-55s |", "");
  for (const bench::EngineKind& kind : bench::engineKinds()) std::printf(" %9s |", kind.name);
  std::printf("\n|%s|", std::string(57, '-').c_str());
  for (std::size_t i = 0; i < bench::engineKinds().size(); ++i) std::printf("----------:|");
  std::printf("\n");
  printScenes(scene);
  for (const int count : piles)
    if (count > 0) printPile(count);
}
