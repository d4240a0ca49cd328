#include "collision/narrow/closestPoints.h"
#include "collision/bulletVectors.h"
#include <BulletCollision/CollisionShapes/btConvexInternalShape.h>
#include <BulletCollision/NarrowPhaseCollision/btGjkEpa2.h>
#include <cmath>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

namespace {

/// A solid as the library asks for it, grown by a distance.
class SolidShape final : public btConvexInternalShape
{
public:
  SolidShape(const Solid& solid, Real growth) : m_solid(solid), m_growth(growth)
  {
    m_shapeType = CUSTOM_CONVEX_SHAPE_TYPE;
  }

  btVector3 localGetSupportingVertexWithoutMargin(const btVector3& direction) const override
  {
    const Vec3 d = fromBullet(direction);
    const Vec3 point = m_solid.coreSupport(d);
    return toBullet(m_growth > 0 ? point + d.normal() * m_growth : point);
  }
  void batchedUnitVectorGetSupportingVertexWithoutMargin(const btVector3*, btVector3*, int) const override {}
  void calculateLocalInertia(btScalar, btVector3&) const override {}
  const char* getName() const override { return "Solid"; }

private:
  const Solid& m_solid;
  Real m_growth;
};

/// Fills in the result from points of shapes that are smaller than the solids by `shrink1` and `shrink2`.
void setResult(const Vec3& onFirst, const Vec3& onSecond, const Vec3& normal, Real shrink1, Real shrink2,
               ClosestPoints& result)
{
  result.normal = normal;
  result.onFirst = onFirst - normal * shrink1;
  result.onSecond = onSecond + normal * shrink2;
  result.distance = (result.onFirst - result.onSecond) * normal;
}

bool isUnit(const Vec3& v) { return std::fabs(v.length2() - 1) < 1e-6; }

} // namespace

bool findClosestPoints(const Solid& first, const Solid& second, Real reach, ClosestPoints& result)
{
  const btTransform identity = btTransform::getIdentity();
  Vec3 guess = first.center() - second.center();
  if (!(guess.length2() > 0)) guess = Vec3(0, 0, 1);
  btGjkEpaSolver2::sResults found;

  const SolidShape core1(first, 0);
  const SolidShape core2(second, 0);
  constexpr Real apart = 1e-8; // m; of nearer cores the direction is noise
  if (btGjkEpaSolver2::Distance(&core1, identity, &core2, identity, toBullet(guess), found) &&
      found.distance > apart) {
    if (found.distance > first.rounding() + second.rounding() + reach) return false;
    const Vec3 onFirst = fromBullet(found.witnesses[0]);
    const Vec3 onSecond = fromBullet(found.witnesses[1]);
    setResult(onFirst, onSecond, (onFirst - onSecond).normal(), first.rounding(), second.rounding(), result);
    return true;
  }

  // Cores that overlap, grown a little: then even a point in a segment has a way out, and what just touches
  // overlaps.
  constexpr Real growth = 1e-4; // m
  const SolidShape grown1(first, growth);
  const SolidShape grown2(second, growth);
  if (!btGjkEpaSolver2::Penetration(&grown1, identity, &grown2, identity, toBullet(guess), found, false))
    return false;
  const Vec3 normal = fromBullet(found.normal);
  if (!isUnit(normal)) return false;
  setResult(fromBullet(found.witnesses[0]), fromBullet(found.witnesses[1]), normal, first.rounding() - growth,
            second.rounding() - growth, result);
  return result.distance <= reach;
}

} // namespace kelCollide
