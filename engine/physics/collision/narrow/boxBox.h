#pragma once
#include "collision/narrow/Solid.h"

namespace kelCollide {

/// Finds the direction along which two boxes are furthest apart or overlap least, from the second to the
/// first: a normal of one of their faces or one across two edges, the former if they are about as good.
/// False if the boxes are further apart than `reach`.
bool separateBoxes(const BoxSolid& first, const BoxSolid& second, kel::Real reach, kel::Vec3& normal);

} // namespace kelCollide
