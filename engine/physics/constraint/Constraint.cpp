#include "kel/Constraint.h"
#include "body/BodyRows.h"
#include <algorithm>

namespace kel {

namespace {

using ElementaryConstraints = std::vector<ref_ptr<ElementaryConstraint>>;

ElementaryConstraint* at(const ElementaryConstraints& list, std::size_t index)
{
  return index < list.size() ? list[index].get() : nullptr;
}

ElementaryConstraint* find(const ElementaryConstraints& list, const Name& name)
{
  for (const auto& constraint : list)
    if (constraint->getName() == name.str()) return constraint.get();
  return nullptr;
}

} // namespace

Constraint::Constraint(RigidBody* body1, RigidBody* body2)
{
  for (RigidBody* body : {body1, body2})
    if (body) addBody(body);
}

void Constraint::count(int change)
{
  m_numSystems += static_cast<UInt32>(change);
  for (const auto& body : m_bodies)
    BodyRows::instance().numConstraints[body->getEntity().calculateIndex()] += static_cast<UInt32>(change);
}

void Constraint::addBody(RigidBody* body)
{
  m_bodies.emplace_back(body);
  BodyRows::instance().numConstraints[body->getEntity().calculateIndex()] += m_numSystems;
}

RigidBody* Constraint::getBodyAt(std::size_t index) const
{
  return index < m_bodies.size() ? m_bodies[index].get() : nullptr;
}

std::size_t Constraint::indexOf(const RigidBody* body) const
{
  return static_cast<std::size_t>(std::find(m_bodies.begin(), m_bodies.end(), body) - m_bodies.begin());
}

RigidBodyAttachment* Constraint::getAttachment(std::size_t index) const
{
  return index < 2 ? m_attachments[index].get() : nullptr;
}

RigidBodyAttachment* Constraint::getAttachment(const RigidBody* body) const
{
  const std::size_t index = indexOf(body);
  return index < m_bodies.size() ? getAttachment(index) : nullptr;
}

bool Constraint::getValid() const
{
  return !m_bodies.empty() && (m_bodies.size() == 1 || !(m_bodies[0] == m_bodies[1]));
}

bool Constraint::rebind() { return getValid() && m_pair.rebind(); }

bool Constraint::isNameTaken(const Name& name) const
{
  return find(m_elementary, name) || find(m_secondary, name);
}

bool Constraint::addElementaryConstraint(const Name& name, ElementaryConstraint* constraint)
{
  const ref_ptr<ElementaryConstraint> keep(constraint);
  if (!constraint || isNameTaken(name)) return false;
  for (const auto* list : {&m_elementary, &m_secondary})
    if (std::find(list->begin(), list->end(), constraint) != list->end()) return false;
  constraint->setName(name);
  m_elementary.push_back(keep);
  return true;
}

bool Constraint::addSecondaryConstraint(const Name& name, ElementaryConstraint* constraint)
{
  if (!addElementaryConstraint(name, constraint)) return false;
  m_secondary.push_back(m_elementary.back());
  m_elementary.pop_back();
  return true;
}

bool Constraint::removeElementaryConstraint(const ElementaryConstraint* constraint)
{
  return std::erase(m_elementary, constraint) > 0;
}

bool Constraint::removeElementaryConstraint(const Name& name)
{
  return removeElementaryConstraint(find(m_elementary, name));
}

bool Constraint::removeSecondaryConstraint(const ElementaryConstraint* constraint)
{
  return std::erase(m_secondary, constraint) > 0;
}

bool Constraint::removeSecondaryConstraint(const Name& name)
{
  return removeSecondaryConstraint(find(m_secondary, name));
}

ElementaryConstraint* Constraint::getElementaryConstraint(std::size_t index) const
{
  return at(m_elementary, index);
}

ElementaryConstraint* Constraint::getElementaryConstraintGivenName(const Name& name) const
{
  return find(m_elementary, name);
}

ElementaryConstraint* Constraint::getSecondaryConstraint(std::size_t index) const
{
  return at(m_secondary, index);
}

ElementaryConstraint* Constraint::getSecondaryConstraintGivenName(const Name& name) const
{
  return find(m_secondary, name);
}

void Constraint::setEnable(bool enable)
{
  m_enabled = enable;
  if (!enable) clearForces();
}

void Constraint::clearForces()
{
  for (const auto* list : {&m_elementary, &m_secondary})
    for (const auto& elementary : *list) elementary->clearForces();
  for (Reaction& reaction : m_reactions) reaction = {};
  m_holdingForce = Vec3();
}

UInt32 Constraint::getNumDOF() const
{
  UInt32 count = 0;
  for (const auto& elementary : m_elementary) count += elementary->getNumRows();
  return count;
}

template <class Visit> void Constraint::visitDofs(Int32 dof, Visit visit) const
{
  Int32 current = 0;
  for (const auto& elementary : m_elementary)
    for (UInt32 row = 0; row < elementary->getNumRows(); ++row, ++current)
      if (dof == ALL_DOF || dof == current) visit(*elementary, static_cast<Int32>(row));
}

void Constraint::setCompliance(Real compliance, Int32 dof)
{
  visitDofs(dof, [&](ElementaryConstraint& part, Int32 row) { part.setCompliance(compliance, row); });
}

Real Constraint::getCompliance(Int32 dof) const
{
  const RegularizationParameters* parameters = getRegularizationParameters(dof);
  return parameters ? parameters->getCompliance() : 0;
}

void Constraint::setDamping(Real damping, Int32 dof)
{
  visitDofs(dof, [&](ElementaryConstraint& part, Int32 row) { part.setDamping(damping, row); });
}

Real Constraint::getDamping(Int32 dof) const
{
  const RegularizationParameters* parameters = getRegularizationParameters(dof);
  return parameters ? parameters->getDamping() : 0;
}

RegularizationParameters* Constraint::getRegularizationParameters(Int32 dof) const
{
  RegularizationParameters* result = nullptr;
  if (dof != ALL_DOF)
    visitDofs(dof, [&](ElementaryConstraint& part, Int32 row) {
      result = part.getRegularizationParameters(static_cast<std::size_t>(row));
    });
  return result;
}

void Constraint::setForceRange(const RangeReal& range, Int32 dof)
{
  visitDofs(dof, [&](ElementaryConstraint& part, Int32 row) { part.setForceRange(range, row); });
}

RangeReal Constraint::getForceRange(Int32 dof) const
{
  RangeReal result(0);
  if (dof != ALL_DOF)
    visitDofs(dof, [&](const ElementaryConstraint& part, Int32 row) {
      result = part.getForceRange(static_cast<std::size_t>(row));
    });
  return result;
}

Real Constraint::getCurrentForce(Int32 dof) const
{
  Real result = 0;
  if (dof != ALL_DOF)
    visitDofs(dof, [&](const ElementaryConstraint& part, Int32 row) {
      result = part.getCurrentForce(static_cast<std::size_t>(row));
    });
  return result;
}

void Constraint::setEnableComputeForces(bool enable)
{
  m_computesForces = enable;
  for (Reaction& reaction : m_reactions) reaction = {};
}

bool Constraint::getLastForce(std::size_t body, Vec3& force, Vec3& torque, bool atCenterOfMass) const
{
  if (!m_computesForces || body >= m_bodies.size()) return false;
  force = m_reactions[body].force;
  torque = atCenterOfMass ? m_reactions[body].cmTorque : m_reactions[body].torque;
  return true;
}

bool Constraint::getLastForce(const RigidBody* body, Vec3& force, Vec3& torque, bool atCenterOfMass) const
{
  return getLastForce(indexOf(body), force, torque, atCenterOfMass);
}

bool Constraint::getLastLocalForce(std::size_t body, Vec3& force, Vec3& torque, bool atCenterOfMass) const
{
  const RigidBodyAttachment* attachment = getAttachment(body);
  if (!attachment || !getLastForce(body, force, torque, atCenterOfMass)) return false;
  force = attachment->getFrame()->transformVectorToLocal(force);
  torque = attachment->getFrame()->transformVectorToLocal(torque);
  return true;
}

bool Constraint::getLastLocalForce(const RigidBody* body, Vec3& force, Vec3& torque,
                                   bool atCenterOfMass) const
{
  return getLastLocalForce(indexOf(body), force, torque, atCenterOfMass);
}

void Constraint::rows(Real timeStep, std::vector<ConstraintRow>& buffer)
{
  m_pair.transform(); // its angles count turns
  for (const auto* list : {&m_elementary, &m_secondary})
    for (const auto& elementary : *list)
      if (elementary->getEnable()) elementary->rows(timeStep, buffer);
}

void Constraint::storeForces(std::span<const ConstraintRow> rows, std::span<const Real> forces)
{
  for (std::size_t i = 0; i < rows.size(); ++i)
    if (rows[i].force) *rows[i].force = forces[i];
  m_holdingForce = Vec3();
  for (std::size_t i = 0; i < rows.size(); ++i) m_holdingForce += rows[i].linear[0] * forces[i];
  if (!m_computesForces) return;
  for (std::size_t body = 0; body < m_bodies.size(); ++body) {
    Reaction& reaction = m_reactions[body];
    reaction = {};
    for (std::size_t i = 0; i < rows.size(); ++i)
      for (std::size_t side = 0; side < 2; ++side) {
        if (rows[i].bodies[side] != m_bodies[body].get()) continue;
        reaction.force += rows[i].linear[side] * forces[i];
        reaction.cmTorque += rows[i].angular[side] * forces[i];
      }
    reaction.torque = reaction.cmTorque;
    if (const RigidBodyAttachment* attachment = getAttachment(body))
      reaction.torque -= cross(attachment->get(Attachment::CM_TO_ANCHOR_POS), reaction.force);
  }
}

bool Constraint::calculateFramesFromWorld(const Vec3& point, const Vec3& axis, const RigidBody* body1,
                                          Frame* frame1, const RigidBody* body2, Frame* frame2)
{
  if (!body1 || !frame1 || !frame2 || !(axis.length() > 0)) return false;
  const Vec3 n = axis.normal();
  Vec3 u;
  Vec3 v;
  Attachment::createAttachmentBase(n, u, v);
  AffineMatrix4x4 world = AffineMatrix4x4::translate(point);
  const Vec3 axes[3] = {u, v, n};
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t k = 0; k < 3; ++k) world(i, k) = axes[i][k];
  frame1->setLocalMatrix(world * body1->getTransform().inverse());
  frame2->setLocalMatrix(body2 ? world * body2->getTransform().inverse() : world);
  return true;
}

bool Constraint::calculateFramesFromBody(const Vec3& point, const Vec3& axis, const RigidBody* body1,
                                         Frame* frame1, const RigidBody* body2, Frame* frame2)
{
  if (!body1) return false;
  const AffineMatrix4x4& transform = body1->getTransform();
  return calculateFramesFromWorld(transform.transformPoint(point), transform.transformVector(axis), body1,
                                  frame1, body2, frame2);
}

} // namespace kel
