#pragma once
#include "kel/Types.h"

namespace kel {

/// Features that a build of the library has or lacks.
enum BuildConfiguration
{
  USE_64BIT_ARCHITECTURE,
  LANCE_USE_METIS,
  USE_OPENGL_INSTANCING,
  USE_MEMORY_DEBUGGER,
  USE_PREFETCHING,
  USE_SSE,
  USE_REAL_FLOAT,
  LANCE_USE_SSE3,
  LANCE_USE_PADDING,
  USE_LUA,
  USE_TOLUA,
  USE_TINYXML,
  USE_OPENGL,
  USE_OSG,
  UNITTEST_ENABLED,
  USE_KELSENSOR,
  USE_PARTICLE_SYSTEM,
  USE_OPENCL,
  USE_DEBUG,
  USE_COMPOSITE,
  WINDOWS_PLATFORM,
  NUM_BUILD_CONFIGURATIONS
};

/// Whether this build has the feature; false for a number that names none.
bool isBuiltWith(BuildConfiguration feature);
/// Name of the feature as in the enumeration, a text that stays; empty for a number that names none.
const char* getBuildConfigurationString(BuildConfiguration feature);

/// Sets how many threads the engine may use, at least 1; 0 stands for one a processor. Bodies
/// that touch, or are bound together, are solved on one thread, and the results are the same bits for any
/// number.
void setNumThreads(unsigned long count);
/// The number of threads that the engine may use.
unsigned long getNumThreads();

/// When the library was loaded or `resetStartTick` was last called, in nanoseconds of the monotonic clock.
UInt64 getStartTick();
/// Makes now the start tick.
void resetStartTick();

} // namespace kel
