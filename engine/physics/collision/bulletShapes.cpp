#include "collision/bulletShapes.h"
#include "kelCollide/Box.h"
#include "kelCollide/Plane.h"
#include "kelCollide/ShapeGroup.h"
#include "kelCollide/Sphere.h"
#include <BulletCollision/CollisionShapes/btBoxShape.h>
#include <BulletCollision/CollisionShapes/btCompoundShape.h>
#include <BulletCollision/CollisionShapes/btSphereShape.h>
#include <BulletCollision/CollisionShapes/btStaticPlaneShape.h>
#include <cmath>

namespace kelCollide {

namespace {
constexpr btScalar MARGIN = 1e-4; // m; the library's own 0.04 rounds edges and corners that much

bool isSize(kel::Real length) { return length >= 0 && std::isfinite(length); }

/// Null for a shape that has no sound size.
std::unique_ptr<btCollisionShape> makePrimitive(const Shape& shape)
{
  switch (shape.getType()) {
  case Shape::BOX: {
    const kel::Vec3& size = static_cast<const Box&>(shape).getHalfExtents();
    if (!isSize(size.x()) || !isSize(size.y()) || !isSize(size.z())) return nullptr;
    auto box = std::make_unique<btBoxShape>(toBullet(size));
    box->setMargin(MARGIN);
    return box;
  }
  case Shape::SPHERE: {
    const kel::Real radius = static_cast<const Sphere&>(shape).getRadius();
    return isSize(radius) ? std::make_unique<btSphereShape>(radius) : nullptr;
  }
  case Shape::PLANE: {
    const auto& plane = static_cast<const Plane&>(shape);
    const kel::Real length = plane.getNormal().length();
    if (!(length > 0) || !std::isfinite(length) || !std::isfinite(plane.getDistance())) return nullptr;
    return std::make_unique<btStaticPlaneShape>(toBullet(plane.getNormal() / length),
                                                -plane.getDistance() / length);
  }
  default:
    return nullptr;
  }
}
} // namespace

BulletShape makeBulletShape(const Shape& shape)
{
  BulletShape result;
  if (const ShapeGroup* group = shape.asGroup()) {
    auto compound = std::make_unique<btCompoundShape>();
    for (std::size_t i = 0; i < group->getNumChildren(); ++i) {
      BulletShape child = makeBulletShape(*group->getChild(i));
      if (!child.whole) continue;
      compound->addChildShape(toBullet(group->getChildTransform(i)), child.whole);
      for (auto& part : child.parts) result.parts.push_back(std::move(part));
    }
    if (compound->getNumChildShapes() > 0) result.parts.push_back(std::move(compound));
  } else if (auto primitive = makePrimitive(shape)) {
    result.parts.push_back(std::move(primitive));
  }
  result.whole = result.parts.empty() ? nullptr : result.parts.back().get();
  return result;
}

} // namespace kelCollide
