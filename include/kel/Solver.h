#pragma once
#include "kel/Component.h"
#include "kel/Types.h"
#include <memory>

namespace kel {

class DynamicsSystem;

/// Finds the velocities at the end of a step from forces, contacts and constraints.
class Solver : public Component
{
public:
  Solver();

  /// Largest number of sweeps over the rows in a step, 50 at first; they end early when the rows are met.
  void setNumRestingIterations(UInt32 iterations) { m_numRestingIterations = iterations; }
  UInt32 getNumRestingIterations() const { return m_numRestingIterations; }
  /// Speed of approach above which a contact bounces, m/s, 0.1 at first.
  void setImpactSpeedThreshold(Real speed) { m_impactSpeedThreshold = speed; }
  Real getImpactSpeedThreshold() const { return m_impactSpeedThreshold; }

  /// Gives the bodies of a system the velocities at the end of a step of `timeStep` seconds. Forces go to
  /// contact points and elementary constraints.
  void solve(DynamicsSystem& system, Real timeStep);
  /// Rows of the last step, and the sweeps of the island that needed most.
  UInt32 getNumRows() const;
  UInt32 getNumSweeps() const;
  String getImplementationName() const override { return "Solver"; }

protected:
  ~Solver() override;

private:
  class Step;

  std::unique_ptr<Step> m_step;
  UInt32 m_numRestingIterations = 50;
  Real m_impactSpeedThreshold = 0.1;
};

} // namespace kel
