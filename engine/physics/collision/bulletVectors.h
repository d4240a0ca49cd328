#pragma once
#include "kel/Vec3.h"
#include <LinearMath/btVector3.h>

namespace kelCollide {

inline btVector3 toBullet(const kel::Vec3& v) { return btVector3(v.x(), v.y(), v.z()); }

inline kel::Vec3 fromBullet(const btVector3& v) { return kel::Vec3(v.x(), v.y(), v.z()); }

} // namespace kelCollide
