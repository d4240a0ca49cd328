#include "scenes.h"
#include <algorithm>
#include <chrono>
#include <random>
#include <vector>

namespace bench {

namespace {

constexpr double RADIUS = 0.25; // m, also half the edge of a box
constexpr double TIME_STEP = 1.0 / 60;
constexpr int STEPS = 500;
constexpr int SLEEPY_STEPS = 1500;
constexpr int MEASURED = 100; // the last ones

/// Boxes, or boxes and spheres by turns, on a loose grid above a pit.
void fill(Engine& engine, int count, bool withSpheres)
{
  const double reach = count <= 1000 ? 2.5 : 5; // half the width of the pit, m
  engine.addPlane(kel::Vec3(0, 0, 1), 0);
  for (const kel::Vec3& normal :
       {kel::Vec3(1, 0, 0), kel::Vec3(-1, 0, 0), kel::Vec3(0, 1, 0), kel::Vec3(0, -1, 0)})
    engine.addPlane(normal, -reach);
  std::mt19937 random(3); // the same in every engine
  const auto jitter = [&random] { return 0.05 * static_cast<double>(random() % 100) / 100; };
  const int side = static_cast<int>((2 * reach - 0.2) / 0.6);
  for (int i = 0; i < count; ++i) {
    const double x = -reach + 0.4 + 0.6 * (i % side) + jitter();
    const double y = -reach + 0.4 + 0.6 * (i / side % side) + jitter();
    const kel::Vec3 place(x, y, 0.4 + 0.6 * (i / side / side));
    if (i % 2 == 1 || !withSpheres)
      engine.addBox(kel::Vec3(RADIUS), 1, place, kel::Quat());
    else
      engine.addSphere(RADIUS, 1, place);
  }
}

/// Milliseconds of each of some steps.
std::vector<double> timeSteps(Engine& engine, int count)
{
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    engine.step();
    times.push_back(
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count());
  }
  return times;
}

double medianOfLast(std::vector<double> times)
{
  std::nth_element(times.end() - MEASURED, times.end() - MEASURED / 2, times.end());
  return *(times.end() - MEASURED / 2);
}

} // namespace

PileTimes timePile(const EngineKind& kind, int count)
{
  const auto engine = kind.make(TIME_STEP, {});
  fill(*engine, count, true);
  const std::vector<double> times = timeSteps(*engine, STEPS);
  const double worst = *std::max_element(times.begin(), times.end());
  return {medianOfLast(times), worst};
}

double timeSleep(const EngineKind& kind, int count)
{
  const auto engine = kind.make(TIME_STEP, {});
  fill(*engine, count, false);
  engine->allowSleep();
  return medianOfLast(timeSteps(*engine, SLEEPY_STEPS));
}

} // namespace bench
