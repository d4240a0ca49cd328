#pragma once
#include "kel/DynamicsSystem.h"
#include "kelCollide/GeometryContact.h"
#include "solver/Islands.h"
#include "solver/RowSystem.h"
#include "solver/SplitSolver.h"
#include <deque>
#include <vector>

namespace kel {

/// The solution of one step; the memory is kept for the next.
class Solver::Step
{
public:
  Step() : m_rows(m_bodies, m_velocities) {}

  void solve(const Solver& solver, DynamicsSystem& system, Real timeStep);

  UInt32 numRows = 0;
  UInt32 numSweeps = 0;
  UInt32 numDirectRows = 0;
  UInt32 numFallbacks = 0;

private:
  /// Where the impulse of a constraint's row goes.
  struct ForceTarget
  {
    Index row;
    Real* force;
  };
  /// Where the impulses of a contact point go.
  struct PointTarget
  {
    Index normal;
    Index friction;
    Index pointRow;
  };

  void loadBodies(const DynamicsSystem& system);
  void findIslands();
  void solveIsland(std::size_t island);
  /// Rows that an island gives to a direct solution.
  std::size_t countDirectRows(std::span<const Index> items) const;
  void addConstraint(const Constraint& constraint);
  void addContact(const kelCollide::GeometryContact& contact);
  void addContactPoint(Index pointRow, const RigidBody* const (&bodies)[2], Real friction, Real restitution);
  /// Makes the row of a contact's normal bounce, if the surfaces meet fast enough.
  void applyRestitution(ConstraintRow& normal, const Index (&bodies)[2], Real depth, Real restitution) const;
  void storeImpulses();
  void storeVelocities();
  /// Number of a body among the solver's: 0 for one that does not move.
  Index indexOf(const RigidBody* body) const;
  /// The same, 0 also for one that impulses do not move.
  Index movableIndexOf(const RigidBody* body) const;
  /// Whether a body may touch others: its numbers would become theirs.
  bool isFinite(const RigidBody* body) const;

  const Solver* m_solver = nullptr;
  DynamicsSystem* m_system = nullptr;
  Real m_timeStep = 0;
  std::vector<SolverBody> m_bodies; // the world, then the system's bodies in their order
  std::vector<ScaledVelocity> m_velocities;
  std::vector<Index> m_inIsland;
  std::vector<kelCollide::GeometryContact> m_contacts; // those that act
  Islands m_islands;
  RowSystem m_rows;
  std::deque<SplitSolver>
      m_solvers; // of the islands; they keep what islands have in common with the last step's
  bool m_contactsIterative = false; // in this island
  std::vector<ConstraintRow> m_buffer;
  std::vector<ForceTarget> m_forceTargets;
  std::vector<PointTarget> m_pointTargets;
};

} // namespace kel
