#include "kel/RigidBody.h"
#include "body/BodyRows.h"
#include "body/inertia.h"
#include "kel/DynamicsSystem.h"
#include "kel/Property.h"
#include "kelCollide/Space.h"
#include <algorithm>
#include <cmath>

namespace kel {

using kelCollide::Geometry;

namespace {
const BodyRows& rows() { return BodyRows::instance(); }
} // namespace

/// The model frame; it may outlive its body.
class RigidBody::ModelFrame : public Frame
{
public:
  explicit ModelFrame(RigidBody& body) { m_rigidBody = &body; }
  void release() { m_rigidBody = nullptr; }

private:
  void postTransformUpdate() override
  {
    if (m_rigidBody) {
      rows().transform[m_rigidBody->m_row] = getMatrix();
      rows().position[m_rigidBody->m_row] = getTranslate();
    }
  }
};

/// The centre-of-mass frame; it may outlive its body.
class RigidBody::CmFrame : public Frame
{
public:
  explicit CmFrame(RigidBody& body) { m_rigidBody = &body; }
  void release() { m_rigidBody = nullptr; }

private:
  void postTransformUpdate() override
  {
    if (m_rigidBody) rows().cmTransform[m_rigidBody->m_row] = getMatrix();
  }
};

RigidBody::RigidBody(const Name& name)
    : m_name(name), m_entity(rows().storage->createInstance()), m_row(m_entity.calculateIndex()),
      m_massProperties(m_row), m_autoSleepProperties(m_row), m_frame(new ModelFrame(*this)), m_cmFrame(new CmFrame(*this))
{
  rows().id[m_row] = m_entity.getId();
  m_cmFrame->setParent(m_frame.get());
}

RigidBody::RigidBody(Geometry* geometry) : RigidBody() { add(geometry); }

RigidBody::~RigidBody()
{
  for (const auto& geometry : m_geometries) geometry->m_rigidBody = nullptr;
  static_cast<ModelFrame*>(m_frame.get())->release();
  static_cast<CmFrame*>(m_cmFrame.get())->release();
  m_entity.destroy();
}

PropertyContainer* RigidBody::getPropertyContainer()
{
  if (!m_properties) m_properties = new PropertyContainer;
  return m_properties.get();
}

void RigidBody::setStateBit(UInt32 bit, bool on)
{
  UInt32& state = rows().state[m_row];
  state = on ? state | bit : state & ~bit;
}

bool RigidBody::hasStateBit(UInt32 bit) const { return rows().state[m_row] & bit; }

void RigidBody::setEnable(bool enable) { setStateBit(BodyRows::ENABLED, enable); }
bool RigidBody::getEnable() const { return hasStateBit(BodyRows::ENABLED); }
void RigidBody::setHandleAsParticle(bool enable) { setStateBit(BodyRows::PARTICLE, enable); }
bool RigidBody::getHandleAsParticle() const { return hasStateBit(BodyRows::PARTICLE); }
void RigidBody::setIsPowerlineBody(bool enable) { setStateBit(BodyRows::POWERLINE, enable); }

void RigidBody::setMotionControl(MotionControl control)
{
  if (control < STATIC || control > DYNAMICS) return;
  UInt32& state = rows().state[m_row];
  state = (state & ~UInt32(BodyRows::MOTION_CONTROL_MASK)) | UInt32(control);
}

RigidBody::MotionControl RigidBody::getMotionControl() const
{
  return static_cast<MotionControl>(rows().state[m_row] & BodyRows::MOTION_CONTROL_MASK);
}

const AffineMatrix4x4& RigidBody::getTransform() const { return rows().transform[m_row]; }
const AffineMatrix4x4& RigidBody::getCmTransform() const { return rows().cmTransform[m_row]; }
const Vec3& RigidBody::getPosition() const { return rows().position[m_row]; }

void RigidBody::setCmTransform(const AffineMatrix4x4& transform, bool moveBody)
{
  if (moveBody)
    m_frame->setMatrix(m_cmFrame->getLocalMatrix().inverse() * transform);
  else
    m_cmFrame->setMatrix(transform);
}

void RigidBody::setCmPosition(const Vec3& position, bool moveBody)
{
  AffineMatrix4x4 transform = getCmTransform();
  transform.setTranslate(position);
  setCmTransform(transform, moveBody);
}

void RigidBody::setCmRotation(const Quat& rotation, bool moveBody)
{
  AffineMatrix4x4 transform = getCmTransform();
  transform.setRotate(rotation);
  setCmTransform(transform, moveBody);
}

void RigidBody::setCmLocalTranslate(const Vec3& translate)
{
  m_massProperties.setAutoGenerateMask(m_massProperties.getAutoGenerateMask() &
                                       ~UInt32(MassProperties::CM_OFFSET));
  m_cmFrame->setLocalTranslate(translate);
}

void RigidBody::setVelocity(const Vec3& velocity) { rows().velocity[m_row] = velocity; }
const Vec3& RigidBody::getVelocity() const { return rows().velocity[m_row]; }
void RigidBody::setAngularVelocity(const Vec3& velocity) { rows().angularVelocity[m_row] = velocity; }
const Vec3& RigidBody::getAngularVelocity() const { return rows().angularVelocity[m_row]; }
const Vec3& RigidBody::getAcceleration() const { return rows().acceleration[m_row]; }
const Vec3& RigidBody::getAngularAcceleration() const { return rows().angularAcceleration[m_row]; }

Vec3 RigidBody::getModelVelocity(const Vec3& localPoint) const
{
  const Vec3 arm = getTransform().transformPoint(localPoint) - getCmPosition();
  return getVelocity() + cross(getAngularVelocity(), arm);
}

void RigidBody::moveTo(const AffineMatrix4x4& transform, Real time)
{
  moveTo(transform.getTranslate(), transform.getRotate(), time);
}

void RigidBody::moveTo(const Vec3& position, const Quat& rotation, Real time)
{
  if (!(time > 0)) return;
  const AffineMatrix4x4 target = m_cmFrame->getLocalMatrix() * AffineMatrix4x4(rotation, position);
  Quat turn = getCmRotation().conj() * target.getRotate();
  if (turn.w() < 0) turn = -turn;
  Real angle = 0;
  Vec3 axis;
  turn.getRotate(angle, axis);
  setVelocity((target.getTranslate() - getCmPosition()) / time);
  setAngularVelocity(axis * (angle / time));
}

void RigidBody::AutoSleepProperties::setSleeping(bool sleeping)
{
  m_state = sleeping ? ASLEEP : AWAKE;
  m_restTime = 0;
  m_feeling = 0;
  if (sleeping) rows().velocity[m_row] = rows().angularVelocity[m_row] = Vec3();
}

void RigidBody::AutoSleepProperties::setEnable(bool enable)
{
  m_enabled = enable;
  if (!enable && m_state != AWAKE) setSleeping(false);
}

void RigidBody::setForce(const Vec3& force) { rows().force[m_row] = force; }
void RigidBody::setTorque(const Vec3& torque) { rows().torque[m_row] = torque; }
const Vec3& RigidBody::getForce() const { return rows().force[m_row]; }
const Vec3& RigidBody::getTorque() const { return rows().torque[m_row]; }
const Vec3& RigidBody::getLastForce() const { return rows().lastForce[m_row]; }
const Vec3& RigidBody::getLastTorque() const { return rows().lastTorque[m_row]; }

void RigidBody::addForceAtPosition(const Vec3& force, const Vec3& point)
{
  addForce(force);
  if (!getHandleAsParticle()) addTorque(cross(point - getCmPosition(), force));
}

void RigidBody::addForceAtLocalPosition(const Vec3& force, const Vec3& localPoint)
{
  addForceAtPosition(force, getTransform().transformPoint(localPoint));
}

void RigidBody::addForceAtLocalCmPosition(const Vec3& force, const Vec3& localPoint)
{
  addForceAtPosition(force, getCmTransform().transformPoint(localPoint));
}

bool RigidBody::addAttachment(Frame* frame, const Name& name)
{
  if (!frame || m_attachments.count(name) || !frame->setParent(m_frame.get())) return false;
  m_attachments.emplace(name, frame);
  return true;
}

bool RigidBody::removeAttachment(const Name& name) { return m_attachments.erase(name) > 0; }

Frame* RigidBody::getAttachment(const Name& name) const
{
  const auto found = m_attachments.find(name);
  return found == m_attachments.end() ? nullptr : found->second.get();
}

UInt32 RigidBody::getNumConstraints() const { return rows().numConstraints[m_row]; }

Vec3 RigidBody::getAngularMomentum() const
{
  const AffineMatrix4x4& cm = getCmTransform();
  const Vec3 local = m_massProperties.getInertiaTensor() * cm.transform3x3Inv(getAngularVelocity());
  return cm.transformVector(local);
}

Real RigidBody::getPotentialEnergy() const
{
  return m_system ? -m_massProperties.getMass() * (m_system->getUniformGravity() * getCmPosition()) : 0;
}

Real RigidBody::getTranslationalEnergy() const { return getLinearMomentum() * getVelocity() * 0.5; }
Real RigidBody::getRotationalEnergy() const { return getAngularMomentum() * getAngularVelocity() * 0.5; }

bool RigidBody::add(Geometry* geometry, bool keepWorldTransform)
{
  if (!geometry) return false;
  return add(geometry, keepWorldTransform ? geometry->getTransform() : geometry->getLocalTransform(),
             keepWorldTransform);
}

bool RigidBody::add(Geometry* geometry, const AffineMatrix4x4& transform, bool inWorld)
{
  const ref_ptr<Geometry> keep(geometry);
  if (!geometry || geometry->m_rigidBody) return false;
  const AffineMatrix4x4 place = transform; // may be a view of the geometry's own row
  geometry->m_rigidBody = this;
  m_geometries.push_back(keep);
  geometry->m_frame->setParent(m_frame.get());
  if (inWorld)
    geometry->m_frame->setMatrix(place);
  else
    geometry->m_frame->setLocalMatrix(place);
  updateMassProperties(m_massProperties.getAutoGenerateMask());
  if (m_system && m_system->getSpace()) m_system->getSpace()->add(geometry);
  return true;
}

bool RigidBody::remove(Geometry* geometry, bool keepLocalTransform)
{
  const auto found = std::find(m_geometries.begin(), m_geometries.end(), geometry);
  if (found == m_geometries.end()) return false;
  const ref_ptr<Geometry> keep(*found);
  if (m_system && m_system->getSpace()) m_system->getSpace()->remove(geometry);
  m_geometries.erase(found);
  geometry->m_rigidBody = nullptr;
  if (keepLocalTransform)
    geometry->m_frame->setParent(nullptr);
  else
    m_frame->removeChild(geometry->m_frame.get());
  updateMassProperties(m_massProperties.getAutoGenerateMask());
  return true;
}

void RigidBody::updateMassProperties(UInt32 mask)
{
  const Real mass = calculateMass();
  if (!(mass > 0) || !std::isfinite(mass)) return;
  if (mask & MassProperties::CM_OFFSET) m_cmFrame->setLocalTranslate(calculateCenterOfMassOffset());
  const Real newMass = mask & MassProperties::MASS ? mass : m_massProperties.getMass();
  const SPDMatrix3x3 inertia = mask & MassProperties::INERTIA ? calculateInertia() * (newMass / mass)
                                                              : m_massProperties.getInertiaTensor();
  // Thin or vast shapes can have an inertia beyond the range of numbers.
  if (inertia.isValid() && std::isfinite(inertia.determinant())) m_massProperties.write(newMass, inertia);
}

namespace {
Real massOf(const Geometry& geometry)
{
  const kelCollide::Shape* shape = geometry.getShape();
  const Material* material = geometry.getMaterial();
  if (!material) material = Material::getDefaultMaterial();
  return shape ? shape->getVolume() * material->getBulkMaterial()->getDensity() : 0;
}

/// Transform of a geometry's shape to the model frame.
AffineMatrix4x4 shapeToModel(const Geometry& geometry)
{
  return geometry.getShapeTransform() * geometry.getLocalTransform();
}
} // namespace

Real RigidBody::calculateMass() const
{
  Real mass = 0;
  for (const auto& geometry : m_geometries) mass += massOf(*geometry);
  return mass;
}

Vec3 RigidBody::calculateCenterOfMassOffset() const
{
  Vec3 sum;
  for (const auto& geometry : m_geometries) {
    if (const Real mass = massOf(*geometry); mass > 0)
      sum += shapeToModel(*geometry).transformPoint(geometry->getShape()->getCenter()) * mass;
  }
  const Real mass = calculateMass();
  return mass > 0 ? sum / mass : sum;
}

SPDMatrix3x3 RigidBody::calculateInertia() const
{
  const AffineMatrix4x4 modelToCm = m_cmFrame->getLocalMatrix().inverse();
  SPDMatrix3x3 sum = SPDMatrix3x3(Vec3());
  for (const auto& geometry : m_geometries) {
    const Real mass = massOf(*geometry);
    if (!(mass > 0)) continue;
    const kelCollide::Shape& shape = *geometry->getShape();
    sum = sum + transformInertia(shape.calculateInertia(mass), mass, shape.getCenter(),
                                 shapeToModel(*geometry) * modelToCm, Vec3());
  }
  return sum;
}

} // namespace kel
