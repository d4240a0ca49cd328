#pragma once
#include "kel/Types.h"
#include <chrono>

namespace kel {

/// A stopwatch that counts ticks of a length, given as a ratio of a second, on a clock that never goes back.
template <class Period> class TickTimer
{
public:
  /// A timer at 0, which runs at once or not.
  explicit TickTimer(bool start = false) { reset(start); }

  /// Lets the timer run on; does nothing if it runs.
  void start()
  {
    if (m_running) return;
    m_running = true;
    m_start = now();
  }
  /// Stops the timer and keeps its time; does nothing if it stands.
  void stop()
  {
    if (!m_running) return;
    m_running = false;
    m_accumulated = elapsed();
  }
  /// Goes back to 0, and runs on or stands.
  void reset(bool start = false)
  {
    m_accumulated = 0;
    m_running = start;
    m_start = start ? now() : 0;
  }
  /// The time that the timer has run, s.
  Real getTime() const { return static_cast<Real>(m_running ? elapsed() : m_accumulated) * TICK; }
  /// The ticks up to the last stop, also while the timer runs.
  UInt64 getNumTicks() const { return m_accumulated; }
  bool isRunning() const { return m_running; }

protected:
  /// Length of a tick, s.
  static constexpr Real TICK = static_cast<Real>(Period::num) / static_cast<Real>(Period::den);

private:
  static UInt64 now()
  {
    using Ticks = std::chrono::duration<UInt64, Period>;
    return std::chrono::duration_cast<Ticks>(std::chrono::steady_clock::now().time_since_epoch()).count();
  }
  UInt64 elapsed() const { return now() + m_accumulated - m_start; }

  UInt64 m_start = 0;
  UInt64 m_accumulated = 0;
  bool m_running = false;
};

/// A stopwatch in microseconds.
class Timer : public TickTimer<std::micro>
{
public:
  using TickTimer::TickTimer;
  /// Length of a tick, s.
  static constexpr Real s_clockSpeed = TICK;
};

} // namespace kel
