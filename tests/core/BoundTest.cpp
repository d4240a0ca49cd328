#include "kel/Bound.h"
#include "Seeded.h"
#include "kel/Interval.h"
#include "kel/Plane.h"
#include "kel/RangeReal.h"
#include <gtest/gtest.h>

using namespace kel;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();

TEST(Bound, OverlapIsWhatBothContain)
{
  Seeded seeded;
  for (int i = 0; i < 500; ++i) {
    const Vec3 a = seeded.vector(3), b = seeded.vector(3), c = seeded.vector(3), d = seeded.vector(3);
    const Bound3 first(Vec3::componentMin(a, b), Vec3::componentMax(a, b));
    const Bound3 second(Vec3::componentMin(c, d), Vec3::componentMax(c, d));
    const Bound3 overlap = first.calculateOverlap(second);
    EXPECT_EQ(overlap.isValid(), first.hasOverlap(second));
    const Vec3 p = seeded.vector(3);
    EXPECT_EQ(overlap.contains(p), first.contains(p) && second.contains(p));
    EXPECT_TRUE(first.contains(a) && first.contains(first.mid()));
    EXPECT_TRUE(first.hasOverlap(Bound3(first.max(), first.max() + Vec3(1)))) << "touching counts";
  }
}

TEST(Bound, IsValidWithoutExtentAndNotWithNaN)
{
  EXPECT_TRUE(Bound3().isValid());
  EXPECT_EQ(Bound3().size(), Vec3());
  EXPECT_FALSE(Bound3(Vec3(), Vec3(1, NaN, 1)).isValid());
  EXPECT_FALSE(Bound1(NaN, 1).isValid());
  EXPECT_FALSE(Bound1(0, 1).contains(NaN));
  EXPECT_TRUE(Bound1(-INF, INF).contains(INF));
}

TEST(Interval, IsNotReorderedAndMayBeEmpty)
{
  const Interval empty(2, 1);
  EXPECT_TRUE(empty.isEmpty() && !empty.hasElements());
  EXPECT_EQ(empty.getLength(), -1);
  EXPECT_FALSE(empty.hasOverlapWith(Interval()) || Interval().hasOverlapWith(empty));
  EXPECT_EQ(Interval().getLength(), INF);
  EXPECT_TRUE(Interval(1, 1).hasElements());
  EXPECT_FALSE(Interval().containsValue(NaN));
  EXPECT_FALSE(Interval(NaN, 1).isEmpty() || Interval(NaN, 1).hasElements());
}

TEST(Interval, OverlapIsWhatBothContain)
{
  Seeded seeded;
  for (int i = 0; i < 500; ++i) {
    const Interval a(seeded.number(0, 3), seeded.number(0, 3)), b(seeded.number(0, 3), seeded.number(0, 3));
    const Interval overlap = a.computeOverlapWith(b);
    EXPECT_EQ(a.hasOverlapWith(b), overlap.hasElements());
    const double value = seeded.number(0, 3);
    EXPECT_EQ(overlap.containsValue(value), a.containsValue(value) && b.containsValue(value));
  }
  EXPECT_TRUE(Interval(1, 2).hasOverlapWith(Interval(0, 3)) && Interval(0, 3).hasOverlapWith(Interval(1, 2)));
  Interval half;
  half.intersectWithRightUnbounded(3);
  EXPECT_EQ(half.minValue(), 3);
  half.intersectWithLeftUnbounded(2);
  EXPECT_TRUE(half.isEmpty());
}

TEST(RangeReal, IsAlwaysInOrder)
{
  EXPECT_EQ(RangeReal(2, 1).lower(), 1);
  EXPECT_EQ(RangeReal(2, 1).span(), 1);
  EXPECT_EQ(RangeReal(5).lower(), -5);
  EXPECT_EQ(RangeReal(-5).lower(), -5);
  EXPECT_TRUE(RangeReal(INF).isInfinite());
  EXPECT_FALSE(RangeReal(0, INF).isInfinite());
  EXPECT_FALSE(RangeReal(std::numeric_limits<double>::max()).isInfinite());
}

TEST(Plane, LiesThroughItsPoints)
{
  Seeded seeded;
  for (int i = 0; i < 200; ++i) {
    const Vec3 a = seeded.vector(), b = seeded.vector(), c = seeded.vector();
    const Plane plane(a, b, c);
    EXPECT_NEAR(plane.getNormal().length(), 1, 1e-14);
    EXPECT_GT(plane.getNormal() * cross(b - a, c - a), 0) << "counter-clockwise";
    for (const Vec3& point : {a, b, c}) EXPECT_NEAR(plane.signedDistanceToPoint(point), 0, 1e-12);
    const AffineMatrix4x4 m = seeded.rigid();
    const Plane moved = plane.calculateTransformedPlane(m);
    const Vec3 p = seeded.vector();
    EXPECT_NEAR(moved.signedDistanceToPoint(m.transformPoint(p)), plane.signedDistanceToPoint(p), 1e-12);
  }
}

TEST(Plane, TakesWhatItIsGiven)
{
  EXPECT_EQ(Plane().signedDistanceToPoint(Vec3(0, 0, 3)), 3);
  EXPECT_EQ(Plane(Vec3(1, 2, 3), Vec3(2, 4, 6), Vec3(3, 6, 9)).getNormal(), Vec3()) << "points of a line";
  const Plane twice(Vec3(0, 2, 0), Vec3(5, 1, 5));
  EXPECT_EQ(twice.asVec4(), Vec4(0, 2, 0, -2));
  EXPECT_EQ(twice.signedDistanceToPoint(Vec3(0, 3, 0)), 4) << "not normalised";
}

} // namespace
