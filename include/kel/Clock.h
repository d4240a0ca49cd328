#pragma once
#include "kel/Component.h"
#include "kel/TimeStamp.h"

namespace kel {

/// Time of a simulation.
class Clock : public Component
{
public:
  /// A clock at time 0, whose ticks come with a frequency in Hz.
  explicit Clock(const Name& name, Real frequency = 60) : Component(name), m_frequency(frequency) {}

  /// Time in s.
  TimeStamp getTime() const { return m_time; }
  /// Sets the time without a tick.
  void stepTo(TimeStamp time) { m_time = time; }
  /// Moves the time on by a step in s and counts a tick.
  void stepForward(Real timeStep)
  {
    m_time += timeStep;
    m_timeStep = timeStep;
    ++m_frame;
  }
  /// The ticks so far.
  UInt32 getFrame() const { return m_frame; }
  /// Length of the last tick, s; that of the frequency before the first one.
  Real getTimeStep() const { return m_frame ? m_timeStep : 1 / m_frequency; }
  /// Ticks a second, Hz.
  Real getFrequency() const { return m_frequency; }
  void setFrequency(Real frequency) { m_frequency = frequency; }
  String getImplementationName() const override { return "Clock"; }

protected:
  ~Clock() override = default;

private:
  Real m_frequency;
  TimeStamp m_time = 0;
  Real m_timeStep = 0;
  UInt32 m_frame = 0;
};

} // namespace kel
