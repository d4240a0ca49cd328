#pragma once
#include "kel/Frame.h"
#include "kel/Material.h"
#include "kel/ref_ptr.h"
#include "kelCollide/CollisionGroupManager.h"
#include "kelCollide/Shape.h"
#include <vector>

namespace kel {
class PropertyContainer;
class RigidBody;
} // namespace kel

namespace kelCollide {

class Space;

/// What takes part in collision detection: shapes, a place, a material. It stands still unless it rides on a
/// body.
class Geometry : public kel::Referenced, public virtual kelStream::Serializable
{
public:
  /// A geometry without shapes.
  explicit Geometry(const kel::Name& name = kel::Name());
  /// A geometry of one shape at the frame's origin, or at a transform to the frame.
  explicit Geometry(Shape* shape);
  Geometry(Shape* shape, const kel::AffineMatrix4x4& transform);
  Geometry(const Geometry&) = delete;
  Geometry& operator=(const Geometry&) = delete;

  /// Takes a reference on a shape; a second one turns the geometry's shape into a group. False for null and
  /// for a shape that has a geometry or a group already.
  bool add(Shape* shape) { return add(shape, kel::AffineMatrix4x4()); }
  bool add(Shape* shape, const kel::AffineMatrix4x4& transform);
  /// Lets a shape go; false if it is not one of this geometry's.
  bool remove(Shape* shape);
  /// The shape, a group if there are several, null if there is none. Not owned.
  Shape* getShape() const { return m_shape.get(); }
  /// Transform of the shape to the geometry's frame.
  const kel::AffineMatrix4x4& getShapeTransform() const { return m_shapeTransform; }

  /// The name, which need not be the only one of its kind.
  const kel::String& getName() const { return m_name.str(); }
  /// Renames the geometry.
  void setName(const kel::Name& name) { m_name = name; }
  /// A number that no other geometry of this process has or had.
  kel::UInt32 getId() const { return m_entity.getId(); }
  /// The properties that applications attach, made on the first call. Not owned.
  kel::PropertyContainer* getPropertyContainer();
  /// The row of this geometry in the storage of all geometries.
  kelData::EntityPtr getEntity() const { return m_entity; }

  /// The geometry's frame, which hangs under the body's frame while it rides on one. Not owned.
  kel::Frame* getFrame() const { return m_frame.get(); }
  /// The body that it rides on, null for none. Not owned.
  kel::RigidBody* getRigidBody() const { return m_rigidBody; }
  /// The frame above the geometry's own, null for none. Not owned.
  kel::Frame* getParentFrame() const { return m_frame->getParent(); }
  /// As `Frame::setParent` of the geometry's frame.
  bool setParentFrame(kel::Frame* parent) { return m_frame->setParent(parent); }
  /// Transform to the world: the geometry's row.
  const kel::AffineMatrix4x4& getTransform() const;
  /// Places the geometry in the world.
  void setTransform(const kel::AffineMatrix4x4& transform) { m_frame->setMatrix(transform); }
  /// Transform to the parent frame.
  const kel::AffineMatrix4x4& getLocalTransform() const { return m_frame->getLocalMatrix(); }
  /// Places the geometry in its parent frame.
  void setLocalTransform(const kel::AffineMatrix4x4& transform) { m_frame->setLocalMatrix(transform); }
  /// Origin in the world, m.
  kel::Vec3 getPosition() const { return getTransform().getTranslate(); }
  /// Moves the origin to a point of the world, m.
  void setPosition(const kel::Vec3& position) { m_frame->setTranslate(position); }
  void setPosition(kel::Real x, kel::Real y, kel::Real z) { setPosition(kel::Vec3(x, y, z)); }
  /// Origin in the parent frame, m.
  kel::Vec3 getLocalPosition() const { return m_frame->getLocalTranslate(); }
  /// Moves the origin to a point of the parent frame, m.
  void setLocalPosition(const kel::Vec3& position) { m_frame->setLocalTranslate(position); }
  void setLocalPosition(kel::Real x, kel::Real y, kel::Real z) { setLocalPosition(kel::Vec3(x, y, z)); }
  /// Rotation to the world.
  kel::Quat getRotation() const { return getTransform().getRotate(); }
  /// Sets the rotation to the world; the origin stays.
  void setRotation(const kel::Quat& rotation) { m_frame->setRotate(rotation); }
  /// Rotation to the parent frame.
  kel::Quat getLocalRotation() const { return m_frame->getLocalRotate(); }
  /// Sets the rotation to the parent frame; the origin stays.
  void setLocalRotation(const kel::Quat& rotation) { m_frame->setLocalRotate(rotation); }

  /// Whether the geometry exists for collision detection; true at first.
  void setEnable(bool enable);
  bool getEnable() const;
  bool isEnabled() const { return getEnable(); }
  /// Whether it collides with anything; true at first.
  void setEnableCollisions(bool enable);
  bool getEnableCollisions() const;
  /// Whether it collides with another one, as far as the space's pairs are concerned. Does nothing without a
  /// space.
  void setEnableCollisions(const Geometry* other, bool enable);
  /// Whether the pair with another one is enabled in the space; true without a space.
  bool getEnableCollisions(const Geometry* other) const;
  /// What its space answers to `Space::canCollide`; false for null.
  bool canCollide(const Geometry* other) const;
  /// A sensor sees contacts and exerts no force; false at first.
  void setSensor(bool sensor);
  bool isSensor() const;

  /// Puts the geometry into a group, or takes it out; see `CollisionGroupManager`. A geometry may be in any
  /// number of groups.
  void addGroup(kel::UInt32 number) { addToGroup(CollisionGroupManager::groupOf(number)); }
  void addGroup(const kel::Name& name) { addToGroup(CollisionGroupManager::groupOf(name)); }
  void removeGroup(kel::UInt32 number) { std::erase(m_groups, CollisionGroupManager::groupOf(number)); }
  void removeGroup(const kel::Name& name) { std::erase(m_groups, CollisionGroupManager::groupOf(name)); }
  void removeAllGroups() { m_groups.clear(); }
  bool hasGroup(kel::UInt32 number) const { return isInGroup(CollisionGroupManager::groupOf(number)); }
  bool hasGroup(const kel::Name& name) const { return isInGroup(CollisionGroupManager::groupOf(name)); }
  const std::vector<CollisionGroupManager::Group>& getGroups() const { return m_groups; }

  /// The space that it was added to, null for none. Not owned.
  Space* getSpace() const { return m_space; }
  /// Brings the bounding volume up to the transform. The space does so in each update.
  void updateBoundingVolume();
  /// The box around the geometry in the world, as of the last update: the geometry's row.
  virtual BoundingAABB* getBoundingVolume();

  /// The material; null means the default one.
  void setMaterial(kel::Material* material) { m_material = material; }
  /// The material, null for the default one. Not owned.
  kel::Material* getMaterial() const { return m_material.get(); }
  /// Goes back to the default material.
  void removeMaterial() { m_material = nullptr; }

  /// Velocity of the surface against the geometry, in the geometry's frame, m/s: a conveyor belt.
  void setSurfaceVelocity(const kel::Vec3f& velocity);
  /// The surface velocity: the geometry's row.
  const kel::Vec3f& getSurfaceVelocity() const;
  kel::String getClassName() const override { return "Geometry"; }

protected:
  ~Geometry() override;

private:
  friend class kel::RigidBody;
  friend class Space;
  class OwnFrame;

  void addToGroup(CollisionGroupManager::Group group);
  bool isInGroup(CollisionGroupManager::Group group) const;
  void setFlag(kel::UInt32 flag, bool on);
  bool hasFlag(kel::UInt32 flag) const;
  void moved();
  void shapeChanged();

  kel::Name m_name;
  kel::ref_ptr<kel::PropertyContainer> m_properties; // null until someone asks
  kelData::EntityPtr m_entity;
  kel::Index m_row;
  kel::ref_ptr<kel::Frame> m_frame;
  kel::ref_ptr<Shape> m_shape;
  kel::AffineMatrix4x4 m_shapeTransform;
  kel::ref_ptr<kel::Material> m_material;
  std::vector<CollisionGroupManager::Group> m_groups;
  kel::RigidBody* m_rigidBody = nullptr;
  Space* m_space = nullptr;
  kel::UInt32 m_spaceOrder = 0; // grows with each addition to the space
  bool m_placeChanged = true;   // since the space looked
  kel::UInt32 m_shapeChanges = 0;
};

} // namespace kelCollide
