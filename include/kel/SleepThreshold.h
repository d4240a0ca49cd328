#pragma once
#include "kel/Referenced.h"

namespace kel {

/// How slow is slow: what does not exceed any of four numbers is at rest. Kept as 32-bit numbers.
class SleepThreshold : public Referenced
{
public:
  explicit SleepThreshold(float velocity = 0.05F, float acceleration = 0.2F, float angularVelocity = 1e10F,
                          float angularAcceleration = 1e10F)
      : m_velocity(velocity), m_acceleration(acceleration), m_angularVelocity(angularVelocity),
        m_angularAcceleration(angularAcceleration)
  {}

  /// m/s, m/s2, rad/s, rad/s2.
  void setVelocity(float velocity) { m_velocity = velocity; }
  float getVelocity() const { return m_velocity; }
  void setAcceleration(float acceleration) { m_acceleration = acceleration; }
  float getAcceleration() const { return m_acceleration; }
  void setAngularVelocity(float velocity) { m_angularVelocity = velocity; }
  float getAngularVelocity() const { return m_angularVelocity; }
  void setAngularAcceleration(float acceleration) { m_angularAcceleration = acceleration; }
  float getAngularAcceleration() const { return m_angularAcceleration; }

  /// The squares, in 32-bit arithmetic.
  float getVelocity2() const { return m_velocity * m_velocity; }
  float getAcceleration2() const { return m_acceleration * m_acceleration; }
  float getAngularVelocity2() const { return m_angularVelocity * m_angularVelocity; }
  float getAngularAcceleration2() const { return m_angularAcceleration * m_angularAcceleration; }

protected:
  ~SleepThreshold() override = default;

private:
  float m_velocity;
  float m_acceleration;
  float m_angularVelocity;
  float m_angularAcceleration;
};

/// The same for bodies that may be merged and split.
class MergeSplitThreshold : public SleepThreshold
{
public:
  using SleepThreshold::SleepThreshold;

protected:
  ~MergeSplitThreshold() override = default;
};

/// The same with the time that bodies rest before they fall asleep.
class AutoSleepThreshold : public SleepThreshold
{
public:
  explicit AutoSleepThreshold(float velocity = 0.05F, float acceleration = 1e10F,
                              float angularVelocity = 0.05F, float angularAcceleration = 1e10F,
                              float time = 0.8F)
      : SleepThreshold(velocity, acceleration, angularVelocity, angularAcceleration), m_time(time)
  {}

  /// s
  void setTime(float time) { m_time = time; }
  float getTime() const { return m_time; }

protected:
  ~AutoSleepThreshold() override = default;

private:
  float m_time;
};

} // namespace kel
