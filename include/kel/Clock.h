#pragma once
#include "kel/Task.h"
#include "kel/TimeStamp.h"

namespace kel {

/// Time that goes on in frames. A clock may have slaves, which go on with it at their own frequency and rate,
/// and tasks, which run in each of its frames.
class Clock : public Component
{
public:
  /// A clock at time 0, with a frequency in Hz; see `setFrequency`.
  explicit Clock(const Name& name, Real frequency = 60);

  /// Makes a frame of the modulated length of a period: time modulation over frequency. Tasks run in it
  /// unless told otherwise. As all frames, it does nothing while the clock is disabled.
  void tick(bool runTasks = true);
  /// Makes a frame that ends at a time, s, before or after now; does nothing if that is not finite.
  void stepTo(TimeStamp time);
  /// Makes a frame of a length, s, which is not modulated; does nothing if that is not finite.
  void stepForward(Real timeStep);
  /// Sets the time, s, without a frame.
  void setTime(TimeStamp time) { m_time = time; }

  /// Takes a reference on a task that runs in each frame from now on, after the time has changed. Does
  /// nothing for null and for a task that it has.
  void addFrameTask(Task* task);
  /// Lets a task go; does nothing for one that it does not have.
  void removeFrameTask(Task* task);

  /// Takes a reference on a clock that goes on with this one from now on, and no longer with another one.
  /// When the frames of this clock have gone on by at least a period of the slave, the slave makes one frame
  /// of as many periods as fit in. Does nothing for null, for this clock and for one that it follows itself.
  void addSlave(Clock* slave);
  /// Lets a slave go; does nothing for a clock that is none.
  void removeSlave(Clock* slave);
  /// The clock that this one is a slave of, null for none. Not owned.
  Clock* getReference() const { return m_reference; }

  /// Time, s.
  TimeStamp getTime() const { return m_time; }
  /// The frames so far, modulo 2^32.
  UInt32 getFrame() const { return m_frame; }
  /// Length of the last frame, s; that of a tick after the frequency or the modulation has been set.
  Real getTimeStep() const { return m_timeStep; }
  /// Whether the clock makes frames; true at first.
  void setEnable(bool enable) { m_enabled = enable; }
  bool isEnabled() const { return m_enabled; }
  /// Ticks a second, Hz: of time that is not modulated. One that is not above 0 or not finite is ignored.
  void setFrequency(Real frequency);
  Real getFrequency() const { return m_frequency; }
  /// Seconds of this clock to a second of its ticks or of the clock that it follows, 1 at first: 0.5 is slow
  /// motion. One below 0 or not finite is ignored.
  void setTimeModulation(Real modulation);
  Real getTimeModulation() const { return m_modulation; }
  String getImplementationName() const override { return "Clock"; }

protected:
  ~Clock() override;

private:
  /// A clock that has made a frame, with its length.
  struct Move
  {
    ref_ptr<Clock> clock;
    Real timeStep;
  };

  void makeFrame(TimeStamp time, Real timeStep, bool runTasks);
  void moveOn(TimeStamp time, Real timeStep, bool runTasks);
  void moveSlaves(Real elapsed, bool runTasks, std::vector<Move>& moved) const;
  Real takePeriods(Real elapsed);

  Real m_frequency = 60;
  Real m_modulation = 1;
  TimeStamp m_time = 0;
  Real m_timeStep = 1.0 / 60;
  UInt32 m_frame = 0;
  bool m_enabled = true;
  std::vector<ref_ptr<Task>> m_tasks;
  std::vector<ref_ptr<Clock>> m_slaves;
  Clock* m_reference = nullptr;
  Real m_waiting = 0; // s of the reference that no frame has covered
};

} // namespace kel
