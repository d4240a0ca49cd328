#include "kel/BoxFrictionModel.h"
#include <cmath>

namespace kel {

void FrictionModel::calculateTangentPlane(const kelCollide::Geometry*, const kelCollide::Geometry*,
                                          const Vec3&, const Vec3& normal, Real, Vec3& u, Vec3& v) const
{
  calculateTangentPlane(normal, u, v);
}

void FrictionModel::calculateTangentPlane(const Vec3& normal, Vec3& u, Vec3& v)
{
  if (std::fabs(normal.z()) > 0.7071067811865476) {
    u = Vec3(0, -normal.z(), normal.y()).normal();
  } else {
    u = Vec3(-normal.y(), normal.x(), 0).normal();
  }
  v = cross(normal, u);
}

Real BoxFrictionModel::calculateNormalForce(const kelCollide::Geometry*, const kelCollide::Geometry*,
                                            const Vec3&, const Vec3&, Real, Real lastNormalForce,
                                            std::size_t) const
{
  return lastNormalForce;
}

} // namespace kel
