#pragma once
#include "kel/DynamicsSystem.h"
#include "solver/RowSystem.h"
#include "solver/SolverBody.h"
#include <vector>

namespace kel {

/// The bodies of a system for the length of a step. Their numbers are their places in the system, plus one:
/// number 0 is the world, and stands for all that does not move.
class SolverBodies
{
public:
  void load(const DynamicsSystem& system, Real timeStep);
  /// Number of a body: 0 for null and for one of another system.
  Index indexOf(const RigidBody* body) const;
  /// The same, 0 also for one that impulses do not move.
  Index movableIndexOf(const RigidBody* body) const;
  /// Whether a body may touch others: its numbers would become theirs.
  bool isFinite(const RigidBody* body) const { return m_bodies[indexOf(body)].isFinite; }
  /// Notes that rows act on a body.
  void setConstrained(Index body) { m_constrained[body] = 1; }
  /// Gives the bodies their velocities at the end of the step.
  void store() const;

  std::size_t size() const { return m_bodies.size(); }
  const std::vector<SolverBody>& bodies() const { return m_bodies; }
  std::vector<ScaledVelocity>& velocities() { return m_velocities; }

private:
  /// Stiffens the bodies that joints hold by the forces of the last step.
  void stiffen();
  void addStiffness(const Constraint& constraint, std::size_t side);

  const DynamicsSystem* m_system = nullptr;
  Real m_timeStep = 0;
  std::vector<SolverBody> m_bodies;
  std::vector<ScaledVelocity> m_velocities;
  std::vector<char> m_constrained;
  std::vector<Eigen::Matrix3d> m_stiffnesses; // of the bodies, while there are joints
};

} // namespace kel
