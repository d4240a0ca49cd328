#include "solver/IslandSystem.h"
#include "kel/Solver.h"

namespace kel {

IslandSystem::IslandSystem(SolverBodies& bodies)
    : m_bodies(bodies), m_rows(bodies.bodies(), bodies.velocities()), m_contacts(bodies.bodies(), m_rows)
{}

void IslandSystem::begin(const Solver& solver, Real timeStep, bool allowDirectContacts)
{
  m_timeStep = timeStep;
  m_maxSweeps = solver.getNumRestingIterations();
  m_forceIterative = solver.isForceIterative();
  m_allowDirectContacts = allowDirectContacts;
  m_rows.clear();
  m_constraints.clear();
  m_constraintRows.clear();
  m_contacts.begin(timeStep, solver.getImpactSpeedThreshold(), allowDirectContacts && !m_forceIterative);
}

void IslandSystem::add(Constraint& constraint)
{
  const UInt32 solveType = m_forceIterative ? UInt32(Constraint::ITERATIVE) : constraint.getSolveType();
  const std::size_t begin = m_constraintRows.size();
  m_constraints.push_back({&constraint, begin});
  constraint.rows(m_timeStep, m_constraintRows);
  for (std::size_t i = begin; i < m_constraintRows.size(); ++i) {
    const ConstraintRow& row = m_constraintRows[i];
    const Index bodies[2] = {m_bodies.indexOf(row.bodies[0]), m_bodies.indexOf(row.bodies[1])};
    for (const Index body : bodies) m_bodies.setConstrained(body);
    m_contacts.addJoint(bodies[0], bodies[1]);
    // They start from nothing: the old impulses of a chain with a heavy end make it explode.
    m_rows.add(row, bodies[0], bodies[1], m_timeStep, 0, solveType);
  }
}

void IslandSystem::add(const kelCollide::GeometryContact& contact)
{
  const Index bodies[2] = {m_bodies.indexOf(contact.rigidBody(0)), m_bodies.indexOf(contact.rigidBody(1))};
  for (const Index body : bodies) m_bodies.setConstrained(body);
  m_contacts.add(contact, bodies);
}

void IslandSystem::solve()
{
  m_result = m_solver.solve(m_rows, m_maxSweeps);
  m_result.fellBack = m_result.fellBack || (!m_allowDirectContacts && !m_contacts.empty());
}

void IslandSystem::storeForces()
{
  m_forces.clear();
  for (Index row = 0; row < m_constraintRows.size(); ++row)
    m_forces.push_back(m_rows.getImpulse(row) / m_timeStep);
  std::span<const ConstraintRow> rows = m_constraintRows;
  std::span<const Real> forces = m_forces;
  for (std::size_t i = m_constraints.size(); i-- > 0;) {
    const auto& [constraint, begin] = m_constraints[i];
    constraint->storeForces(rows.subspan(begin), forces.subspan(begin));
    rows = rows.first(begin);
    forces = forces.first(begin);
  }
  m_contacts.storeImpulses();
}

} // namespace kel
