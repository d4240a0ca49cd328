#pragma once
#include "collision/narrow/Patch.h"

namespace kelCollide {

class Shape;

/// Adds to the patch where two shapes, or the parts of groups, are not further apart than `reach`; at their
/// transforms to the world and with their bounding volumes up to them. Parts whose form or place is not sound
/// touch nothing.
void collideTrees(const Shape& first, const Shape& second, kel::Real reach, Patch& patch);

} // namespace kelCollide
