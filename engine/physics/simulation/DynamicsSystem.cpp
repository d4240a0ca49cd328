#include "kel/DynamicsSystem.h"
#include "body/BodyRows.h"
#include "body/integrator.h"
#include "kelCollide/Space.h"
#include "simulation/references.h"
#include "solver/askFrictionModels.h"
#include <algorithm>

namespace kel {

DynamicsSystem::DynamicsSystem()
    : Component("DynamicsSystem"), m_timeGovernor(new TimeGovernor), m_solver(new Solver)
{}

DynamicsSystem::~DynamicsSystem()
{
  for (const auto& constraint : m_constraints) constraint->count(-1);
  for (const auto& body : m_bodies) body->m_system = nullptr;
}

bool DynamicsSystem::add(RigidBody* body)
{
  const ref_ptr<RigidBody> keep(body);
  if (!body || body->m_system) return false;
  body->m_system = this;
  body->m_systemIndex = static_cast<Index>(m_bodies.size());
  m_bodies.push_back(keep);
  return true;
}

bool DynamicsSystem::remove(RigidBody* body)
{
  if (!body || body->m_system != this) return false;
  const ref_ptr<RigidBody> keep(body);
  body->m_system = nullptr;
  m_bodies.erase(m_bodies.begin() + body->m_systemIndex);
  for (Index i = body->m_systemIndex; i < m_bodies.size(); ++i) m_bodies[i]->m_systemIndex = i;
  return true;
}

bool DynamicsSystem::add(Interaction* interaction) { return addReference(m_interactions, interaction); }

bool DynamicsSystem::remove(Interaction* interaction) { return removeReference(m_interactions, interaction); }

bool DynamicsSystem::add(Constraint* constraint)
{
  if (!addReference(m_constraints, constraint)) return false;
  constraint->count(1);
  return true;
}

bool DynamicsSystem::remove(Constraint* constraint)
{
  const ref_ptr<Constraint> keep(constraint);
  if (!removeReference(m_constraints, constraint)) return false;
  constraint->count(-1);
  constraint->clearForces();
  return true;
}

RigidBody* DynamicsSystem::getRigidBody(const Name& name) const { return findByName(m_bodies, name); }

Constraint* DynamicsSystem::getConstraint(const Name& name) const { return findByName(m_constraints, name); }

void DynamicsSystem::setTimeGovernor(TimeGovernor* governor)
{
  if (governor) m_timeGovernor = governor;
}

void DynamicsSystem::stepForward()
{
  const Real timeStep = m_timeGovernor->getTimeStep();
  if (!(timeStep > 0)) return;
  const auto interactions = m_interactions; // they may add and remove each other
  for (const auto& interaction : interactions) interaction->updateForce(this);
  if (const ref_ptr<kelCollide::Space> space = m_space) askFrictionModels(*space, timeStep);
  m_solver->solve(*this, timeStep);

  const BodyRows& rows = BodyRows::instance();
  for (const auto& body : m_bodies) {
    const Index row = body->m_row;
    rows.lastForce[row] = rows.force[row];
    rows.lastTorque[row] = rows.torque[row];
    rows.force[row] = rows.torque[row] = Vec3();
    if (!body->getEnable() || body->getMotionControl() == RigidBody::STATIC) continue;
    if (body->getAutoSleepProperties()->isSleeping()) continue;
    const Vec3 solved = rows.angularVelocity[row];
    integrate(*body, timeStep);
    // A free body's angular velocity changes on the way, as its momentum does not.
    rows.angularAcceleration[row] += (rows.angularVelocity[row] - solved) / timeStep;
  }
}

template <class Quantity> auto DynamicsSystem::sum(Quantity quantity) const
{
  decltype(quantity(*m_bodies.front())) total{};
  for (const auto& body : m_bodies)
    if (body->getEnable() && body->getMotionControl() == RigidBody::DYNAMICS) total += quantity(*body);
  return total;
}

Vec3 DynamicsSystem::getLinearMomentum() const
{
  return sum([](const RigidBody& body) { return body.getLinearMomentum(); });
}

Vec3 DynamicsSystem::getAngularMomentum() const
{
  return sum([](const RigidBody& body) {
    return body.getAngularMomentum() + cross(body.getCmPosition(), body.getLinearMomentum());
  });
}

Real DynamicsSystem::getPotentialEnergy() const
{
  return sum([](const RigidBody& body) { return body.getPotentialEnergy(); });
}

Real DynamicsSystem::getTranslationalEnergy() const
{
  return sum([](const RigidBody& body) { return body.getTranslationalEnergy(); });
}

Real DynamicsSystem::getRotationalEnergy() const
{
  return sum([](const RigidBody& body) { return body.getRotationalEnergy(); });
}

} // namespace kel
