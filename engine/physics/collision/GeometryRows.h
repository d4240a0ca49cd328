#pragma once
#include "Rows.h"
#include "kel/AffineMatrix4x4.h"
#include "kelCollide/BoundingAABB.h"

namespace kelCollide {

/// The rows of all geometries.
struct GeometryRows : kel::Rows<GeometryRows>
{
  /// Bits of `flags`.
  enum Flag : kel::UInt32
  {
    ENABLED = 1,
    COLLISIONS = 2,
    SENSOR = 4
  };

  kel::AffineMatrix4x4* transform = nullptr; ///< to the world
  kel::Vec3f* surfaceVelocity = nullptr;     ///< m/s, in the geometry's frame
  BoundingAABB* bound = nullptr;             ///< in the world
  kel::UInt32* flags = nullptr;

private:
  friend Rows;
  GeometryRows();
};

} // namespace kelCollide
