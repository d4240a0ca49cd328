#pragma once
#include "kel/AffineMatrix4x4.h"
#include "kelCollide/BoundingAABB.h"
#include "kelData/EntityStorage.h"

namespace kelCollide {

/// The rows of all geometries of the process. They are never destroyed: geometries may outlive any static
/// object.
struct GeometryRows
{
  /// Bits of `flags`.
  enum Flag : kel::UInt32
  {
    ENABLED = 1,
    COLLISIONS = 2,
    SENSOR = 4
  };

  kel::ref_ptr<kelData::EntityStorage> storage;
  kel::AffineMatrix4x4* transform = nullptr; ///< to the world
  kel::Vec3f* surfaceVelocity = nullptr;     ///< m/s, in the geometry's frame
  BoundingAABB* bound = nullptr;             ///< in the world
  kel::UInt32* flags = nullptr;

  static const GeometryRows& instance();

private:
  GeometryRows();
};

} // namespace kelCollide
