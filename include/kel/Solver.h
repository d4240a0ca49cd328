#pragma once
#include "kel/Component.h"
#include "kel/Types.h"
#include <memory>

namespace kel {

class DynamicsSystem;

/// Finds the velocities at the end of a step from forces, contacts and constraints.
///
/// What touches or is bound together makes an island. Of its rows, those of the direct kind are solved
/// exactly and the others by sweeps (projected Gauss-Seidel). Constraints say which by their solve type; a
/// contact's normal forces are direct and its friction is iterative.
class Solver : public Component
{
public:
  Solver();

  /// Largest number of sweeps over the rows in a step, 50 at first; they end early when the rows are met.
  void setNumRestingIterations(UInt32 iterations) { m_numRestingIterations = iterations; }
  UInt32 getNumRestingIterations() const { return m_numRestingIterations; }
  /// Makes all rows iterative, whatever their kind; false at first.
  void setForceIterative(bool enable) { m_forceIterative = enable; }
  bool isForceIterative() const { return m_forceIterative; }
  /// Speed of approach above which a contact bounces, m/s, 0.1 at first.
  void setImpactSpeedThreshold(Real speed) { m_impactSpeedThreshold = speed; }
  Real getImpactSpeedThreshold() const { return m_impactSpeedThreshold; }

  /// Gives the bodies of a system the velocities at the end of a step of `timeStep` seconds. Forces go to
  /// contact points and elementary constraints.
  void solve(DynamicsSystem& system, Real timeStep);
  /// Rows of the last step, and the sweeps of the island that needed most.
  UInt32 getNumRows() const;
  UInt32 getNumSweeps() const;
  /// Rows that were solved exactly in the last step, and islands where rows of the direct kind were too many,
  /// or could not be solved so, and were swept over instead.
  UInt32 getNumDirectRows() const;
  UInt32 getNumFallbacks() const;
  String getImplementationName() const override { return "Solver"; }

protected:
  ~Solver() override;

private:
  class Step;

  std::unique_ptr<Step> m_step;
  UInt32 m_numRestingIterations = 50;
  Real m_impactSpeedThreshold = 0.1;
  bool m_forceIterative = false;
};

} // namespace kel
