#pragma once
#include "kel/DynamicsSystem.h"
#include "kelCollide/GeometryContact.h"
#include "solver/ContactConstraints.h"
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
  Step() : m_rows(m_bodies, m_velocities), m_contactConstraints(m_bodies, m_rows) {}

  void solve(const Solver& solver, DynamicsSystem& system, Real timeStep);

  UInt32 numRows = 0;
  UInt32 numSweeps = 0;
  UInt32 numDirectRows = 0;
  UInt32 numFallbacks = 0;

private:
  /// A constraint of the island and its first row.
  struct ConstraintRows
  {
    Constraint* constraint;
    std::size_t begin;
  };

  void loadBodies(const DynamicsSystem& system);
  void findIslands();
  void solveIsland(std::size_t island);
  /// Rows that an island gives to a direct solution.
  std::size_t countDirectRows(std::span<const Index> items) const;
  void addConstraint(Constraint& constraint);
  void addContact(const kelCollide::GeometryContact& contact);
  void storeForces();
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
  ContactConstraints m_contactConstraints;
  /// Of the islands; each knows what its island has in common with the one of the last step.
  std::deque<SplitSolver> m_solvers;
  std::vector<ConstraintRows> m_constraints;
  std::vector<ConstraintRow> m_constraintRows; // of these, in their order: the first rows of the island
  std::vector<Real> m_forces;                  // of these rows, N
};

} // namespace kel
