#include "kel/BuildConfiguration.h"
#include <algorithm>
#include <chrono>
#include <iterator>
#include <thread>

namespace kel {

namespace {

#ifdef __SSE2__
constexpr bool hasSse = true;
#else
constexpr bool hasSse = false;
#endif

#ifdef NDEBUG
constexpr bool isDebug = false;
#else
constexpr bool isDebug = true;
#endif

struct Feature
{
  const char* name;
  bool present;
};

// By the number of the enumerator.
constexpr Feature features[] = {
    {"USE_64BIT_ARCHITECTURE", sizeof(void*) == 8},
    {"LANCE_USE_METIS", false},
    {"USE_OPENGL_INSTANCING", false},
    {"USE_MEMORY_DEBUGGER", false},
    {"USE_PREFETCHING", false},
    {"USE_SSE", hasSse},
    {"USE_REAL_FLOAT", sizeof(Real) == sizeof(float)},
    {"LANCE_USE_SSE3", false},
    {"LANCE_USE_PADDING", false},
    {"USE_LUA", true},
    {"USE_TOLUA", true},
    {"USE_TINYXML", false},
    {"USE_OPENGL", false},
    {"USE_OSG", false},
    {"UNITTEST_ENABLED", false},
    {"USE_KELSENSOR", false},
    {"USE_PARTICLE_SYSTEM", false},
    {"USE_OPENCL", false},
    {"USE_DEBUG", isDebug},
    {"USE_COMPOSITE", false},
    {"WINDOWS_PLATFORM", false},
};
static_assert(std::size(features) == NUM_BUILD_CONFIGURATIONS);

// Any number can come in through a script, also a negative one.
const Feature* find(BuildConfiguration feature)
{
  const auto index = static_cast<unsigned int>(feature);
  return index < std::size(features) ? &features[index] : nullptr;
}

UInt64 now()
{
  const auto sinceEpoch = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<UInt64>(std::chrono::nanoseconds(sinceEpoch).count());
}

unsigned long s_numThreads = 1;
UInt64 s_startTick = now();

} // namespace

bool isBuiltWith(BuildConfiguration feature)
{
  const Feature* found = find(feature);
  return found && found->present;
}

const char* getBuildConfigurationString(BuildConfiguration feature)
{
  const Feature* found = find(feature);
  return found ? found->name : "";
}

void setNumThreads(unsigned long count)
{
  s_numThreads = count ? count : std::max(1U, std::thread::hardware_concurrency());
}

unsigned long getNumThreads() { return s_numThreads; }

UInt64 getStartTick() { return s_startTick; }

void resetStartTick() { s_startTick = now(); }

} // namespace kel
