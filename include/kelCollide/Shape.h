#pragma once
#include "kel/Referenced.h"
#include "kel/SPDMatrix3x3.h"
#include "kelCollide/BoundingAABB.h"
#include "kelStream/Serializable.h"

namespace kelCollide {

class Geometry;
class ShapeGroup;

/// A solid in its own frame. A shape belongs to at most one geometry or group. Metres and kilograms.
class Shape : public kel::Referenced, public kelStream::Serializable
{
public:
  enum Type
  {
    GROUP = 0,
    BOX = 1,
    CAPSULE = 2,
    CYLINDER = 3,
    LINE = 4,
    PLANE = 5,
    SPHERE = 6,
    TRIMESH = 7,
    HEIGHT_FIELD = 8,
    CONVEX = 9,
    WIRE_SHAPE = 10,
    NUM_TYPES = 11
  };

  Type getType() const { return m_type; }
  /// The name of the type; "Unknown" for a code outside the types.
  kel::String getTypeName() const { return getTypeName(static_cast<unsigned char>(m_type)); }
  static kel::String getTypeName(unsigned char type);
  bool isGroup() const { return m_type == GROUP; }
  /// This shape as a group, null if it is none.
  ShapeGroup* asGroup();
  const ShapeGroup* asGroup() const;

  /// Volume, m3; 0 for shapes that have none.
  virtual kel::Real getVolume() const { return 0; }
  /// Centre of volume in the shape's frame.
  virtual kel::Vec3 getCenter() const { return kel::Vec3(); }
  /// Inertia about the centre of volume, along the shape's axes, for a mass in kg spread evenly, kg m2.
  virtual kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const;
  /// Whether `getSupportPoint` answers.
  virtual bool hasSupportFunction() const { return false; }
  /// The point of the solid that lies furthest along a direction, both in the shape's frame.
  virtual kel::Vec3 getSupportPoint(const kel::Vec3& direction) const;
  /// The box around the solid in the shape's frame.
  virtual BoundingAABB calculateLocalBound() const = 0;

  /// The box around the solid in the world, as of the last `updateBoundingVolume`.
  const BoundingAABB& getBoundingVolume() const { return m_bound; }
  /// Brings the bounding volume up to the transform.
  virtual const BoundingAABB& updateBoundingVolume();
  /// Sets the shape's transform to the world, and those of shapes below it.
  virtual void propagateTransform(const kel::AffineMatrix4x4& transform) { m_transform = transform; }
  /// Transform to the world, as of the last `propagateTransform`.
  const kel::AffineMatrix4x4& getTransform() const { return m_transform; }
  /// The box around the eight corners of a transformed box.
  static BoundingAABB calculateBound(const kel::AffineMatrix4x4& transform, const BoundingAABB& bound);

  /// The geometry that the shape belongs to, directly or through groups; null for none. Not owned.
  Geometry* getGeometry() { return m_geometry; }
  const Geometry* getGeometry() const { return m_geometry; }
  /// Grows with every change of the shape's form, also with those that come by what it shares with others.
  virtual kel::UInt32 getModifiedCount() const { return m_modifiedCount; }

protected:
  explicit Shape(Type type) : m_type(type) {}
  ~Shape() override = default;
  /// To be called after every change of the form.
  void modified(kel::UInt32 changes = 1) { m_modifiedCount += changes; }
  virtual void setGeometry(Geometry* geometry) { m_geometry = geometry; }

  BoundingAABB m_bound;

private:
  friend class Geometry;
  friend class ShapeGroup;

  const Type m_type;
  kel::UInt32 m_modifiedCount = 0;
  kel::AffineMatrix4x4 m_transform;
  Geometry* m_geometry = nullptr;
  ShapeGroup* m_parent = nullptr;
};

} // namespace kelCollide
