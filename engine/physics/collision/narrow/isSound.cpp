#include "collision/narrow/isSound.h"
#include "collision/shapes/Hull.h"
#include "kelCollide/Box.h"
#include "kelCollide/Convex.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
#include "kelCollide/WireShape.h"
#include <cmath>

namespace kelCollide {

namespace {

bool isSize(kel::Real length) { return length >= 0 && std::isfinite(length); }

} // namespace

bool isSound(const Shape& shape)
{
  switch (shape.getType()) {
  case Shape::BOX: {
    const kel::Vec3& half = static_cast<const Box&>(shape).getHalfExtents();
    return isSize(half.x()) && isSize(half.y()) && isSize(half.z());
  }
  case Shape::SPHERE:
    return isSize(static_cast<const Sphere&>(shape).getRadius());
  case Shape::CAPSULE:
  case Shape::WIRE_SHAPE: {
    const auto& capsule = static_cast<const Capsule&>(shape);
    return isSize(capsule.getRadius()) && isSize(capsule.getHeight());
  }
  case Shape::CYLINDER: {
    const auto& cylinder = static_cast<const Cylinder&>(shape);
    return isSize(cylinder.getRadius()) && isSize(cylinder.getHeight());
  }
  case Shape::LINE: {
    const auto& line = static_cast<const Line&>(shape);
    return std::isfinite((line.getFirstPoint() - line.getSecondPoint()).length2());
  }
  case Shape::PLANE: {
    const auto& plane = static_cast<const Plane&>(shape);
    return plane.getNormal().length() > 0 && std::isfinite(plane.asVec4().length2());
  }
  case Shape::CONVEX:
    return !static_cast<const Convex&>(shape).getHull().points.empty();
  case Shape::TRIMESH:
  case Shape::HEIGHT_FIELD:
    return static_cast<const Mesh&>(shape).isValid();
  default:
    return false;
  }
}

} // namespace kelCollide
