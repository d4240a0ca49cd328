#pragma once
#include "kel/Constraint.h"
#include "kelCollide/GeometryContact.h"
#include "solver/ContactConstraints.h"
#include "solver/SolverBodies.h"
#include "solver/SplitSolver.h"
#include <vector>

namespace kel {

/// The constraints and contacts of an island with their rows. Islands share no body that moves, so they can
/// be solved side by side.
class IslandSystem
{
public:
  explicit IslandSystem(SolverBodies& bodies);

  /// Starts a step of `timeStep` seconds without rows.
  void begin(const Solver& solver, Real timeStep, bool allowDirectContacts);
  /// Adds the rows of a constraint, all of them before the first contact.
  void add(Constraint& constraint);
  void add(const kelCollide::GeometryContact& contact);
  /// Solves the rows, which touches nothing but the velocities of the island's bodies.
  void solve();
  /// Hands the forces to the constraints and contacts.
  void storeForces();

  const SplitSolver::Result& getResult() const { return m_result; }
  UInt32 getNumRows() const { return m_rows.getNumRows(); }

private:
  /// A constraint of the island and its first row.
  struct ConstraintRows
  {
    Constraint* constraint;
    std::size_t begin;
  };

  SolverBodies& m_bodies;
  RowSystem m_rows;
  ContactConstraints m_contacts;
  SplitSolver m_solver;
  SplitSolver::Result m_result;
  std::vector<ConstraintRows> m_constraints;
  std::vector<ConstraintRow> m_constraintRows; // of these, in their order: the first rows of the island
  std::vector<Real> m_forces;                  // of these rows, N
  Real m_timeStep = 0;
  UInt32 m_maxSweeps = 0;
  bool m_forceIterative = false;
  bool m_allowDirectContacts = true;
};

} // namespace kel
