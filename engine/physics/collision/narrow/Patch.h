#pragma once
#include "kel/Vec3.h"
#include <vector>

namespace kelCollide {

/// A pair of near points of two surfaces, in the world.
struct PatchPoint
{
  kel::Vec3 onFirst;
  kel::Vec3 onSecond;
  kel::Vec3 normal;       ///< unit, from the second to the first
  kel::Real distance = 0; ///< along the normal, m; negative where the solids overlap
};

/// Where two solids touch or nearly touch.
using Patch = std::vector<PatchPoint>;

/// Keeps at most four of the points from an index on, which have about one normal: those that span a large
/// area, with the deepest among them if it is clearly so. Points in the same place within `tolerance` become
/// one, the deeper.
void reducePatch(Patch& patch, std::size_t begin, kel::Real tolerance);

/// Does so for every group of points with about one normal.
void reduceByNormals(Patch& patch, std::size_t begin, kel::Real tolerance);

/// Swaps the two sides of the points from an index on.
void swapSides(Patch& patch, std::size_t begin);

} // namespace kelCollide
