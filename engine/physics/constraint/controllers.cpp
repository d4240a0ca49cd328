#include "constraint/rows.h"
#include "kel/DistanceAngle.h"
#include "kel/ElectricMotorController.h"
#include "kel/LockController.h"
#include "kel/RangeController.h"
#include "kel/ScrewController.h"
#include "kel/TargetSpeedController.h"
#include <cmath>
#include <numbers>

namespace kel {

namespace {
/// Below this a distance to be held is none, m.
constexpr Real LEAST_DISTANCE = 1e-9;
} // namespace

BasicControllerConstraint::BasicControllerConstraint(const ConstraintAngleBasedData& data,
                                                     RegularizationParameters::Type type)
    : AttachedConstraint(1, data, type), m_angle(data.getAngle())
{
  if (!m_pair.hasAngle(m_angle.get())) m_pair.add(m_angle.get());
  setEnable(false);
}

Real BasicControllerConstraint::getAngle() const
{
  m_pair.transform();
  return m_angle->getValue();
}

Real BasicControllerConstraint::getCurrentSpeed() const
{
  m_pair.transform();
  return m_pair.valid() ? m_angle->calculateSpeed(m_pair) : 0;
}

ConstraintRow& BasicControllerConstraint::addAngleRow(std::vector<ConstraintRow>& buffer)
{
  ConstraintRow& row = addRow(0, buffer);
  m_angle->fillRow(m_pair, row);
  return row;
}

void TargetSpeedController::setLocked(bool locked)
{
  m_locked = locked;
  m_holds = false;
}

void TargetSpeedController::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  ConstraintRow& row = addAngleRow(buffer);
  const bool holds = m_locked || (m_lockedAtZeroSpeed && m_speed == 0);
  if (holds && !m_holds) m_position = m_angle->getValue();
  m_holds = holds;
  row.target = m_speed;
  if (!holds) return;
  row.form = ConstraintRow::AVERAGED;
  row.target = m_angle->getValue() - m_position;
}

void ElectricMotorController::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  if (m_torqueConstant == 0) return clearForces();
  ConstraintRow& row = addAngleRow(buffer);
  row.target = m_voltage / m_torqueConstant;
  row.compliance += m_resistance / (m_torqueConstant * m_torqueConstant);
}

bool RangeController::isActive() const
{
  const Real angle = getAngle();
  return getEnable() && (angle <= m_range.lower() || angle >= m_range.upper() || getCurrentForce(0) != 0);
}

void RangeController::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  const Real angle = m_angle->getValue();
  const bool nearUpper = m_range.upper() - angle < angle - m_range.lower();
  const Real violation = nearUpper ? angle - m_range.upper() : angle - m_range.lower();
  if (!std::isfinite(violation)) return clearForces();
  ConstraintRow& row = addAngleRow(buffer);
  row.form = ConstraintRow::BACKWARD;
  row.target = violation;
  if (nearUpper)
    row.upperForce = std::min(row.upperForce, Real(0));
  else
    row.lowerForce = std::max(row.lowerForce, Real(0));
  // An end that is still ahead may be reached in this step, not before.
  if (nearUpper ? violation < 0 : violation > 0) row.damping = 0;
}

void LockController::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  ConstraintRow& row = addAngleRow(buffer);
  row.target = m_angle->getValue() - m_position;
  const auto* distance = dynamic_cast<const DistanceAngle*>(m_angle.get());
  if (!distance || m_position > LEAST_DISTANCE || std::isfinite(row.lowerForce) ||
      std::isfinite(row.upperForce))
    return;
  // Without a distance its direction turns within a step, and other rows would push the bodies round it.
  ConstraintRow across[2] = {row, row};
  distance->fillRowsAcross(m_pair, across[0], across[1]);
  for (ConstraintRow& each : across) {
    each.target = 0;
    each.force = nullptr;
    buffer.push_back(each);
  }
}

ScrewController::ScrewController(const ConstraintAngleBasedData& data, Angle* rotation)
    : BasicControllerConstraint(data), m_rotation(rotation)
{
  if (!m_pair.hasAngle(rotation)) m_pair.add(rotation);
}

void ScrewController::setLead(Real lead)
{
  m_pair.transform();
  m_lead = lead;
  m_start = 0;
  m_start = violation();
}

Real ScrewController::violation() const
{
  return m_angle->getValue() - m_lead / (2 * std::numbers::pi) * m_rotation->getValue() - m_start;
}

void ScrewController::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  ConstraintRow& row = addAngleRow(buffer);
  ConstraintRow turn;
  m_rotation->fillRow(m_pair, turn);
  for (std::size_t side = 0; side < 2; ++side)
    row.angular[side] -= turn.angular[side] * (m_lead / (2 * std::numbers::pi));
  row.target = violation();
}

} // namespace kel
