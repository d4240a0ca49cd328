#pragma once
#include "kel/Vec3.h"
#include <limits>

namespace kel {

class RigidBody;

/// One scalar condition on the motion of two bodies for one step. With the Jacobian J, the bodies' velocities
/// v' after the step and the impulse lambda it reads `J v' + sigma * lambda = b`. Units are given for a
/// condition on a length; for one on an angle read rad for m and N m for N.
struct ConstraintRow
{
  /// What decides sigma and b, with violation g, compliance e, damping time t and time step h.
  enum Form
  {
    /// Holonomic, averaged over the step (Lacoursiere 2007): y = 1/(1 + 4t/h), sigma = 4ey/h^2,
    /// b = -(4y/h) g + y J v, v before the step. Loses least energy.
    AVERAGED,
    /// Holonomic, at the end of the step: sigma = e/(h(h + t)), b = -g/(h + t).
    BACKWARD,
    /// On the velocity: sigma = e/h, b = the target speed.
    NON_HOLONOMIC
  };

  static constexpr Real DEFAULT_DAMPING = 1.0 / 60;

  Form form = AVERAGED;
  /// The bodies; null is the world, which does not move.
  const RigidBody* bodies[2] = {nullptr, nullptr};
  /// The Jacobian for the velocities of the centres of mass.
  Vec3 linear[2];
  /// The Jacobian for the angular velocities, m.
  Vec3 angular[2];
  /// Violation g in m, or the target speed in m/s of a non-holonomic row.
  Real target = 0;
  /// Compliance e, m/N (non-holonomic: m/(N s)).
  Real compliance = 1e-10;
  /// Damping time t, s: a violation goes within some multiples of it. Below 0 nobody chose one: it is the
  /// time step where that does not resolve the row's spring, so that finer steps hold joints tighter, and
  /// `DEFAULT_DAMPING` for softer rows.
  Real damping = -1;
  /// Least sigma, over the inverse of the mass that the row moves: what contradicts stiffer rows gives way.
  Real softness = 0;
  /// Bounds of the force, N.
  Real lowerForce = -std::numeric_limits<Real>::infinity();
  Real upperForce = std::numeric_limits<Real>::infinity();
  /// Where the solver puts the force that it found, N; null if nobody asks.
  Real* force = nullptr;
};

} // namespace kel
