#include "kel/EulerAngles.h"
#include "inRange.h"
#include "kel/OrthoMatrix3x3.h"
#include <utility>

namespace kel {

namespace {

Quat aboutAxis(std::size_t axis, Real angle)
{
  Quat q(0, 0, 0, std::cos(angle / 2));
  q[axis] = std::sin(angle / 2);
  return q;
}

} // namespace

EulerAngles EulerAngles::random(const Vec3& min, const Vec3& max, Convention convention)
{
  EulerAngles result(convention);
  for (std::size_t i = 3; i-- > 0;) result[i] = kel::random(min[i], max[i]);
  return result;
}

bool EulerAngles::get(Quat& rotation) const
{
  Real first = x(), last = z();
  if (!m_order.isStatic()) std::swap(first, last);
  const int lastAxis = m_order.isRepeat() ? m_order.i() : m_order.k();
  rotation = aboutAxis(m_order.i(), first) * aboutAxis(m_order.j(), y()) * aboutAxis(lastAxis, last);
  return std::isfinite(first) && std::isfinite(y()) && std::isfinite(last);
}

bool EulerAngles::get(OrthoMatrix3x3& matrix) const
{
  Quat rotation;
  const bool isRotation = get(rotation);
  matrix.set(rotation);
  return isRotation;
}

bool EulerAngles::get(AffineMatrix4x4& matrix) const
{
  Quat rotation;
  const bool isRotation = get(rotation);
  matrix.setRotate(rotation);
  return isRotation;
}

EulerAngles& EulerAngles::set(const Quat& rotation, Convention convention)
{
  Quat unit(inRange(rotation.asVec4()));
  unit.normalize();
  return set(OrthoMatrix3x3(unit), convention);
}

EulerAngles& EulerAngles::set(const AffineMatrix4x4& matrix, Convention convention)
{
  OrthoMatrix3x3 block;
  matrix.get(block);
  return set(block, convention);
}

// Axes in odd order are mirror images: the same with all angles turned around. Reads the first two angles
// from the image of the first axis. What the first rotation leaves of the matrix has the last angle, so that
// the three fit together also where the first one has few digits (compare Shoemake 1994).
EulerAngles& EulerAngles::set(const OrthoMatrix3x3& matrix, Convention convention)
{
  if (convention != EulerConvention::BAD) m_order = EulerOrder(convention);
  const std::size_t i = m_order.i(), j = m_order.j(), k = m_order.k();
  const bool repeat = m_order.isRepeat();
  const Real hand = m_order.isOdd() ? -1 : 1;
  const std::size_t seen = repeat ? i : k;
  const Real along = repeat ? matrix(i, i) : -matrix(i, k);
  const Real across = std::hypot(matrix(j, seen), matrix(k, seen));
  const Real side = repeat ? hand : 1; // so that the second angle is not negative in the end

  const bool isLocked = across <= 16 * std::numeric_limits<Real>::epsilon() * std::fabs(along);
  const Real first = isLocked ? 0 : std::atan2(side * matrix(j, seen), side * matrix(k, seen));
  const Real second = repeat ? std::atan2(side * across, along) : std::atan2(along, across);
  const Real cosine = std::cos(first), sine = std::sin(first);
  const auto turnedBack = [&](std::size_t column) {
    return cosine * matrix(j, column) - sine * matrix(k, column);
  };
  const Real last = std::atan2(repeat ? turnedBack(k) : -turnedBack(i), turnedBack(j));

  set(hand * first + 0.0, hand * second + 0.0, hand * last + 0.0); // no -0
  if (!m_order.isStatic()) std::swap(m_angles[0], m_angles[2]);
  return *this;
}

} // namespace kel
