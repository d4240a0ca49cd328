#pragma once
#include "kel/Referenced.h"
#include "kel/Types.h"

namespace kel {

/// Says how long a step is.
class TimeGovernor : public Referenced
{
public:
  /// Length of a step in s, 1/60 by default.
  explicit TimeGovernor(Real timeStep = 1.0 / 60) : m_timeStep(timeStep) {}
  virtual Real getTimeStep() const { return m_timeStep; }
  virtual void setTimeStep(Real timeStep) { m_timeStep = timeStep; }

protected:
  ~TimeGovernor() override = default;

private:
  Real m_timeStep;
};

} // namespace kel
