#include "kelCollide/Shape.h"
#include "body/inertia.h"
#include "kelCollide/ShapeGroup.h"
#include <algorithm>
#include <array>

namespace kelCollide {

using kel::AffineMatrix4x4;
using kel::Real;
using kel::SPDMatrix3x3;
using kel::Vec3;

kel::String Shape::getTypeName(unsigned char type)
{
  static constexpr std::array<const char*, NUM_TYPES> names = {
      "Group",  "Box",     "Capsule",     "Cylinder", "Line",     "Plane",
      "Sphere", "Trimesh", "HeightField", "Convex",   "WireShape"};
  return type < names.size() ? names[type] : "Unknown";
}

ShapeGroup* Shape::asGroup() { return isGroup() ? static_cast<ShapeGroup*>(this) : nullptr; }

const ShapeGroup* Shape::asGroup() const
{
  return isGroup() ? static_cast<const ShapeGroup*>(this) : nullptr;
}

SPDMatrix3x3 Shape::calculateInertia(Real) const { return SPDMatrix3x3(Vec3()); }

Vec3 Shape::getSupportPoint(const Vec3&) const { return {}; }

const BoundingAABB& Shape::updateBoundingVolume()
{
  if (!hasSupportFunction()) return m_bound = calculateBound(m_transform, calculateLocalBound());
  for (std::size_t i = 0; i < 3; ++i) {
    Vec3 axis;
    axis[i] = 1;
    const Vec3 local = m_transform.transform3x3Inv(axis);
    m_bound.min()[i] = m_transform.transformPoint(getSupportPoint(-local))[i];
    m_bound.max()[i] = m_transform.transformPoint(getSupportPoint(local))[i];
  }
  return m_bound;
}

BoundingAABB Shape::calculateBound(const AffineMatrix4x4& transform, const BoundingAABB& bound)
{
  BoundingAABB result;
  result.expand(bound, transform);
  return result;
}

bool ShapeGroup::addChild(Shape* child, const AffineMatrix4x4& transform)
{
  if (!child || child->m_geometry || child->m_parent) return false;
  for (const Shape* shape = this; shape; shape = shape->m_parent)
    if (shape == child) return false;
  m_children.emplace_back(child);
  m_transforms.push_back(transform);
  child->m_parent = this;
  child->setGeometry(getGeometry());
  child->propagateTransform(transform * getTransform());
  modified();
  return true;
}

bool ShapeGroup::removeChild(Shape* child)
{
  const auto found = std::find(m_children.begin(), m_children.end(), child);
  return removeChild(static_cast<std::size_t>(found - m_children.begin()));
}

bool ShapeGroup::removeChild(std::size_t index)
{
  if (index >= m_children.size()) return false;
  Shape& child = *m_children[index];
  child.m_parent = nullptr;
  child.setGeometry(nullptr);
  modified(1 + child.getModifiedCount()); // which the sum lacks from now on
  m_children.erase(m_children.begin() + static_cast<std::ptrdiff_t>(index));
  m_transforms.erase(m_transforms.begin() + static_cast<std::ptrdiff_t>(index));
  return true;
}

Shape* ShapeGroup::getChild(std::size_t index) const
{
  return index < m_children.size() ? m_children[index].get() : nullptr;
}

bool ShapeGroup::setChildTransform(std::size_t index, const AffineMatrix4x4& transform)
{
  if (index >= m_children.size()) return false;
  m_transforms[index] = transform;
  m_children[index]->propagateTransform(transform * getTransform());
  modified();
  return true;
}

kel::UInt32 ShapeGroup::getModifiedCount() const
{
  kel::UInt32 count = Shape::getModifiedCount();
  for (const auto& child : m_children) count += child->getModifiedCount();
  return count;
}

Real ShapeGroup::getVolume() const
{
  Real volume = 0;
  for (const auto& child : m_children) volume += child->getVolume();
  return volume;
}

Vec3 ShapeGroup::getCenter() const
{
  Vec3 sum;
  for (std::size_t i = 0; i < m_children.size(); ++i)
    sum += m_transforms[i].transformPoint(m_children[i]->getCenter()) * m_children[i]->getVolume();
  const Real volume = getVolume();
  return volume > 0 ? sum / volume : sum;
}

SPDMatrix3x3 ShapeGroup::calculateInertia(Real mass) const
{
  const Real volume = getVolume();
  SPDMatrix3x3 sum = SPDMatrix3x3(Vec3());
  if (volume <= 0) return sum;
  const Vec3 center = getCenter();
  for (std::size_t i = 0; i < m_children.size(); ++i) {
    const Shape& child = *m_children[i];
    const Real childMass = mass * child.getVolume() / volume;
    sum = sum + kel::transformInertia(child.calculateInertia(childMass), childMass, child.getCenter(),
                                      m_transforms[i], center);
  }
  return sum;
}

BoundingAABB ShapeGroup::calculateLocalBound() const
{
  BoundingAABB bound;
  for (std::size_t i = 0; i < m_children.size(); ++i)
    bound.expand(m_children[i]->calculateLocalBound(), m_transforms[i]);
  return bound;
}

const BoundingAABB& ShapeGroup::updateBoundingVolume()
{
  m_bound.reset();
  for (const auto& child : m_children) m_bound.expand(child->updateBoundingVolume());
  return m_bound;
}

void ShapeGroup::propagateTransform(const AffineMatrix4x4& transform)
{
  Shape::propagateTransform(transform);
  for (std::size_t i = 0; i < m_children.size(); ++i)
    m_children[i]->propagateTransform(m_transforms[i] * transform);
}

ShapeGroup::~ShapeGroup()
{
  for (const auto& child : m_children) {
    child->m_parent = nullptr;
    child->setGeometry(nullptr);
  }
}

void ShapeGroup::setGeometry(Geometry* geometry)
{
  Shape::setGeometry(geometry);
  for (const auto& child : m_children) child->setGeometry(geometry);
}

} // namespace kelCollide
