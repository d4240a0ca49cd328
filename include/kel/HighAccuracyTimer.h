#pragma once
#include "kel/Timer.h"

namespace kel {

/// A stopwatch in nanoseconds.
class HighAccuracyTimer : public TickTimer<std::nano>
{
public:
  using TickTimer::TickTimer;
  /// Length of a tick, s.
  static constexpr Real s_highAccuracyClockSpeed = TICK;
};

} // namespace kel
