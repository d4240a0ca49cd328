#include "kel/Solver.h"
#include "body/BodyRows.h"
#include "collision/ContactRows.h"
#include "kelCollide/Space.h"
#include "solver/SolverStep.h"
#include <algorithm>
#include <cmath>

namespace kel {

using kelCollide::ContactPointRows;
using kelCollide::Geometry;
using kelCollide::GeometryContact;

namespace {

/// Softness of contacts, m/N: far below that of real bodies, far above rounding.
constexpr Real CONTACT_COMPLIANCE = 1e-9;
/// Steps in which a penetration goes to a third. With 5, tall stacks sway where the sweeps are too few.
constexpr Real CONTACT_DAMPING_STEPS = 10;
/// Part of the last step's impulses that contacts start from. More makes tall stacks sway, less makes them
/// sink.
constexpr Real WARM_START = 0.85;
/// Creep of friction that holds, m/(N s).
constexpr Real FRICTION_COMPLIANCE = 1e-10;

const Material& materialOf(const Geometry& geometry)
{
  const Material* material = geometry.getMaterial();
  return material ? *material : *Material::getDefaultMaterial();
}

} // namespace

Solver::Solver() : Component("Solver"), m_step(std::make_unique<Step>()) {}

Solver::~Solver() = default;

void Solver::solve(DynamicsSystem& system, Real timeStep) { m_step->solve(*this, system, timeStep); }

UInt32 Solver::getNumRows() const { return m_step->numRows; }

UInt32 Solver::getNumSweeps() const { return m_step->numSweeps; }

void Solver::Step::solve(const Solver& solver, DynamicsSystem& system, Real timeStep)
{
  m_solver = &solver;
  m_system = &system;
  m_timeStep = timeStep;
  numRows = numSweeps = 0;
  loadBodies(system);
  findIslands();
  for (std::size_t island = 0; island < m_islands.size(); ++island) solveIsland(m_islands.items(island));
  storeVelocities();
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
    for (std::size_t i = 0; constraint->getEnable() && i < constraint->getNumBodies(); ++i) {
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

void Solver::Step::solveIsland(std::span<const Index> items)
{
  m_rows.clear();
  m_forceTargets.clear();
  m_pointTargets.clear();
  const auto& constraints = m_system->getConstraints();
  for (const Index item : items) {
    if (item < constraints.size())
      addConstraint(*constraints[item]);
    else
      addContact(m_contacts[item - constraints.size()]);
  }
  numRows += m_rows.getNumRows();
  numSweeps = std::max(numSweeps, m_rows.solve(m_solver->getNumRestingIterations()));
  storeImpulses();
}

void Solver::Step::addConstraint(const Constraint& constraint)
{
  for (std::size_t i = 0; i < constraint.getNumElementaryConstraints(); ++i) {
    ElementaryConstraint& elementary = *constraint.getElementaryConstraint(i);
    if (!elementary.getEnable()) continue;
    m_buffer.clear();
    elementary.rows(m_timeStep, m_buffer);
    for (const ConstraintRow& row : m_buffer) {
      const Index bodies[2] = {indexOf(row.bodies[0]), indexOf(row.bodies[1])};
      for (const Index body : bodies) m_inIsland[body] = 1;
      // Joint rows start from nothing: the old impulses of a chain with a heavy end make it explode.
      m_forceTargets.push_back({m_rows.add(row, bodies[0], bodies[1], m_timeStep, 0), row.force});
    }
  }
}

void Solver::Step::addContact(const GeometryContact& contact)
{
  const Material& material1 = materialOf(*contact.geometry(0));
  const Material& material2 = materialOf(*contact.geometry(1));
  const Real friction = std::sqrt(material1.getFrictionCoefficient() * material2.getFrictionCoefficient());
  const Real restitution = std::sqrt(material1.getRestitution() * material2.getRestitution());
  const RigidBody* const bodies[2] = {contact.rigidBody(0), contact.rigidBody(1)};
  for (const RigidBody* body : bodies) m_inIsland[indexOf(body)] = 1;
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const Index pointRow = contact.getPoint(i).getId();
    if (ContactPointRows::instance().enabled[pointRow])
      addContactPoint(pointRow, bodies, friction, restitution);
  }
}

void Solver::Step::addContactPoint(Index pointRow, const RigidBody* const (&bodies)[2], Real friction,
                                   Real restitution)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const Index indices[2] = {indexOf(bodies[0]), indexOf(bodies[1])};
  const Vec3& position = points.point[pointRow];
  const Vec3 arms[2] = {bodies[0] ? position - bodies[0]->getCmPosition() : Vec3(),
                        bodies[1] ? position - bodies[1]->getCmPosition() : Vec3()};
  const auto makeRow = [&](const Vec3& direction) {
    ConstraintRow row;
    row.linear[0] = direction;
    row.linear[1] = -direction;
    row.angular[0] = cross(arms[0], direction);
    row.angular[1] = -cross(arms[1], direction);
    return row;
  };
  ConstraintRow normal = makeRow(Vec3(points.normal[pointRow]).normal());
  const Real depth = points.depth[pointRow];
  normal.form = ConstraintRow::BACKWARD;
  normal.compliance = CONTACT_COMPLIANCE;
  normal.target = -depth;
  // Surfaces that only come near each other may touch at the end of the step, not before.
  normal.damping = depth > 0 ? CONTACT_DAMPING_STEPS * m_timeStep : 0;
  normal.lowerForce = 0;
  if (restitution > 0) applyRestitution(normal, indices, depth, restitution);
  const Vec3 impulse = points.impulse[pointRow] * WARM_START;
  PointTarget target = {m_rows.add(normal, indices[0], indices[1], m_timeStep, impulse.x()), 0, pointRow};

  const Vec3 slide = Vec3(points.velocity[pointRow]);
  ConstraintRow tangents[2] = {makeRow(Vec3(points.tangentU[pointRow])),
                               makeRow(Vec3(points.tangentV[pointRow]))};
  for (ConstraintRow& row : tangents) {
    row.form = ConstraintRow::NON_HOLONOMIC;
    row.compliance = FRICTION_COMPLIANCE;
    row.target = -(row.linear[0] * slide);
  }
  target.friction = m_rows.addFriction(tangents[0], tangents[1], indices[0], indices[1], m_timeStep,
                                       target.normal, friction, impulse.y(), impulse.z());
  m_pointTargets.push_back(target);
}

void Solver::Step::applyRestitution(ConstraintRow& normal, const Index (&bodies)[2], Real depth,
                                    Real restitution) const
{
  Real speed = 0;
  for (std::size_t side = 0; side < 2; ++side)
    speed += m_bodies[bodies[side]].oldSpeedAlong(normal.linear[side], normal.angular[side]);
  const bool meets = depth >= 0 || speed * m_timeStep < depth;
  const Real bounce = -restitution * speed;
  const Real push = depth / (m_timeStep + normal.damping);
  if (!meets || -speed <= m_solver->getImpactSpeedThreshold() || bounce <= push) return;
  normal.form = ConstraintRow::NON_HOLONOMIC;
  normal.target = bounce;
}

void Solver::Step::storeImpulses()
{
  for (const ForceTarget& target : m_forceTargets)
    if (target.force) *target.force = m_rows.getImpulse(target.row) / m_timeStep;
  const ContactPointRows& points = ContactPointRows::instance();
  for (const PointTarget& target : m_pointTargets) {
    const auto& friction = m_rows.getFrictionImpulse(target.friction);
    points.impulse[target.pointRow] = Vec3(m_rows.getImpulse(target.normal), friction[0], friction[1]);
    points.localForce[target.pointRow] = points.impulse[target.pointRow] / m_timeStep;
  }
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
