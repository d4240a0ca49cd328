#pragma once
#include "collision/narrow/Solid.h"

namespace kelCollide {

/// Where two solids are nearest to each other, or the shortest way out of each other.
struct ClosestPoints
{
  kel::Vec3 onFirst;
  kel::Vec3 onSecond;
  kel::Vec3 normal;       ///< unit, from the second to the first
  kel::Real distance = 0; ///< m, negative where they overlap
};

/// False if the solids are further apart than `reach`, and for what is no solid at all.
bool findClosestPoints(const Solid& first, const Solid& second, kel::Real reach, ClosestPoints& result);

} // namespace kelCollide
