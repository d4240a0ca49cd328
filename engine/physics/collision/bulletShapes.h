#pragma once
#include "kelCollide/Shape.h"
#include <LinearMath/btTransform.h>
#include <memory>
#include <vector>

class btCollisionShape;

namespace kelCollide {

/// A shape of the collision library, with the parts that it is made of.
struct BulletShape
{
  std::vector<std::unique_ptr<btCollisionShape>> parts; // the whole is the last
  btCollisionShape* whole = nullptr;
};

/// A new shape like `shape`; its whole is null for one that cannot collide.
BulletShape makeBulletShape(const Shape& shape);

/// The same transform for column vectors.
inline btTransform toBullet(const kel::AffineMatrix4x4& m)
{
  return btTransform(
      btMatrix3x3(m(0, 0), m(1, 0), m(2, 0), m(0, 1), m(1, 1), m(2, 1), m(0, 2), m(1, 2), m(2, 2)),
      btVector3(m(3, 0), m(3, 1), m(3, 2)));
}

inline btVector3 toBullet(const kel::Vec3& v) { return btVector3(v.x(), v.y(), v.z()); }

inline kel::Vec3 fromBullet(const btVector3& v) { return kel::Vec3(v.x(), v.y(), v.z()); }

} // namespace kelCollide
