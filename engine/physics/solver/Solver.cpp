#include "kel/Solver.h"
#include "body/BodyRows.h"
#include "kelCollide/Space.h"
#include "solver/SolverStep.h"
#include <algorithm>

namespace kel {

using kelCollide::GeometryContact;

namespace {
/// Above this many direct rows an island's contacts are solved by iteration: the direct solution of a heap
/// costs more than it is worth.
constexpr std::size_t MAX_DIRECT_ROWS_WITH_CONTACTS = 600;
} // namespace

Solver::Solver() : Component("Solver"), m_step(std::make_unique<Step>()) {}

Solver::~Solver() = default;

void Solver::solve(DynamicsSystem& system, Real timeStep) { m_step->solve(*this, system, timeStep); }

UInt32 Solver::getNumRows() const { return m_step->numRows; }

UInt32 Solver::getNumSweeps() const { return m_step->numSweeps; }

UInt32 Solver::getNumDirectRows() const { return m_step->numDirectRows; }

UInt32 Solver::getNumFallbacks() const { return m_step->numFallbacks; }

void Solver::Step::solve(const Solver& solver, DynamicsSystem& system, Real timeStep)
{
  m_solver = &solver;
  m_system = &system;
  m_timeStep = timeStep;
  numRows = numSweeps = numDirectRows = numFallbacks = 0;
  m_contactConstraints.begin(timeStep, solver.getImpactSpeedThreshold());
  loadBodies(system);
  findIslands();
  m_solvers.resize(m_islands.size());
  for (std::size_t island = 0; island < m_islands.size(); ++island) solveIsland(island);
  storeVelocities();
  if (system.getSpace()) system.getSpace()->storeContactImpulses();
}

void Solver::Step::loadBodies(const DynamicsSystem& system)
{
  const auto& bodies = system.getRigidBodies();
  m_bodies.assign(bodies.size() + 1, SolverBody());
  m_velocities.assign(bodies.size() + 1, ScaledVelocity());
  m_inIsland.assign(bodies.size() + 1, 0);
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    const RigidBody& body = *bodies[i];
    if (!body.getEnable() || body.getMotionControl() == RigidBody::STATIC) continue;
    SolverBody& solverBody = m_bodies[i + 1];
    solverBody.load(body, system.getUniformGravity(), m_timeStep);
    if (solverBody.isMovable()) solverBody.scaleFreeVelocity(m_velocities[i + 1].v);
  }
}

Index Solver::Step::indexOf(const RigidBody* body) const
{
  return body && body->getSystem() == m_system ? DynamicsSystem::indexOf(*body) + 1 : 0;
}

Index Solver::Step::movableIndexOf(const RigidBody* body) const
{
  const Index index = indexOf(body);
  return m_bodies[index].isMovable() ? index : 0;
}

bool Solver::Step::isFinite(const RigidBody* body) const { return m_bodies[indexOf(body)].isFinite; }

void Solver::Step::findIslands()
{
  m_islands.reset(m_bodies.size());
  for (const auto& constraint : m_system->getConstraints()) {
    Index last = 0;
    const bool acts = constraint->getEnable() && constraint->getValid();
    for (std::size_t i = 0; acts && i < constraint->getNumBodies(); ++i) {
      const Index node = movableIndexOf(constraint->getBodyAt(i));
      m_islands.join(last, node);
      if (node) last = node;
    }
    m_islands.addItem(last);
  }
  m_contacts.clear();
  if (const kelCollide::Space* space = m_system->getSpace()) {
    for (const GeometryContact& contact : space->getGeometryContacts()) {
      if (!contact.isEnabled() || contact.geometry(0)->isSensor() || contact.geometry(1)->isSensor())
        continue;
      if (!isFinite(contact.rigidBody(0)) || !isFinite(contact.rigidBody(1))) continue;
      const Index node1 = movableIndexOf(contact.rigidBody(0));
      const Index node2 = movableIndexOf(contact.rigidBody(1));
      if (!node1 && !node2) continue;
      m_contacts.push_back(contact);
      m_islands.join(node1, node2);
      m_islands.addItem(node1 ? node1 : node2);
    }
  }
  m_islands.build();
}

void Solver::Step::solveIsland(std::size_t island)
{
  const auto items = m_islands.items(island);
  m_rows.clear();
  m_constraints.clear();
  m_constraintRows.clear();
  const bool tooManyRows = countDirectRows(items) > MAX_DIRECT_ROWS_WITH_CONTACTS;
  m_contactConstraints.clear(!tooManyRows && !m_solver->isForceIterative());
  const auto& constraints = m_system->getConstraints();
  for (const Index item : items) {
    if (item < constraints.size())
      addConstraint(*constraints[item]);
    else
      addContact(m_contacts[item - constraints.size()]);
  }
  const SplitSolver::Result result = m_solvers[island].solve(m_rows, m_solver->getNumRestingIterations());
  numRows += m_rows.getNumRows();
  numSweeps = std::max(numSweeps, result.sweeps);
  numDirectRows += result.directRows;
  if (result.fellBack || (tooManyRows && !m_contactConstraints.empty())) ++numFallbacks;
  storeForces();
}

std::size_t Solver::Step::countDirectRows(std::span<const Index> items) const
{
  const auto& constraints = m_system->getConstraints();
  std::size_t count = 0;
  for (const Index item : items) {
    if (item >= constraints.size()) {
      count += m_contacts[item - constraints.size()].getNumPoints();
    } else if (const Constraint& constraint = *constraints[item];
               constraint.getSolveType() & Constraint::DIRECT) {
      count += constraint.getNumDOF() + constraint.getNumSecondaryConstraints();
    }
  }
  return count;
}

void Solver::Step::addConstraint(Constraint& constraint)
{
  const bool iterative = m_solver->isForceIterative();
  const UInt32 solveType = iterative ? UInt32(Constraint::ITERATIVE) : constraint.getSolveType();
  const std::size_t begin = m_constraintRows.size();
  m_constraints.push_back({&constraint, begin});
  constraint.rows(m_timeStep, m_constraintRows);
  for (std::size_t i = begin; i < m_constraintRows.size(); ++i) {
    const ConstraintRow& row = m_constraintRows[i];
    const Index bodies[2] = {indexOf(row.bodies[0]), indexOf(row.bodies[1])};
    for (const Index body : bodies) m_inIsland[body] = 1;
    // They start from nothing: the old impulses of a chain with a heavy end make it explode.
    m_rows.add(row, bodies[0], bodies[1], m_timeStep, 0, solveType);
  }
}

void Solver::Step::addContact(const GeometryContact& contact)
{
  const Index bodies[2] = {indexOf(contact.rigidBody(0)), indexOf(contact.rigidBody(1))};
  for (const Index body : bodies) m_inIsland[body] = 1;
  m_contactConstraints.add(contact, bodies);
}

void Solver::Step::storeForces()
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
  m_contactConstraints.storeImpulses();
}

void Solver::Step::storeVelocities()
{
  const BodyRows& rows = BodyRows::instance();
  const auto& bodies = m_system->getRigidBodies();
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    const SolverBody& solverBody = m_bodies[i + 1];
    if (!solverBody.isMovable()) continue;
    const Real(&free)[6] = solverBody.freeVelocity;
    Vec3 velocity(free[0], free[1], free[2]);
    Vec3 angularVelocity(free[3], free[4], free[5]);
    if (m_inIsland[i + 1]) solverBody.unscale(m_velocities[i + 1].v, velocity, angularVelocity);
    const Index row = bodies[i]->getEntity().calculateIndex();
    rows.acceleration[row] = (velocity - rows.velocity[row]) / m_timeStep;
    rows.angularAcceleration[row] = (angularVelocity - rows.angularVelocity[row]) / m_timeStep;
    rows.velocity[row] = velocity;
    rows.angularVelocity[row] = angularVelocity;
  }
}

} // namespace kel
