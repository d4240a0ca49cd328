#pragma once
#include "kel/Referenced.h"
#include "kel/Types.h"
#include <cmath>

namespace kel {

/// Says how long a step is.
class TimeGovernor : public Referenced
{
public:
  /// Length of a step in s, 1/60 by default.
  explicit TimeGovernor(Real timeStep = 1.0 / 60) : m_timeStep(timeStep) {}
  virtual Real getTimeStep() const { return m_timeStep; }
  /// A length below 0 and one that is not finite are ignored.
  virtual void setTimeStep(Real timeStep)
  {
    if (timeStep >= 0 && std::isfinite(timeStep)) m_timeStep = timeStep;
  }

protected:
  ~TimeGovernor() override = default;

private:
  Real m_timeStep;
};

} // namespace kel
