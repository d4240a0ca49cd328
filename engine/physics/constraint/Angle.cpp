#include "constraint/rows.h"
#include "kel/DistanceAngle.h"
#include "kel/RigidBody.h"
#include "kel/RotationalAngle.h"
#include "kel/SeparationAngle.h"
#include <cmath>
#include <numbers>

namespace kel {

namespace {
constexpr Real TURN = 2 * std::numbers::pi;
/// Below this distance of two anchors, m, their direction is but rounding.
constexpr Real LEAST_DISTANCE = 1e-9;
} // namespace

Real Angle::calculateSpeed(const AttachmentPair& pair) const
{
  ConstraintRow row;
  fillRow(pair, row);
  Real speed = 0;
  for (std::size_t side = 0; side < 2; ++side)
    if (const RigidBody* body = row.bodies[side])
      speed += row.linear[side] * body->getVelocity() + row.angular[side] * body->getAngularVelocity();
  return speed;
}

void RotationalAngle::transform(const AttachmentPair& pair)
{
  const auto element = [&](std::size_t side, std::size_t offset) -> const Vec3& {
    return pair.getAttachment(side)->get((getAxis() + offset) % 3);
  };
  const Vec3& turned = element(0, 1);
  const Real angle = std::atan2(turned * element(1, 2), turned * element(1, 1));
  m_value += std::remainder(angle - m_value, TURN);
}

void RotationalAngle::fillRow(const AttachmentPair& pair, ConstraintRow& row) const
{
  fillAngular(row, pair, pair.getAttachment(1)->get(getAxis()));
}

Int RotationalAngle::getWindingNumber() const
{
  return static_cast<Int>(std::lround((m_value - getLastAngle()) / TURN));
}

Real RotationalAngle::getLastAngle() const { return std::remainder(m_value, TURN); }

void SeparationAngle::transform(const AttachmentPair& pair)
{
  m_value = pair.get(AttachmentPair::SEPARATION) * pair.getAttachment(1)->get(getAxis());
}

void SeparationAngle::fillRow(const AttachmentPair& pair, ConstraintRow& row) const
{
  fillLinear(row, pair, pair.getAttachment(1)->get(getAxis()));
}

void DistanceAngle::transform(const AttachmentPair& pair)
{
  const Vec3& separation = pair.get(AttachmentPair::SEPARATION);
  m_value = separation.length();
  if (m_value > LEAST_DISTANCE) m_direction = separation * (1 / m_value);
}

void DistanceAngle::fillRow(const AttachmentPair& pair, ConstraintRow& row) const
{
  fillLinear(row, pair, m_direction);
}

void DistanceAngle::fillRowsAcross(const AttachmentPair& pair, ConstraintRow& row1, ConstraintRow& row2) const
{
  const Quat turn(Z_AXIS, m_direction);
  fillLinear(row1, pair, turn * X_AXIS);
  fillLinear(row2, pair, turn * Y_AXIS);
}

} // namespace kel
