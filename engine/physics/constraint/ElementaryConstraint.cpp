#include "kel/ElementaryConstraint.h"

namespace kel {

ElementaryConstraint::ElementaryConstraint(UInt32 numRows, RegularizationParameters::Type type)
    : m_settings(numRows, {RegularizationParameters(type), RangeReal(std::numeric_limits<Real>::infinity())})
{}

void ElementaryConstraint::setEnable(bool enable)
{
  m_enabled = enable;
  if (!enable) clearForces();
}

void ElementaryConstraint::clearForces()
{
  for (Settings& settings : m_settings) settings.force = 0;
}

template <class Change> void ElementaryConstraint::changeRows(Int32 row, Change change)
{
  for (std::size_t i = 0; i < m_settings.size(); ++i)
    if (row == -1 || row == static_cast<Int32>(i)) change(m_settings[i]);
}

RegularizationParameters* ElementaryConstraint::getRegularizationParameters(std::size_t row)
{
  return row < m_settings.size() ? &m_settings[row].regularization : nullptr;
}

void ElementaryConstraint::setCompliance(Real compliance, Int32 row)
{
  changeRows(row, [&](Settings& settings) { settings.regularization.setCompliance(compliance); });
}

Real ElementaryConstraint::getCompliance(std::size_t row) const
{
  return row < m_settings.size() ? m_settings[row].regularization.getCompliance() : 0;
}

void ElementaryConstraint::setDamping(Real damping, Int32 row)
{
  changeRows(row, [&](Settings& settings) { settings.regularization.setDamping(damping); });
}

Real ElementaryConstraint::getDamping(std::size_t row) const
{
  return row < m_settings.size() ? m_settings[row].regularization.getDamping() : 0;
}

void ElementaryConstraint::setForceRange(const RangeReal& range, Int32 row)
{
  changeRows(row, [&](Settings& settings) { settings.forceRange = range; });
}

RangeReal ElementaryConstraint::getForceRange(std::size_t row) const
{
  return row < m_settings.size() ? m_settings[row].forceRange : RangeReal(0);
}

Real ElementaryConstraint::getCurrentForce(std::size_t row) const
{
  return row < m_settings.size() ? m_settings[row].force : 0;
}

ConstraintRow& ElementaryConstraint::addRow(std::size_t row, std::vector<ConstraintRow>& buffer)
{
  Settings& settings = m_settings[row];
  ConstraintRow& result = buffer.emplace_back();
  result.form =
      settings.regularization.isHolonomic() ? ConstraintRow::AVERAGED : ConstraintRow::NON_HOLONOMIC;
  result.compliance = settings.regularization.getCompliance();
  result.damping = settings.regularization.getRowDamping();
  result.lowerForce = settings.forceRange.lower();
  result.upperForce = settings.forceRange.upper();
  result.force = &settings.force;
  return result;
}

} // namespace kel
