#include "solver/SolverBodies.h"
#include "body/BodyRows.h"

namespace kel {

void SolverBodies::load(const DynamicsSystem& system, Real timeStep)
{
  m_system = &system;
  m_timeStep = timeStep;
  const auto& bodies = system.getRigidBodies();
  m_bodies.assign(bodies.size() + 1, SolverBody());
  m_velocities.assign(bodies.size() + 1, ScaledVelocity());
  m_constrained.assign(bodies.size() + 1, 0);
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    const RigidBody& body = *bodies[i];
    if (!body.getEnable() || body.getMotionControl() == RigidBody::STATIC) continue;
    SolverBody& solverBody = m_bodies[i + 1];
    solverBody.load(body, system.getUniformGravity(), timeStep);
    if (solverBody.isMovable()) solverBody.scaleFreeVelocity(m_velocities[i + 1].v);
  }
}

Index SolverBodies::indexOf(const RigidBody* body) const
{
  return body && body->getSystem() == m_system ? DynamicsSystem::indexOf(*body) + 1 : 0;
}

Index SolverBodies::movableIndexOf(const RigidBody* body) const
{
  const Index index = indexOf(body);
  return m_bodies[index].isMovable() ? index : 0;
}

void SolverBodies::store() const
{
  const BodyRows& rows = BodyRows::instance();
  const auto& bodies = m_system->getRigidBodies();
  for (std::size_t i = 0; i < bodies.size(); ++i) {
    const SolverBody& solverBody = m_bodies[i + 1];
    const Index row = bodies[i]->getEntity().calculateIndex();
    if (!solverBody.isMovable() || bodies[i]->getAutoSleepProperties()->isSleeping()) {
      rows.acceleration[row] = rows.angularAcceleration[row] = Vec3();
      continue;
    }
    const Real(&free)[6] = solverBody.freeVelocity;
    Vec3 velocity(free[0], free[1], free[2]);
    Vec3 angularVelocity(free[3], free[4], free[5]);
    if (m_constrained[i + 1]) solverBody.unscale(m_velocities[i + 1].v, velocity, angularVelocity);
    rows.acceleration[row] = (velocity - rows.velocity[row]) / m_timeStep;
    rows.angularAcceleration[row] = (angularVelocity - rows.angularVelocity[row]) / m_timeStep;
    rows.velocity[row] = velocity;
    rows.angularVelocity[row] = angularVelocity;
  }
}

} // namespace kel
