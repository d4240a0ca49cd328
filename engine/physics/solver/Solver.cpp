#include "kel/Solver.h"
#include "collision/ContactRows.h"
#include "kel/BuildConfiguration.h"
#include "kelCollide/Space.h"
#include "solver/SolverStep.h"
#include <algorithm>

namespace kel {

using kelCollide::ContactPointRows;
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

// Rows are made, and forces handed out, by this thread alone: scripts may take part in both.
void Solver::Step::solve(const Solver& solver, DynamicsSystem& system, Real timeStep)
{
  numRows = numSweeps = numDirectRows = numFallbacks = 0;
  m_bodies.load(system, timeStep);
  findIslands(system);
  m_sleepers.wake(system, timeStep);
  findAwake(timeStep);
  while (m_systems.size() < m_awake.size()) m_systems.emplace_back(m_bodies);
  for (std::size_t i = 0; i < m_awake.size(); ++i)
    fillIsland(m_systems[i], m_islands.items(m_awake[i]), solver, system, timeStep);
  m_workers.run(m_awake.size(), getNumThreads(), [this](std::size_t i) { m_systems[i].solve(); });
  for (std::size_t i = 0; i < m_awake.size(); ++i) {
    m_systems[i].storeForces();
    count(m_systems[i]);
  }
  m_bodies.store();
  m_sleepers.fallAsleep();
}

void Solver::Step::findIslands(const DynamicsSystem& system)
{
  m_islands.reset(m_bodies.size());
  m_numConstraints = system.getConstraints().size();
  addConstraints(system);
  m_contacts.clear();
  if (const kelCollide::Space* space = system.getSpace()) addContacts(*space);
  m_islands.build();
}

void Solver::Step::addConstraints(const DynamicsSystem& system)
{
  for (const auto& constraint : system.getConstraints()) {
    Index last = 0;
    const bool acts = constraint->getEnable() && constraint->getValid();
    for (std::size_t i = 0; acts && i < constraint->getNumBodies(); ++i) {
      const Index node = m_bodies.movableIndexOf(constraint->getBodyAt(i));
      m_islands.join(last, node);
      if (node) last = node;
    }
    m_islands.addItem(last);
    if (!last) constraint->clearForces();
  }
}

void Solver::Step::addContacts(const kelCollide::Space& space)
{
  for (const GeometryContact& contact : space.getGeometryContacts()) {
    if (!contact.isEnabled() || contact.geometry(0)->isSensor() || contact.geometry(1)->isSensor()) continue;
    if (!m_bodies.isFinite(contact.rigidBody(0)) || !m_bodies.isFinite(contact.rigidBody(1))) continue;
    const Index node1 = m_bodies.movableIndexOf(contact.rigidBody(0));
    const Index node2 = m_bodies.movableIndexOf(contact.rigidBody(1));
    if (!node1 && !node2) continue;
    m_contacts.push_back(contact);
    m_islands.join(node1, node2);
    m_islands.addItem(node1 ? node1 : node2);
  }
}

void Solver::Step::findAwake(Real timeStep)
{
  m_awake.clear();
  for (std::size_t i = 0; i < m_islands.size(); ++i) {
    if (m_sleepers.sleeps(m_islands.getItemRoot(m_islands.items(i)[0])))
      keepForces(i, timeStep);
    else
      m_awake.push_back(static_cast<Index>(i));
  }
}

// Constraints have theirs still, but the rows of contacts are new in each step.
void Solver::Step::keepForces(std::size_t island, Real timeStep) const
{
  const ContactPointRows& points = ContactPointRows::instance();
  for (const Index item : m_islands.items(island)) {
    if (item < m_numConstraints) continue;
    const GeometryContact& contact = m_contacts[item - m_numConstraints];
    for (std::size_t k = 0; k < contact.getNumPoints(); ++k) {
      const Index point = contact.getPoint(k).getId();
      points.localForce[point] = points.impulse[point] / timeStep;
    }
  }
}

void Solver::Step::fillIsland(IslandSystem& island, std::span<const Index> items, const Solver& solver,
                              const DynamicsSystem& system, Real timeStep)
{
  island.begin(solver, timeStep, countDirectRows(items, system) <= MAX_DIRECT_ROWS_WITH_CONTACTS);
  const auto& constraints = system.getConstraints();
  for (const Index item : items) {
    if (item < constraints.size())
      island.add(*constraints[item]);
    else
      island.add(m_contacts[item - constraints.size()]);
  }
}

std::size_t Solver::Step::countDirectRows(std::span<const Index> items, const DynamicsSystem& system) const
{
  const auto& constraints = system.getConstraints();
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

void Solver::Step::count(const IslandSystem& island)
{
  const SplitSolver::Result& result = island.getResult();
  numRows += island.getNumRows();
  numSweeps = std::max(numSweeps, result.sweeps);
  numDirectRows += result.directRows;
  numFallbacks += result.fellBack;
}

} // namespace kel
