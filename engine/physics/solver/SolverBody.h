#pragma once
#include "kel/RigidBody.h"
#include <Eigen/Core>

namespace kel {

/// A body in scaled coordinates for the length of a step.
///
/// With the mass matrix M and the factor F, F F^T = M^-1, the scaled velocity is w = F^-1 v and a scaled
/// Jacobian row is J F: an impulse along a row then changes w by the row itself, so that the solver needs no
/// masses.
struct SolverBody
{
  Real oldVelocity[6] = {};  ///< before the step: linear, angular
  Real freeVelocity[6] = {}; ///< after forces alone
  Real linearFactor = 0;     ///< sqrt(1/mass); 0 for what impulses do not move
  Real angularFactor[3][3] = {};
  bool isFinite = true;     ///< place, velocities and factors
  bool isStiffened = false; ///< has more than its inertia

  bool isMovable() const { return linearFactor > 0; }
  /// Starts a movable body, or one that moves whatever happens.
  void load(const RigidBody& body, const Vec3& gravity, Real timeStep);
  /// Velocity before the step along a Jacobian.
  Real oldSpeedAlong(const Vec3& linear, const Vec3& angular) const
  {
    return along(oldVelocity, linear, angular);
  }
  /// Velocity after forces alone along a Jacobian.
  Real freeSpeedAlong(const Vec3& linear, const Vec3& angular) const
  {
    return along(freeVelocity, linear, angular);
  }
  /// Adds to the inertia what makes up for a geometric stiffness K, N m/rad, that the step does not resolve
  /// (Tournier et al. 2015): h^2 |K| as far as it is above a part of the inertia, so that what swings within
  /// a step swings slower instead of gaining energy. The body keeps its velocity, but not where that would
  /// bring in energy: with the inertia of the last step it had `lastStiffening` times its true rotational
  /// energy.
  void stiffen(const Eigen::Matrix3d& stiffness, Real timeStep, Real lastStiffening);
  /// Scaled form of the free velocity, and unscaled form of a velocity.
  void scaleFreeVelocity(Real (&scaled)[6]) const;
  void unscale(const Real (&scaled)[6], Vec3& velocity, Vec3& angularVelocity) const;
  /// Scaled form of a Jacobian.
  void scaleRow(const Vec3& linear, const Vec3& angular, Real (&row)[6]) const;

private:
  static Real along(const Real (&v)[6], const Vec3& linear, const Vec3& angular)
  {
    return linear * Vec3(v[0], v[1], v[2]) + angular * Vec3(v[3], v[4], v[5]);
  }
  void loadForces(const RigidBody& body, const Vec3& gravity, Real timeStep);
};

} // namespace kel
