#include "Seeded.h"
#include <cmath>
#include <gtest/gtest.h>

using namespace kel;

namespace {

const double NaN = std::numeric_limits<double>::quiet_NaN();
const double INF = std::numeric_limits<double>::infinity();

TEST(Math, LerpIsExactAtTheEndsAndConstantBeyond)
{
  EXPECT_EQ(lerp(0.1, 0.7, 1), 0.7);
  EXPECT_EQ(lerp(1, 3, 2), 3);
  EXPECT_EQ(lerp(1, 3, -1), 1);
  EXPECT_EQ(lerp(1, 3, 0.25), 1.5);
  EXPECT_TRUE(std::isnan(lerp(1, 3, NaN)));
}

TEST(Math, LogInterpolateSeesItsParameterInSinglePrecision)
{
  EXPECT_NEAR(logInterpolate(1, 100, 0.5), 10, 1e-12);
  const double nearlyOne = 1 - 1e-9;
  EXPECT_EQ(logInterpolate(7, 50, float(nearlyOne)), logInterpolate(7, 50, 1));
  EXPECT_NEAR(logInterpolate(7, 50, 3), 50, 1e-12);
  EXPECT_NEAR(logInterpolate(7, 50, -3), 7, 1e-12);
}

TEST(Math, ClampPrefersTheLowerBoundAndKeepsNaN)
{
  EXPECT_EQ(clamp(5.0, 0.0, 3.0), 3);
  EXPECT_EQ(clamp(-5.0, 0.0, 3.0), 0);
  EXPECT_EQ(clamp(1.0, 4.0, 2.0), 4) << "the lower bound is tested first";
  EXPECT_TRUE(std::isnan(clamp(NaN, 0.0, 1.0)));
  EXPECT_EQ(sign(0.0), 1);
  EXPECT_EQ(sign(NaN), 1);
  EXPECT_EQ(sign(-0.5), -1);
}

TEST(Math, RandomVectorDrawsItsLastElementFirst)
{
  std::srand(4);
  const double first = random(0.0, 1.0), second = random(0.0, 1.0), third = random(0.0, 1.0);
  std::srand(4);
  EXPECT_EQ(Vec3::random(0, 1), Vec3(third, second, first));
  for (int i = 0; i < 100; ++i) {
    const Vec2i v = Vec2i::random(-3, 3);
    EXPECT_LE(std::abs(v.x()), 3);
  }
}

TEST(Vec3, NormalizeHasNoToleranceAndReturnsTheOldLength)
{
  Vec3 null;
  EXPECT_EQ(null.normalize(), 0);
  EXPECT_EQ(null, Vec3());
  EXPECT_EQ(Vec3().normal(), Vec3());

  Vec3 underflowing(1e-200, 0, 0);
  EXPECT_EQ(underflowing.normalize(), 0);
  EXPECT_EQ(underflowing, Vec3(1e-200, 0, 0));

  Vec3 tiny(0, 3e-150, 4e-150);
  EXPECT_DOUBLE_EQ(tiny.normalize(), 5e-150);
  EXPECT_DOUBLE_EQ(tiny.length(), 1);
}

TEST(Vec3, FloatLengthSumsInFloatAndNormalizesInDouble)
{
  const Vec3f v(16777216.0F, 1, 1); // 2^24, whose square swallows the others
  EXPECT_EQ(v.length(), 16777216.0F);

  Vec3f w(0.1F, 0.2F, 0.3F);
  const double factor = 1.0 / w.length();
  const Vec3f expected(float(0.1F * factor), float(0.2F * factor), float(0.3F * factor));
  w.normalize();
  EXPECT_EQ(w, expected);
}

TEST(Vec3, DivisionIsNotAProductWithTheReciprocal)
{
  EXPECT_EQ((Vec3(5, 5, 5) / 49).x(), 5.0 / 49);
  ASSERT_NE(5.0 / 49, 5 * (1.0 / 49)) << "the numbers no longer tell the two apart";
  EXPECT_EQ((Vec3(1, -1, 0) / 0).x(), INF);
}

TEST(Vec3, ExtremesByValueAndByIndex)
{
  const Vec3 v(0, 5, -7);
  EXPECT_EQ(v.minElement(), 0U);
  EXPECT_EQ(v.maxElement(), 2U);
  EXPECT_EQ(v.minComponent(), -7);
  EXPECT_EQ(v.maxComponent(), 5);
  EXPECT_EQ(Vec3(2, -2, 2).minElement(), 0U) << "a tie goes to the lower index";
  EXPECT_EQ(Vec3(1, 2, -2).maxElement(), 1U);
  EXPECT_EQ(Vec3(NaN, 5, 4).minElement(), 2U);
  EXPECT_EQ(Vec3(NaN, 5, 4).maxElement(), 1U);
  EXPECT_EQ(Vec3(NaN, 0, 0).maxElement(), 0U);
  EXPECT_EQ(Vec3(INF, INF, INF).minElement(), 0U);
}

TEST(Vec3, ComparisonsAndValidity)
{
  const double epsilon = 2.220446049250313e-16;
  EXPECT_FALSE(Vec3(epsilon, 0, 0).equalsZero());
  EXPECT_TRUE(Vec3(0, -epsilon / 2, 0).equalsZero());
  EXPECT_TRUE(Vec3f(0, 1e-7F, 0).equalsZero());
  EXPECT_FALSE(Vec3f(0, 0x1p-23F, 0).equalsZero() || Vec3(NaN, 0, 0).equalsZero());
  EXPECT_FALSE(Vec3(NaN, 0, 0) == Vec3(NaN, 0, 0));
  EXPECT_TRUE(Vec3(INF, 0, 0).isValid());
  EXPECT_TRUE(Vec3(0, 0, NaN).isNaN());
}

TEST(Vec3, CrossProductIsAcrossBothAndRightHanded)
{
  EXPECT_EQ(cross(X_AXIS, Y_AXIS), Z_AXIS);
  Seeded seeded;
  for (int i = 0; i < 100; ++i) {
    const Vec3 a = seeded.vector(), b = seeded.vector(), c = cross(a, b);
    EXPECT_NEAR(c * a, 0, 1e-11);
    EXPECT_NEAR(c * b, 0, 1e-11);
    EXPECT_NEAR(c.length2(), a.length2() * b.length2() - (a * b) * (a * b), 1e-8);
  }
}

TEST(Vec3, TheFourthElementInMemoryStaysZero)
{
  Vec3 v = Vec3(1, 2, 3) * 4 + Vec3(5) - Vec3(Vec2(1, 2), 3) / 2;
  v.normalize();
  v.clamp(Vec3(1), Vec3(2));
  static_assert(sizeof(Vec3) == 4 * sizeof(double) && sizeof(Vec3f) == 4 * sizeof(float));
  EXPECT_EQ(v.ptr()[3], 0);
}

} // namespace
