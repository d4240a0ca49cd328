#include "solver/SolverBodies.h"
#include "body/BodyRows.h"

namespace kel {

namespace {

/// Rotational energy of a scaled velocity over that of its body.
Real stiffening(const RigidBody& body, const ScaledVelocity& velocity)
{
  const Real* w = velocity.v + 3;
  const Real energy = body.getAngularVelocity() * body.getAngularMomentum();
  return energy > 0 ? (w[0] * w[0] + w[1] * w[1] + w[2] * w[2]) / energy : 1;
}

} // namespace

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
  }
  if (!system.getConstraints().empty()) stiffen();
  for (std::size_t i = 1; i < m_bodies.size(); ++i)
    if (m_bodies[i].isMovable()) m_bodies[i].scaleFreeVelocity(m_velocities[i].v);
}

void SolverBodies::stiffen()
{
  m_stiffnesses.assign(m_bodies.size(), Eigen::Matrix3d::Zero());
  for (const auto& constraint : m_system->getConstraints())
    for (std::size_t side = 0; side < 2; ++side) addStiffness(*constraint, side);
  for (std::size_t i = 1; i < m_bodies.size(); ++i)
    if (m_bodies[i].isMovable() && !m_stiffnesses[i].isZero(0))
      m_bodies[i].stiffen(m_stiffnesses[i], m_timeStep, m_system->getRigidBodies()[i - 1]->m_stiffening);
}

// A force f at an arm r that turns with the body has the torque r x f; turned by t, it changes by -K t with
// K = (f.r) 1 - r f^T, of which the symmetric part counts.
void SolverBodies::addStiffness(const Constraint& constraint, std::size_t side)
{
  RigidBodyAttachment* attachment = constraint.getAttachment(side);
  const Index body = attachment ? movableIndexOf(attachment->getRigidBody()) : 0;
  if (!body || !constraint.getEnable()) return;
  attachment->transform();
  const Vec3& arm = attachment->get(Attachment::CM_TO_ANCHOR_POS);
  const Vec3 force = side ? -constraint.getHoldingForce() : constraint.getHoldingForce();
  const Eigen::Vector3d r(arm.x(), arm.y(), arm.z());
  const Eigen::Vector3d f(force.x(), force.y(), force.z());
  m_stiffnesses[body] += f.dot(r) * Eigen::Matrix3d::Identity() - (r * f.transpose() + f * r.transpose()) / 2;
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
    bodies[i]->m_stiffening = solverBody.isStiffened ? stiffening(*bodies[i], m_velocities[i + 1]) : 1;
  }
}

} // namespace kel
