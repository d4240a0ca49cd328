#pragma once
#include "Engine.h"
#include <span>

namespace bench {

/// A figure that tells how true or how fast an engine is; less is better.
struct Scene
{
  const char* name;
  const char* unit;
  double (*run)(const EngineKind& kind);
};

std::span<const Scene> scenes();

/// Milliseconds a step of boxes and spheres in a pit.
struct PileTimes
{
  double settled; ///< Median of the last 100 of 500 steps.
  double worst;
};
PileTimes timePile(const EngineKind& kind, int count);
/// Milliseconds a step of boxes in a pit that may sleep, median of the last 100 of 1500 steps.
double timeSleep(const EngineKind& kind, int count);

} // namespace bench
