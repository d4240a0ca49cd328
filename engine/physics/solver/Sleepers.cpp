#include "solver/Sleepers.h"
#include "body/BodyRows.h"
#include "collision/ContactRows.h"
#include "kel/ContactMaterial.h"
#include <algorithm>

namespace kel {

using kelCollide::ContactPointRows;
using kelCollide::GeometryContact;

namespace {

bool isAsleep(const ref_ptr<RigidBody>& body) { return body->getAutoSleepProperties()->isSleeping(); }

bool isNull(const Vec3& vector) { return vector == Vec3(); }

/// Whether a body moves others, whatever they do.
bool moves(const RigidBody* body)
{
  return body && body->getEnable() && body->getMotionControl() == RigidBody::KINEMATICS &&
         !(isNull(body->getVelocity()) && isNull(body->getAngularVelocity()));
}

bool isSlow(const RigidBody& body, const AutoSleepThreshold& threshold)
{
  return body.getVelocity().length2() <= threshold.getVelocity2() &&
         body.getAngularVelocity().length2() <= threshold.getAngularVelocity2() &&
         body.getAcceleration().length2() <= threshold.getAcceleration2() &&
         body.getAngularAcceleration().length2() <= threshold.getAngularAcceleration2();
}

void addRow(Digest& digest, const ConstraintRow& row)
{
  digest.add(row.form).add(row.bodies).add(row.linear).add(row.angular).add(row.target);
  digest.add(row.compliance).add(row.damping).add(row.lowerForce).add(row.upperForce);
}

UInt64 digestOf(const ContactMaterial& material)
{
  Digest digest;
  const kelData::EntityPtr row = material.getEntity();
  for (const auto& buffer : row.getStorage()->getBuffers())
    if (buffer) digest.addBytes(buffer->at(row.calculateIndex()), buffer->getElementSize());
  const FrictionModel* model = material.getFrictionModel();
  digest.add(model);
  if (model) digest.add(model->getSolveType()).add(model->getCallbackMask());
  return digest.get();
}

void addPoint(Digest& digest, Index point)
{
  const ContactPointRows& points = ContactPointRows::instance();
  digest.add(points.enabled[point]).add(points.point[point]).add(points.normal[point]);
  digest.add(points.depth[point]);
}

} // namespace

template <class Visit> void Sleepers::visitMovable(Visit visit) const
{
  for (const auto& body : m_system->getRigidBodies())
    if (const Index node = m_bodies.movableIndexOf(body.get())) visit(body, node);
}

void Sleepers::wake(const DynamicsSystem& system, Real timeStep)
{
  m_system = &system;
  m_timeStep = timeStep;
  m_asleep.assign(m_bodies.size(), 0);
  const auto& bodies = system.getRigidBodies();
  const bool isEnabled = system.getAutoSleep()->getEnable();
  const bool wakeAll = m_wasEnabled && !isEnabled;
  m_wasEnabled = isEnabled;
  if (std::none_of(bodies.begin(), bodies.end(), isAsleep)) return;
  if (!wakeAll) findSleepers();
  for (const auto& body : bodies) {
    if (!isAsleep(body)) continue;
    auto& sleep = *body->getAutoSleepProperties();
    const Index node = m_bodies.movableIndexOf(body.get());
    if (node && sleeps(node))
      sleep.m_feeling = m_feelings[node];
    else
      sleep.setSleeping(false);
  }
}

void Sleepers::findSleepers()
{
  std::fill(m_asleep.begin() + 1, m_asleep.end(), 1);
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    if (!isAsleep(body) || !isNull(body->getVelocity()) || !isNull(body->getAngularVelocity()))
      m_asleep[m_islands.getRoot(node)] = 0;
  });
  feel(m_asleep);
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    const UInt64 known = body->getAutoSleepProperties()->m_feeling;
    if (known && known != m_feelings[node]) m_asleep[m_islands.getRoot(node)] = 0;
  });
}

void Sleepers::fallAsleep()
{
  if (!m_system->getAutoSleep()->getEnable()) return;
  m_drowsy.assign(m_bodies.size(), 1);
  m_drowsy[0] = 0;
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    const Index root = m_islands.getRoot(node);
    if (!m_asleep[root]) rest(*body);
    if (body->getAutoSleepProperties()->getState() != RigidBody::AutoSleepProperties::TIRED)
      m_drowsy[root] = 0;
  });
  feel(m_drowsy);
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    if (!m_drowsy[m_islands.getRoot(node)]) return;
    stop(*body);
    body->getAutoSleepProperties()->m_feeling = m_feelings[node];
  });
}

void Sleepers::rest(RigidBody& body) const
{
  auto& sleep = *body.getAutoSleepProperties();
  const AutoSleepThreshold* threshold = body.getAutoSleepThreshold();
  if (!threshold) threshold = m_system->getAutoSleep()->getThreshold();
  const bool rests = sleep.getEnable() && isSlow(body, *threshold);
  sleep.m_restTime = rests ? sleep.m_restTime + static_cast<float>(m_timeStep) : 0;
  const bool isTired = rests && sleep.m_restTime >= threshold->getTime();
  sleep.m_state = isTired ? RigidBody::AutoSleepProperties::TIRED : RigidBody::AutoSleepProperties::AWAKE;
}

void Sleepers::stop(RigidBody& body)
{
  const float restTime = body.getAutoSleepProperties()->m_restTime;
  body.getAutoSleepProperties()->setSleeping(true);
  body.getAutoSleepProperties()->m_restTime = restTime;
  const BodyRows& rows = BodyRows::instance();
  const Index row = body.getEntity().calculateIndex();
  rows.acceleration[row] = rows.angularAcceleration[row] = Vec3();
}

void Sleepers::feel(Roots& roots)
{
  if (std::find(roots.begin(), roots.end(), 1) == roots.end()) return;
  m_feelings.assign(m_bodies.size(), 0);
  feelBodies(roots);
  feelConstraints(roots);
  feelContacts(roots);
}

void Sleepers::feelBodies(const Roots& roots)
{
  const BodyRows& rows = BodyRows::instance();
  visitMovable([&](const ref_ptr<RigidBody>& body, Index node) {
    if (!roots[m_islands.getRoot(node)]) return;
    const Index row = body->getEntity().calculateIndex();
    Digest digest;
    digest.add(rows.cmTransform[row]).add(rows.state[row]).add(m_system->getUniformGravity());
    digest.add(rows.force[row]).add(rows.torque[row]).add(rows.mass[row]).add(rows.inverseInertia[row]);
    m_feelings[node] = digest.get();
  });
}

void Sleepers::feelConstraints(Roots& roots)
{
  const auto& constraints = m_system->getConstraints();
  for (std::size_t i = 0; i < constraints.size(); ++i) {
    const Index root = m_islands.getItemRoot(i);
    if (!roots[root]) continue;
    m_rows.clear();
    constraints[i]->rows(m_timeStep, m_rows);
    Digest digest;
    for (const ConstraintRow& row : m_rows) {
      addRow(digest, row);
      const bool drives = row.form == ConstraintRow::NON_HOLONOMIC && row.target != 0;
      if (drives || moves(row.bodies[0]) || moves(row.bodies[1])) roots[root] = 0;
    }
    // The sums of what bodies feel must not depend on the order in which it is found.
    for (std::size_t k = 0; k < constraints[i]->getNumBodies(); ++k)
      m_feelings[m_bodies.movableIndexOf(constraints[i]->getBodyAt(k))] += digest.get();
  }
}

void Sleepers::feelContacts(Roots& roots)
{
  const ContactPointRows& points = ContactPointRows::instance();
  const std::size_t numConstraints = m_system->getConstraints().size();
  const ContactMaterial* material = nullptr; // of the contact before: many have the same
  UInt64 materialDigest = 0;
  for (std::size_t i = 0; i < m_contacts.size(); ++i) {
    const Index root = m_islands.getItemRoot(numConstraints + i);
    if (!roots[root]) continue;
    const GeometryContact& contact = m_contacts[i];
    Digest digest;
    digest.add(contact.geometry(0)).add(contact.geometry(1));
    if (const ContactMaterial* next = contact.getMaterial(); next != material) {
      material = next;
      materialDigest = next ? digestOf(*next) : 0;
    }
    digest.add(materialDigest);
    for (std::size_t k = 0; k < contact.getNumPoints(); ++k) {
      const Index point = contact.getPoint(k).getId();
      addPoint(digest, point);
      if (points.velocity[point] != Vec3f()) roots[root] = 0;
    }
    for (std::size_t side = 0; side < 2; ++side) {
      const RigidBody* body = contact.rigidBody(side);
      if (moves(body)) roots[root] = 0;
      m_feelings[m_bodies.movableIndexOf(body)] += digest.get();
    }
  }
}

} // namespace kel
