#include "kelSDK/Simulation.h"
#include "kel/Logger.h"
#include "simulation/references.h"

namespace kelSDK {

using kel::addReference;
using kel::findByUuid;
using kel::Real;
using kel::removeReference;

namespace {

/// Keeps an object alive for the length of a call, also one that nobody counts: callbacks may drop what held
/// it.
class KeepAlive
{
public:
  explicit KeepAlive(const kel::Referenced& object)
      : m_object(object), m_wasCounted(object.getReferenceCount() > 0)
  {
    m_object.reference();
  }
  KeepAlive(const KeepAlive&) = delete;
  KeepAlive& operator=(const KeepAlive&) = delete;
  ~KeepAlive()
  {
    if (m_wasCounted)
      m_object.unreference();
    else
      m_object.unreferenceNoDelete();
  }

private:
  const kel::Referenced& m_object;
  const bool m_wasCounted;
};

/// Sets a flag for the length of a call, however it ends.
class FlagGuard
{
public:
  explicit FlagGuard(bool& flag) : m_flag(flag) { m_flag = true; }
  FlagGuard(const FlagGuard&) = delete;
  FlagGuard& operator=(const FlagGuard&) = delete;
  ~FlagGuard() { m_flag = false; }

private:
  bool& m_flag;
};

} // namespace

Simulation::Simulation()
    : kel::Component("Simulation"), m_clock(new kel::Clock("Clock")), m_events(new EventManager(*this)),
      m_materialManager(new MaterialManager)
{
  setSpace(new kelCollide::Space);
  setDynamicsSystem(new kel::DynamicsSystem);
}

Simulation::~Simulation()
{
  if (m_system) m_system->setSpace(nullptr);
}

bool Simulation::add(EventListener* listener, int priority) { return m_events->add(listener, priority); }
bool Simulation::add(kel::Emitter* emitter) { return addReference(m_emitters, emitter); }
bool Simulation::add(kel::ParticleSystem* system) { return addReference(m_particleSystems, system); }
bool Simulation::add(Assembly* assembly, bool) { return addReference(m_assemblies, assembly); }
bool Simulation::add(kel::Interaction* interaction) { return m_system && m_system->add(interaction); }
bool Simulation::add(kel::ObserverFrame* frame) { return addReference(m_observerFrames, frame); }
bool Simulation::add(kelControl::Action* action) { return addReference(m_actions, action); }
bool Simulation::add(kel::Constraint* constraint) { return m_system && m_system->add(constraint); }
bool Simulation::add(kel::MergedBody* body) { return addReference(m_mergedBodies, body); }
bool Simulation::add(kelCollide::Geometry* geometry) { return m_space && m_space->add(geometry); }
bool Simulation::add(kel::ContactMaterial* material) { return m_materialManager->add(material); }
bool Simulation::add(kel::Material* material) { return m_materialManager->add(material); }

bool Simulation::add(kel::RigidBody* body, bool addGeometries)
{
  if (!m_system || !m_system->add(body)) return false;
  if (addGeometries && m_space)
    for (const auto& geometry : body->getGeometries()) m_space->add(geometry.get());
  return true;
}

bool Simulation::remove(EventListener* listener) { return m_events->remove(listener); }
bool Simulation::remove(kel::Emitter* emitter) { return removeReference(m_emitters, emitter); }
bool Simulation::remove(kel::ParticleSystem* system) { return removeReference(m_particleSystems, system); }
bool Simulation::remove(Assembly* assembly, bool) { return removeReference(m_assemblies, assembly); }
bool Simulation::remove(kel::Interaction* interaction) { return m_system && m_system->remove(interaction); }
bool Simulation::remove(kelControl::Action* action) { return removeReference(m_actions, action); }
bool Simulation::remove(kel::ObserverFrame* frame) { return removeReference(m_observerFrames, frame); }
bool Simulation::remove(kel::Constraint* constraint) { return m_system && m_system->remove(constraint); }
bool Simulation::remove(kel::MergedBody* body) { return removeReference(m_mergedBodies, body); }
bool Simulation::remove(kelCollide::Geometry* geometry) { return m_space && m_space->remove(geometry); }
bool Simulation::remove(kel::Material* material) { return m_materialManager->remove(material); }
bool Simulation::remove(kel::ContactMaterial* material) { return m_materialManager->remove(material); }

bool Simulation::remove(kel::RigidBody* body, bool removeGeometries)
{
  if (!m_system || !body || body->getSystem() != m_system.get()) return false;
  const kel::ref_ptr<kel::RigidBody> keep(body);
  m_system->remove(body);
  if (removeGeometries && m_space)
    for (const auto& geometry : body->getGeometries()) m_space->remove(geometry.get());
  return true;
}

kel::RigidBody* Simulation::getRigidBody(const kel::Name& name) const
{
  return m_system ? m_system->getRigidBody(name) : nullptr;
}

kelCollide::Geometry* Simulation::getGeometry(const kel::Name& name) const
{
  return m_space ? m_space->getGeometry(name) : nullptr;
}

kel::Constraint* Simulation::getConstraint(const kel::Name& name) const
{
  return m_system ? m_system->getConstraint(name) : nullptr;
}

kel::Material* Simulation::getMaterial(const kel::Name& name) const
{
  return m_materialManager->getMaterial(name);
}

EventListener* Simulation::getEventListener(const kel::Name& name) const
{
  return m_events->getEventListener(name);
}

kel::RigidBody* Simulation::getRigidBody(const kel::Uuid& uuid) const
{
  return m_system ? findByUuid(m_system->getRigidBodies(), uuid) : nullptr;
}

kelCollide::Geometry* Simulation::getGeometry(const kel::Uuid& uuid) const
{
  return m_space ? findByUuid(m_space->getGeometries(), uuid) : nullptr;
}

kel::Constraint* Simulation::getConstraint(const kel::Uuid& uuid) const
{
  return m_system ? findByUuid(m_system->getConstraints(), uuid) : nullptr;
}

void Simulation::stepForward()
{
  if (m_stepping) {
    kel::logWarning("Simulation: stepForward was called within a step and is ignored.");
    return;
  }
  const KeepAlive keep(*this);
  const FlagGuard stepping(m_stepping);
  m_events->stepEvent(StepEventListener::PRE_COLLIDE, getTimeStamp());
  if (m_space) {
    m_space->update();
    m_materialManager->assign(m_space->getGeometryContacts());
    m_space->reduceContacts();
  }
  m_events->stepEvent(StepEventListener::PRE_STEP, getTimeStamp());
  const Real timeStep = getTimeStep();
  if (const kel::ref_ptr<kel::DynamicsSystem> system = m_system) system->stepForward();
  m_events->stepEvent(StepEventListener::POST_STEP, getTimeStamp());
  m_clock->stepForward(timeStep);
  m_events->stepEvent(StepEventListener::LAST_STEP, getTimeStamp());
}

Real Simulation::stepTo(Real time)
{
  const KeepAlive keep(*this);
  const FlagGuard steppingTo(m_steppingTo);
  // A clock that has added up its steps may miss the time by rounding. Far from 0 a step may not move it at
  // all, and a disabled clock stands.
  const auto isDue = [&] {
    const Real now = getTimeStamp();
    return now < time - 1e-6 * getTimeStep() && now + getTimeStep() > now && m_clock->isEnabled();
  };
  while (m_steppingTo && !m_stepping && isDue()) stepForward();
  return getTimeStamp();
}

bool Simulation::breakStepTo()
{
  const bool wasStepping = m_steppingTo;
  m_steppingTo = false;
  return wasStepping;
}

Real Simulation::getTimeStep() const { return m_system ? m_system->getTimeGovernor()->getTimeStep() : 0; }

void Simulation::setTimeStep(Real timeStep)
{
  if (m_system) m_system->getTimeGovernor()->setTimeStep(timeStep);
}

bool Simulation::setUniformGravity(const kel::Vec3& gravity)
{
  if (m_system) m_system->setUniformGravity(gravity);
  return m_system.get() != nullptr;
}

kel::Vec3 Simulation::getUniformGravity() const
{
  return m_system ? m_system->getUniformGravity() : kel::Vec3();
}

void Simulation::setSpace(kelCollide::Space* space)
{
  m_space = space;
  if (m_system) m_system->setSpace(space);
}

void Simulation::setDynamicsSystem(kel::DynamicsSystem* system)
{
  if (m_system) m_system->setSpace(nullptr);
  m_system = system;
  if (m_system) m_system->setSpace(m_space.get());
}

} // namespace kelSDK
