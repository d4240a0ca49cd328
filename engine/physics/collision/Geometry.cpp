#include "kelCollide/Geometry.h"
#include "collision/GeometryRows.h"
#include "kel/Property.h"
#include "kel/RigidBody.h"
#include "kelCollide/ShapeGroup.h"
#include "kelCollide/Space.h"
#include <algorithm>

namespace kelCollide {

using kel::AffineMatrix4x4;
using kel::Vec3f;

/// The frame of a geometry: tells it when it moves.
class Geometry::OwnFrame : public kel::Frame
{
public:
  explicit OwnFrame(Geometry& geometry) : m_geometry(&geometry) {}
  /// The frame may outlive its geometry.
  void release() { m_geometry = nullptr; }

private:
  void postTransformUpdate() override
  {
    if (m_geometry) m_geometry->moved();
  }

  Geometry* m_geometry;
};

Geometry::Geometry(const kel::Name& name)
    : m_name(name), m_entity(GeometryRows::instance().storage->createInstance()),
      m_row(m_entity.calculateIndex()), m_frame(new OwnFrame(*this))
{}

Geometry::Geometry(Shape* shape) : Geometry() { add(shape); }

Geometry::Geometry(Shape* shape, const AffineMatrix4x4& transform) : Geometry() { add(shape, transform); }

Geometry::~Geometry()
{
  if (m_shape) m_shape->setGeometry(nullptr);
  static_cast<OwnFrame*>(m_frame.get())->release();
  m_entity.destroy();
}

kel::PropertyContainer* Geometry::getPropertyContainer()
{
  if (!m_properties) m_properties = new kel::PropertyContainer;
  return m_properties.get();
}

bool Geometry::add(Shape* shape, const AffineMatrix4x4& transform)
{
  const kel::ref_ptr<Shape> keep(shape);
  if (!shape || shape->m_geometry || shape->m_parent) return false;
  if (m_shape) {
    if (!m_shape->isGroup()) {
      kel::ref_ptr<ShapeGroup> group = new ShapeGroup;
      m_shape->setGeometry(nullptr);
      group->addChild(m_shape.get(), m_shapeTransform);
      m_shape = group.get();
      m_shapeTransform = AffineMatrix4x4();
      m_shape->setGeometry(this);
    }
    m_shape->asGroup()->addChild(shape, transform);
  } else {
    m_shape = shape;
    m_shapeTransform = transform;
    shape->setGeometry(this);
  }
  shapeChanged();
  return true;
}

bool Geometry::remove(Shape* shape)
{
  if (!shape || shape->m_geometry != this) return false;
  if (m_shape == shape) {
    shape->setGeometry(nullptr);
    m_shape = nullptr;
  } else if (!m_shape->isGroup() || !m_shape->asGroup()->removeChild(shape)) {
    return false;
  }
  shapeChanged();
  return true;
}

const AffineMatrix4x4& Geometry::getTransform() const { return GeometryRows::instance().transform[m_row]; }

void Geometry::setEnable(bool enable) { setFlag(GeometryRows::ENABLED, enable); }

bool Geometry::getEnable() const { return hasFlag(GeometryRows::ENABLED); }

void Geometry::setEnableCollisions(bool enable) { setFlag(GeometryRows::COLLISIONS, enable); }

bool Geometry::getEnableCollisions() const { return hasFlag(GeometryRows::COLLISIONS); }

void Geometry::setEnableCollisions(const Geometry* other, bool enable)
{
  if (m_space) m_space->setEnableCollisions(this, other, enable);
}

bool Geometry::getEnableCollisions(const Geometry* other) const
{
  return !m_space || m_space->getEnableCollisions(this, other);
}

bool Geometry::canCollide(const Geometry* other) const
{
  return m_space ? m_space->canCollide(this, other) : Space::canCollide(this, other, nullptr);
}

void Geometry::setSensor(bool sensor) { setFlag(GeometryRows::SENSOR, sensor); }

bool Geometry::isSensor() const { return hasFlag(GeometryRows::SENSOR); }

void Geometry::addToGroup(CollisionGroupManager::Group group)
{
  if (!isInGroup(group)) m_groups.push_back(group);
}

bool Geometry::isInGroup(CollisionGroupManager::Group group) const
{
  return std::find(m_groups.begin(), m_groups.end(), group) != m_groups.end();
}

void Geometry::updateBoundingVolume()
{
  BoundingAABB& bound = GeometryRows::instance().bound[m_row];
  bound = m_shape ? m_shape->updateBoundingVolume() : BoundingAABB();
}

BoundingAABB* Geometry::getBoundingVolume() { return &GeometryRows::instance().bound[m_row]; }

void Geometry::setSurfaceVelocity(const Vec3f& velocity)
{
  GeometryRows::instance().surfaceVelocity[m_row] = velocity;
}

const Vec3f& Geometry::getSurfaceVelocity() const { return GeometryRows::instance().surfaceVelocity[m_row]; }

void Geometry::setFlag(kel::UInt32 flag, bool on)
{
  kel::UInt32& flags = GeometryRows::instance().flags[m_row];
  flags = on ? flags | flag : flags & ~flag;
}

bool Geometry::hasFlag(kel::UInt32 flag) const { return GeometryRows::instance().flags[m_row] & flag; }

void Geometry::moved()
{
  const AffineMatrix4x4& matrix = m_frame->getMatrix();
  GeometryRows::instance().transform[m_row] = matrix;
  if (m_shape) m_shape->propagateTransform(m_shapeTransform * matrix);
  m_placeChanged = true;
}

void Geometry::shapeChanged()
{
  ++m_shapeChanges;
  moved();
  if (m_rigidBody) m_rigidBody->updateMassProperties(m_rigidBody->getMassProperties()->getAutoGenerateMask());
}

} // namespace kelCollide
