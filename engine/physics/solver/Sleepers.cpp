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
  digest.add(row.compliance).add(row.damping).add(row.lowerForce).add(row.upperForce).add(row.softness);
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

/// Adds the points of a contact; whether they drive one of its bodies.
bool addPoints(Digest& digest, const GeometryContact& contact)
{
  const ContactPointRows& points = ContactPointRows::instance();
  bool drives = moves(contact.rigidBody(0)) || moves(contact.rigidBody(1));
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
    const Index point = contact.getPoint(i).getId();
    digest.add(points.enabled[point]).add(points.point[point]).add(points.normal[point]);
    digest.add(points.depth[point]);
    drives = drives || points.velocity[point] != Vec3f();
  }
  return drives;
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
  feel(m_asleep, PRECISELY);
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
  for (Index node = 1; node < m_bodies.size(); ++node)
    if (sleeps(node)) m_drowsy[m_islands.getRoot(node)] = 0;
  feel(m_drowsy, ROUGHLY);
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    if (sleeps(node)) return;
    rest(*body, m_feelings[node]);
    if (body->getAutoSleepProperties()->getState() != RigidBody::AutoSleepProperties::TIRED)
      m_drowsy[m_islands.getRoot(node)] = 0;
  });
  feel(m_drowsy, PRECISELY);
  visitMovable([this](const ref_ptr<RigidBody>& body, Index node) {
    if (!m_drowsy[m_islands.getRoot(node)]) return;
    stop(*body);
    body->getAutoSleepProperties()->m_feeling = m_feelings[node];
  });
}

void Sleepers::rest(RigidBody& body, UInt64 feeling) const
{
  auto& sleep = *body.getAutoSleepProperties();
  const AutoSleepThreshold* threshold = body.getAutoSleepThreshold();
  if (!threshold) threshold = m_system->getAutoSleep()->getThreshold();
  // What has just lost its support is slow still.
  const bool isSettled = sleep.m_feeling == 0 || sleep.m_feeling == feeling;
  const bool rests = sleep.getEnable() && isSettled && isSlow(body, *threshold);
  sleep.m_feeling = feeling;
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

void Sleepers::feel(Roots& roots, Detail detail)
{
  if (std::find(roots.begin(), roots.end(), 1) == roots.end()) return;
  m_feelings.assign(m_bodies.size(), 0);
  feelBodies(roots, detail);
  feelConstraints(roots, detail);
  feelContacts(roots, detail);
}

void Sleepers::feelBodies(const Roots& roots, Detail detail)
{
  const BodyRows& rows = BodyRows::instance();
  visitMovable([&](const ref_ptr<RigidBody>& body, Index node) {
    if (!roots[m_islands.getRoot(node)]) return;
    const Index row = body->getEntity().calculateIndex();
    Digest digest;
    digest.add(rows.state[row]).add(rows.mass[row]).add(rows.inverseInertia[row]);
    digest.add(m_system->getUniformGravity());
    if (detail == ROUGHLY) // the last digits of a spring's force never settle
      digest.add(Vec3f(rows.force[row])).add(Vec3f(rows.torque[row]));
    else
      digest.add(rows.force[row]).add(rows.torque[row]).add(rows.cmTransform[row]);
    m_feelings[node] = digest.get();
  });
}

void Sleepers::feelConstraints(Roots& roots, Detail detail)
{
  const auto& constraints = m_system->getConstraints();
  for (std::size_t i = 0; i < constraints.size(); ++i) {
    const Index root = m_islands.getItemRoot(i);
    if (!roots[root]) continue;
    Digest digest;
    digest.add(constraints[i].get());
    if (detail == PRECISELY && addRows(digest, *constraints[i])) roots[root] = 0;
    for (std::size_t k = 0; k < constraints[i]->getNumBodies(); ++k)
      m_feelings[m_bodies.movableIndexOf(constraints[i]->getBodyAt(k))] += digest.get();
  }
}

bool Sleepers::addRows(Digest& digest, Constraint& constraint)
{
  m_rows.clear();
  constraint.rows(m_timeStep, m_rows);
  bool drives = false;
  for (const ConstraintRow& row : m_rows) {
    addRow(digest, row);
    drives = drives || (row.form == ConstraintRow::NON_HOLONOMIC && row.target != 0) ||
             moves(row.bodies[0]) || moves(row.bodies[1]);
  }
  return drives;
}

void Sleepers::feelContacts(Roots& roots, Detail detail)
{
  const std::size_t numConstraints = m_system->getConstraints().size();
  const ContactMaterial* material = nullptr; // of the contact before: many have the same
  UInt64 materialDigest = 0;
  for (std::size_t i = 0; i < m_contacts.size(); ++i) {
    const Index root = m_islands.getItemRoot(numConstraints + i);
    if (!roots[root]) continue;
    const GeometryContact& contact = m_contacts[i];
    if (const ContactMaterial* next = contact.getMaterial(); next != material) {
      material = next;
      materialDigest = next ? digestOf(*next) : 0;
    }
    Digest digest;
    digest.add(materialDigest);
    addSides(digest, contact);
    if (detail == PRECISELY && addPoints(digest, contact)) roots[root] = 0;
    for (std::size_t side = 0; side < 2; ++side)
      m_feelings[m_bodies.movableIndexOf(contact.rigidBody(side))] += digest.get();
  }
}

void Sleepers::addSides(Digest& digest, const GeometryContact& contact) const
{
  for (std::size_t side = 0; side < 2; ++side) {
    const kelCollide::Geometry* geometry = contact.geometry(side);
    digest.add(geometry).add(geometry->getSurfaceVelocity());
    if (m_bodies.movableIndexOf(contact.rigidBody(side)) == 0) digest.add(geometry->getTransform());
  }
}

} // namespace kel
