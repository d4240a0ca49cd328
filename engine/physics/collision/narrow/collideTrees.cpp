#include "collision/narrow/collideTrees.h"
#include "collision/narrow/collideShapes.h"
#include "collision/narrow/isSound.h"
#include "kelCollide/ShapeGroup.h"

namespace kelCollide {

namespace {

bool areNear(const Shape& first, const Shape& second, kel::Real reach)
{
  BoundingAABB bound = first.getBoundingVolume();
  bound.min() -= kel::Vec3(reach);
  bound.max() += kel::Vec3(reach);
  return bound.hasOverlap(second.getBoundingVolume());
}

} // namespace

void collideTrees(const Shape& first, const Shape& second, kel::Real reach, Patch& patch)
{
  if (!areNear(first, second, reach)) return;
  if (const ShapeGroup* group = first.asGroup()) {
    for (const auto& child : group->getChildren()) collideTrees(*child, second, reach, patch);
  } else if (const ShapeGroup* other = second.asGroup()) {
    for (const auto& child : other->getChildren()) collideTrees(first, *child, reach, patch);
  } else if (isSound(first) && isSound(second)) {
    collideShapes(first, second, reach, patch);
  }
}

} // namespace kelCollide
