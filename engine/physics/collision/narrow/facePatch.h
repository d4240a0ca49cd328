#pragma once
#include "collision/narrow/Patch.h"
#include "collision/narrow/Solid.h"

namespace kelCollide {

/// Where faces of two solids meet along a normal, from the second to the first: the points of their common
/// outline that are not further apart than `reach`, added to the patch. False if there are none, or if no
/// face is a polygon that looks along the normal.
bool meetFaces(const Face& first, const Face& second, const kel::Vec3& normal, kel::Real reach, Patch& patch);

} // namespace kelCollide
