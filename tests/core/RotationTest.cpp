#include "Seeded.h"
#include "kel/OrthoMatrix3x3.h"
#include "kel/SPDMatrix3x3.h"
#include <gtest/gtest.h>
#include <numbers>

using namespace kel;

namespace {

constexpr double PI = std::numbers::pi;
constexpr double TOLERANCE = 1e-13;
constexpr int SAMPLES = 200;

double difference(const Vec3& a, const Vec3& b) { return a.distance(b); }
// q and -q are the same rotation.
double difference(const Quat& a, const Quat& b) { return std::min((a - b).length(), (a + b).length()); }

TEST(Quat, ProductAppliesTheLeftRotationFirst)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Quat p = seeded.rotation(), q = seeded.rotation();
    const Vec3 v = seeded.vector(1);
    EXPECT_LT(difference((p * q) * v, q * (p * v)), TOLERANCE);
    EXPECT_EQ(p.rightMult(q), q * p);
    EXPECT_NEAR((q * v).length(), v.length(), TOLERANCE);
    EXPECT_LT(difference((p * q) / q, p), TOLERANCE);
    EXPECT_LT(difference((p * 3) * (p * 3).inverse(), Quat()), TOLERANCE);
  }
}

TEST(Quat, AngleAndAxisAreRightHandedAndRoundTrip)
{
  EXPECT_LT(difference(Quat(PI / 2, Z_AXIS) * X_AXIS, Y_AXIS), TOLERANCE);
  EXPECT_LT(difference(Quat(PI / 2, Vec3(0, 0, 100)) * X_AXIS, Y_AXIS), TOLERANCE);
  EXPECT_EQ(Quat(1, Vec3()), Quat());
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const double angle = seeded.number(1e-6, PI);
    const Vec3 axis = seeded.vector().normal();
    double gotAngle = 0;
    Vec3 gotAxis;
    Quat(angle, axis).getRotate(gotAngle, gotAxis);
    EXPECT_NEAR(gotAngle, angle, TOLERANCE);
    EXPECT_LT(difference(gotAxis, axis), 1e-9);
  }
  const Quat three(0.1, X_AXIS, 0.2, Y_AXIS, 0.3, Z_AXIS);
  const Vec3 inTurn = Quat(0.3, Z_AXIS) * (Quat(0.2, Y_AXIS) * (Quat(0.1, X_AXIS) * Vec3(1, 2, 3)));
  EXPECT_LT(difference(three * Vec3(1, 2, 3), inTurn), TOLERANCE);
}

TEST(Quat, RotationBetweenDirections)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Vec3 a = seeded.vector(), b = seeded.vector();
    const Quat q(a, b);
    EXPECT_LT(difference((q * a).normal(), b.normal()), TOLERANCE);
    EXPECT_LT(difference(q * cross(a, b).normal(), cross(a, b).normal()), 1e-10) << "the shortest way";
    EXPECT_LT(difference((Quat(a, -a) * a).normal(), -a.normal()), TOLERANCE);
    const Vec3 nearly = a + seeded.vector(1e-9);
    EXPECT_LT(difference((Quat(a, nearly) * a).normal(), nearly.normal()), 1e-15);
  }
  // Squares that leave the range of numbers.
  for (const double size : {1e-310, 1e-160, 1e160, 1e308}) {
    EXPECT_LT(difference(Quat(Vec3(size, size, 0), Vec3(0, 3, 0)), Quat(PI / 4, Z_AXIS)), TOLERANCE) << size;
    EXPECT_LT(difference(Quat(1, Vec3(0, size, 0)), Quat(1, Y_AXIS)), TOLERANCE) << size;
  }
  EXPECT_EQ(Quat(X_AXIS, Vec3()), Quat());
  EXPECT_EQ(Quat(Vec3(), X_AXIS), Quat());
}

TEST(Quat, SlerpTurnsEvenlyTheShortWay)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Quat from = seeded.rotation(), to = seeded.rotation();
    Quat quarter, half;
    quarter.slerp(0.25, from, to);
    half.slerp(0.5, from, to);
    EXPECT_LT(difference(from.inverse() * quarter * (from.inverse() * quarter), from.inverse() * half),
              1e-12);
    Quat end;
    end.slerp(1, from, -to);
    EXPECT_LT(difference(end, to), TOLERANCE);
    EXPECT_GT(half.asVec4() * from.asVec4(), std::sqrt(0.5) - 1e-9) << "no more than a quarter turn away";
  }
  Quat same;
  const Quat q(0.3, X_AXIS), near(0.3 + 1e-10, X_AXIS);
  same.slerp(0.5, q, q);
  EXPECT_LT(difference(same, q), TOLERANCE);
  same.slerp(0.5, q, near);
  EXPECT_LT(difference(same, Quat(0.3 + 5e-11, X_AXIS)), 1e-15);
}

TEST(Quat, SlerpHasItsEndsAndAConstantSpeed)
{
  Seeded seeded;
  for (const double angle : {1e-12, 1e-7, 1e-3, 1.0, PI - 1e-9, PI, PI + 1e-9, 2 * PI - 1e-7}) {
    const Quat from = seeded.rotation(), to = Quat(angle, seeded.vector()) * from;
    const double way = std::min(angle, 2 * PI - angle);
    Quat q, next;
    q.slerp(0, from, to);
    EXPECT_EQ(q, from);
    q.slerp(1, from, to);
    EXPECT_LT(difference(q, to), TOLERANCE);
    for (int i = 0; i < 10; ++i) {
      q.slerp(i * 0.1, from, to);
      next.slerp((i + 1) * 0.1, from, to);
      EXPECT_NEAR(2 * difference(q, next), 4 * std::sin(way / 40), 1e-14) << angle;
      EXPECT_NEAR(q.length(), 1, TOLERANCE);
    }
  }
}

TEST(Quat, NullQuaternionIsHarmless)
{
  Quat q(0, 0, 0, 0);
  EXPECT_FALSE(std::isfinite(q.inverse().w()));
  EXPECT_EQ(q.normalize(), 0);
  EXPECT_EQ(q, Quat(0, 0, 0, 0));
  EXPECT_FALSE(Quat(1e-300, 0, 0, 1).zeroRotation());
  EXPECT_TRUE(Quat().zeroRotation());
}

TEST(AffineMatrix4x4, AgreesWithItsQuaternion)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Quat p = seeded.rotation(), q = seeded.rotation();
    const Vec3 v = seeded.vector(1);
    EXPECT_LT(difference(AffineMatrix4x4(q).transformVector(v), q * v), TOLERANCE);
    EXPECT_LT(difference(AffineMatrix4x4(q).getRotate(), q), TOLERANCE);
    EXPECT_LT(difference((AffineMatrix4x4(p) * AffineMatrix4x4(q)).getRotate(), p * q), TOLERANCE);
    EXPECT_LT(difference(Matrix3x3(q).preMult(v), q * v), TOLERANCE);
  }
  // Each of the four ways out of the matrix.
  for (const Vec3& axis : {X_AXIS, Y_AXIS, Z_AXIS}) {
    const Quat q(PI - 1e-3, axis);
    EXPECT_LT(difference(AffineMatrix4x4(q).getRotate(), q), TOLERANCE);
  }
}

TEST(AffineMatrix4x4, RigidInverseAndOrderOfProducts)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const AffineMatrix4x4 a = seeded.rigid(), b = seeded.rigid();
    const Vec3 v = seeded.vector(1);
    EXPECT_TRUE(equivalent(a.inverse() * a, AffineMatrix4x4()));
    EXPECT_LT(difference((a * b).transformPoint(v), b.transformPoint(a.transformPoint(v))), 1e-12);
    EXPECT_LT(difference(a.transform3x3Inv(a.transform3x3(v)), v), TOLERANCE);
    AffineMatrix4x4 c = a;
    c.preMult(b);
    EXPECT_TRUE(c == b * a);
    c = a;
    c.postMult(b);
    EXPECT_TRUE(c == a * b);
  }
}

TEST(Matrix3x3, GeneralInverseAndDeterminant)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Matrix3x3 a = seeded.matrix(), b = seeded.matrix();
    const Vec3 v = seeded.vector(1);
    EXPECT_NEAR((a * b).determinant(), a.determinant() * b.determinant(), 1e-11);
    EXPECT_LT(difference((a * b) * v, a * (b * v)), 1e-12);
    EXPECT_LT(difference(a.preMult(v), a.transpose() * v), TOLERANCE);
    EXPECT_EQ(Matrix3x3::crossMatrix(v) * X_AXIS, cross(v, X_AXIS));
    if (std::abs(a.determinant()) > 0.1) {
      EXPECT_LT(difference(a.inverse() * (a * v), v), 1e-11);
    }
  }
  EXPECT_TRUE(Matrix3x3(Vec3(1, 2, 3)).isDiagonal());
  EXPECT_FALSE(Matrix3x3(1, 0, 0, 0, 1, 1e-300, 0, 0, 1).isDiagonal());
}

TEST(Matrix3x3, InverseOfElementsOfAnySize)
{
  Seeded seeded;
  for (const double size : {1e-300, 1e-120, 1e120, 1e300}) {
    const Matrix3x3 m = Matrix3x3(Vec3(1, 2, 3)) + seeded.matrix() * 0.1;
    const Matrix3x3 product = (m * size).inverse() * size * m;
    for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(product(i, i), 1, TOLERANCE) << size;
    EXPECT_NEAR(product(0, 2), 0, TOLERANCE) << size;
  }
  const Matrix3x3 uneven(Vec3(1e-200, 1, 1e200));
  EXPECT_EQ((uneven.inverse() * uneven).getDiagonal(), Vec3(1));
  EXPECT_FALSE(std::isfinite(Matrix3x3(Vec3(1, 1, 0)).inverse()(0, 0)));
  EXPECT_FALSE(std::isfinite(Matrix3x3(Vec3()).inverse()(0, 0)));
}

TEST(Matrix3x3, HasAFourthElementInEachRowOfMemory)
{
  Matrix3x3 m(1, 2, 3, 4, 5, 6, 7, 8, 9);
  EXPECT_EQ(m.at(0, 3), 0);
  EXPECT_EQ(m.at(0, 5), 5) << "as in a transform";
  EXPECT_EQ(m.ptr() + 11, &m(2, 3));
  EXPECT_THROW(m.at(2, 4), std::out_of_range);
  EXPECT_THROW(m.at(std::size_t(1) << 62, 0), std::out_of_range) << "must not wrap to element 0";
  EXPECT_THROW(AffineMatrix4x4().at(std::size_t(1) << 62, 0), std::out_of_range);
  EXPECT_THROW(m.set(1, 3, 0), std::out_of_range);
  EXPECT_THROW(m.getColumn(3), std::out_of_range);
  EXPECT_THROW(m.setRow(std::size_t(-1), Vec3()), std::out_of_range);
  EXPECT_TRUE(AffineMatrix4x4(m) == AffineMatrix4x4(1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1));
}

TEST(OrthoMatrix3x3, IsARotationInAnotherForm)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Quat p = seeded.rotation(), q = seeded.rotation();
    const OrthoMatrix3x3 m(p), n(q);
    const Vec3 v = seeded.vector(1);
    EXPECT_LT(difference(m.preMult(v), p * v), TOLERANCE);
    EXPECT_LT(difference(m.postMult(m.preMult(v)), v), TOLERANCE);
    EXPECT_LT(difference((m * n).get(), p * q), TOLERANCE);
    EXPECT_LT(difference(Quat(m), p), TOLERANCE);
    EXPECT_LT(difference(m.getScale(), Vec3(1)), TOLERANCE);
    EXPECT_LT(difference(OrthoMatrix3x3((m * 5).inverse() * m).getScale(), Vec3(0.2)), TOLERANCE);
    EXPECT_LT(difference(OrthoMatrix3x3(EulerAngles(m)).get(), p), TOLERANCE);
    const AffineMatrix4x4 a(m, v);
    EXPECT_EQ(a.getTranslate(), v);
    EXPECT_LT(difference(a.transformVector(v), p * v), TOLERANCE);
    OrthoMatrix3x3 back;
    a.get(back);
    EXPECT_EQ(back, m);
  }
}

TEST(SPDMatrix3x3, StoresM22BeforeM11AndIgnoresTheLowerTriangle)
{
  const SPDMatrix3x3 m(1, 2, 3, 99, 5, 6, 98, 97, 9);
  const double stored[] = {1, 2, 3, 6, 9, 5};
  EXPECT_TRUE(std::equal(stored, stored + 6, m.ptr()));
  EXPECT_EQ(m.at(1, 0), 2);
  EXPECT_EQ(m.at(1, 1), 5);
  EXPECT_EQ(m.at(2, 1), 6);
  EXPECT_EQ(m.getDiagonal(), Vec3(1, 5, 9));
  EXPECT_EQ(m.at(0, 5), 5) << "the sum of the indices counts";
  EXPECT_THROW(m.at(3, 3), std::out_of_range);
  EXPECT_THROW(m.at(std::size_t(-1), 1), std::out_of_range);
}

TEST(SPDMatrix3x3, AgreesWithTheFullMatrix)
{
  Seeded seeded;
  for (int i = 0; i < SAMPLES; ++i) {
    const Matrix3x3 root = seeded.matrix();
    const Matrix3x3 full = root * root.transpose() + Matrix3x3();
    const SPDMatrix3x3 m(full);
    const Vec3 v = seeded.vector(1);
    EXPECT_TRUE(m.isValid());
    EXPECT_NEAR(m.determinant(), full.determinant(), 1e-9 * full.determinant());
    EXPECT_LT(difference(m * v, full * v), TOLERANCE * 10);
    EXPECT_LT(difference(m.inverse() * (m * v), v), 1e-11);
  }
}

TEST(SPDMatrix3x3, ValidityNeedsPositiveMinors)
{
  const SPDMatrix3x3 negative(Vec3(1, -1, 1));
  EXPECT_FALSE(negative.isValid());
  EXPECT_FALSE(negative.isNaN());
  EXPECT_FALSE(SPDMatrix3x3(Vec3(1, 1, 0)).isValid()) << "semidefinite";
  EXPECT_FALSE(SPDMatrix3x3(Vec3(1, 1, std::nan(""))).isValid());
  EXPECT_TRUE(SPDMatrix3x3().isIdentity());
  EXPECT_FALSE(std::isfinite(SPDMatrix3x3(Vec3(1, 1, 0)).inverse().at(2, 2)));
  EXPECT_NEAR((SPDMatrix3x3(Vec3(1e-150)).inverse() * Vec3(1e-150)).x(), 1, TOLERANCE);
}

} // namespace
