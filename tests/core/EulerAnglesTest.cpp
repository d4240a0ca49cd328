#include "Seeded.h"
#include "kel/OrthoMatrix3x3.h"
#include <gtest/gtest.h>
#include <numbers>
#include <string>

using namespace kel;

namespace {

constexpr double PI = std::numbers::pi;
constexpr int SAMPLES = 100;

const std::string NAMES[] = {"XYZs", "ZYXr", "XYXs", "XYXr", "XZYs", "YZXr", "XZXs", "XZXr",
                             "YZXs", "XZYr", "YZYs", "YZYr", "YXZs", "ZXYr", "YXYs", "YXYr",
                             "ZXYs", "YXZr", "ZXZs", "ZXZr", "ZYXs", "XYZr", "ZYZs", "ZYZr"};

EulerConvention::Convention convention(int code) { return static_cast<EulerConvention::Convention>(code); }

// q and -q are the same rotation.
double difference(const Quat& a, const Quat& b) { return std::min((a - b).length(), (a + b).length()); }

Quat rotationOf(const EulerAngles& angles)
{
  Quat q;
  EXPECT_TRUE(angles.get(q));
  return q;
}

/// What the letters of a convention's name say, one rotation after the other.
Quat spelledOut(const std::string& name, const Vec3& angles)
{
  const bool axesTurn = name[3] == 'r';
  Quat q;
  for (std::size_t i = 0; i < 3; ++i) {
    Vec3 axis;
    axis[std::size_t(name[i] - 'X')] = 1;
    q = q * Quat(angles[i], axesTurn ? q * axis : axis);
  }
  return q;
}

/// The second angle where a convention loses a degree of freedom.
double lock(int code) { return EulerAngles::EulerOrder(convention(code)).isRepeat() ? 0 : PI / 2; }

TEST(EulerAngles, TurnAsTheNamesOfTheirConventionsSay)
{
  Seeded seeded;
  for (int code = 0; code < EulerConvention::LAST; ++code)
    for (int i = 0; i < SAMPLES; ++i) {
      const Vec3 angles = seeded.vector(PI);
      EXPECT_LT(
          difference(rotationOf(EulerAngles(angles, convention(code))), spelledOut(NAMES[code], angles)),
          1e-14)
          << NAMES[code];
    }
}

TEST(EulerAngles, ComeFromQuaternionsOfAnyLength)
{
  const EulerAngles angles(0.1, 0.2, 0.3);
  for (const double length : {1e-300, 1e-200, 1e200, 1e307}) {
    const EulerAngles back(Quat(angles) * length);
    for (std::size_t axis = 0; axis < 3; ++axis) EXPECT_NEAR(back[axis], angles[axis], 1e-15) << length;
  }
  EXPECT_EQ(EulerAngles(Quat(0, 0, 0, 0)).x(), 0);
}

TEST(EulerAngles, ComeBackAwayFromTheLock)
{
  Seeded seeded;
  for (int code = 0; code < EulerConvention::LAST; ++code)
    for (int i = 0; i < SAMPLES; ++i) {
      const double from = lock(code) > 0 ? -PI / 2 : 0;
      const EulerAngles angles(seeded.number(-PI, PI), seeded.number(from + 0.1, from + PI - 0.1),
                               seeded.number(-PI, PI), convention(code));
      const Quat q(angles);
      OrthoMatrix3x3 ortho;
      AffineMatrix4x4 affine = AffineMatrix4x4::translate(1, 2, 3);
      EXPECT_TRUE(angles.get(ortho));
      EXPECT_TRUE(angles.get(affine));
      EXPECT_EQ(affine.getTranslate(), Vec3(1, 2, 3));
      for (const EulerAngles& back :
           {EulerAngles(q, convention(code)), EulerAngles(q * -7, convention(code)),
            EulerAngles(ortho, convention(code)), EulerAngles(affine, convention(code))})
        for (std::size_t axis = 0; axis < 3; ++axis)
          EXPECT_NEAR(back[axis], angles[axis], 2e-14) << NAMES[code];
      EXPECT_EQ(q.getAsEulerAngles(convention(code)).x(), EulerAngles(q, convention(code)).x());
    }
}

TEST(EulerAngles, KeepTheRotationAtTheLockAndNearIt)
{
  Seeded seeded;
  for (int code = 0; code < EulerConvention::LAST; ++code)
    for (const double away : {0.0, 1e-16, 1e-12, 1e-8, 1e-4})
      for (const double side : {lock(code), lock(code) - PI}) {
        const EulerAngles angles(seeded.number(-PI, PI), side + away, seeded.number(-PI, PI),
                                 convention(code));
        const Quat q(angles);
        const EulerAngles back(q, convention(code));
        EXPECT_LT(difference(rotationOf(back), q), 1e-14) << NAMES[code] << " " << side << " " << away;
        EXPECT_LE(std::abs(back.x()), PI);
        EXPECT_LE(std::abs(back.z()), PI);
      }
}

TEST(EulerAngles, TheLockLeavesOneAngleAtZero)
{
  const EulerAngles still(Quat(EulerAngles(0.25, PI / 2, 0.5)), EulerConvention::XYZs);
  EXPECT_EQ(still.x(), 0);
  EXPECT_NEAR(still.z(), 0.25, 1e-14);
  const EulerAngles turning(Quat(EulerAngles(0.25, PI / 2, 0.5, EulerConvention::ZYXr)),
                            EulerConvention::ZYXr);
  EXPECT_EQ(turning.z(), 0);
  EXPECT_EQ(EulerAngles(Quat(0.5, Z_AXIS), EulerConvention::ZXZs).x(), 0);
}

TEST(EulerAngles, OrderIsABitField)
{
  using Order = EulerAngles::EulerOrder;
  for (int code = 0; code < EulerConvention::LAST; ++code) {
    const Order order(convention(code));
    const std::string& name = NAMES[code];
    EXPECT_EQ(order.isStatic(), name[3] == 's') << name;
    EXPECT_EQ(order.isRepeat(), name[0] == name[2]) << name;
    EXPECT_EQ(order.i(), name[order.isStatic() ? 0 : 2] - 'X') << name;
    EXPECT_EQ(order.j(), name[1] - 'X') << name;
    EXPECT_EQ(order.k(), 3 - order.i() - order.j()) << name;
    EXPECT_EQ(order.isOdd(), (order.i() + 1) % 3 != order.j()) << name;
  }
}

TEST(EulerAngles, TakeAnyCodeAndAnyNumber)
{
  const double inf = std::numeric_limits<double>::infinity();
  for (const int code : {-1, 24, 31, 255, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    const EulerAngles::EulerOrder order{convention(code)};
    for (const int axis : {order.i(), order.j(), order.k()}) EXPECT_TRUE(axis >= 0 && axis <= 2);
    EXPECT_EQ(order.getConvention(), convention(code));
    const EulerAngles angles(0.1, 0.2, 0.3, code);
    EXPECT_LT(difference(rotationOf(EulerAngles(Quat(angles), convention(code))), Quat(angles)), 1e-14);
  }
  Quat q;
  EXPECT_FALSE(EulerAngles(0, inf, 0).get(q));
  EXPECT_TRUE(std::isnan(q.w()));
  EXPECT_TRUE(std::isnan(EulerAngles(q).x()));
  EXPECT_EQ(EulerAngles(Quat(0, 0, 0, 0)).y(), 0);
  EulerAngles angles(1, 2, 3);
  EXPECT_THROW(angles[3] = 1, std::out_of_range);
  EXPECT_THROW(angles[std::size_t(-1)], std::out_of_range);
}

} // namespace
