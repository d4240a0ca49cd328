#pragma once
#include "kel/ref_ptr.h"
#include "kelCollide/Shape.h"
#include <cstddef>
#include <vector>

namespace kelCollide {

/// Shapes that act as one, each with its transform to the group. Overlapping parts count twice in the volume.
class ShapeGroup : public Shape
{
public:
  ShapeGroup() : Shape(GROUP) {}

  /// Takes a reference on the child and places it. False for null, for a shape that has a geometry or a group
  /// already, and for one that holds this group.
  bool addChild(Shape* child) { return addChild(child, kel::AffineMatrix4x4()); }
  bool addChild(Shape* child, const kel::AffineMatrix4x4& transform);
  /// Lets a child go; false if it is not one.
  bool removeChild(Shape* child);
  /// Lets the child at an index go; false beyond the last.
  bool removeChild(std::size_t index);

  std::size_t getNumChildren() const { return m_children.size(); }
  /// The child at an index, null beyond the last. Not owned.
  Shape* getChild(std::size_t index) const;
  const std::vector<kel::ref_ptr<Shape>>& getChildren() const { return m_children; }
  /// Transform of a child to the group; throws `std::out_of_range` beyond the last.
  const kel::AffineMatrix4x4& getChildTransform(std::size_t index) const { return m_transforms.at(index); }
  /// Places a child; false beyond the last.
  bool setChildTransform(std::size_t index, const kel::AffineMatrix4x4& transform);

  kel::UInt32 getModifiedCount() const override;
  kel::Real getVolume() const override;
  kel::Vec3 getCenter() const override;
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override;
  BoundingAABB calculateLocalBound() const override;
  const BoundingAABB& updateBoundingVolume() override;
  void propagateTransform(const kel::AffineMatrix4x4& transform) override;
  kel::String getClassName() const override { return "ShapeGroup"; }

protected:
  ~ShapeGroup() override;
  void setGeometry(Geometry* geometry) override;

private:
  std::vector<kel::ref_ptr<Shape>> m_children;
  std::vector<kel::AffineMatrix4x4> m_transforms;
};

} // namespace kelCollide
