#include "constraint/rows.h"
#include "kel/Dot1.h"
#include "kel/Dot2.h"
#include "kel/QuatLock.h"
#include "kel/Spherical.h"
#include "kel/SphericalRel.h"
#include <cmath>

namespace kel {

void AttachedConstraint::rows(Real timeStep, std::vector<ConstraintRow>& buffer)
{
  if (!m_pair.valid()) return clearForces();
  m_pair.transform();
  addRows(timeStep, buffer);
}

void Spherical::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  for (std::size_t axis = 0; axis < 3; ++axis) {
    Vec3 direction;
    direction[axis] = 1;
    ConstraintRow& row = addRow(axis, buffer);
    fillLinear(row, m_pair, direction, element(0, Attachment::ANCHOR_POS),
               element(1, Attachment::ANCHOR_POS));
    row.target = m_pair.get(AttachmentPair::SEPARATION)[axis];
  }
}

void SphericalRel::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  for (std::size_t axis = 0; axis < 3; ++axis) {
    ConstraintRow& row = addRow(axis, buffer);
    fillLinear(row, m_pair, element(1, axis));
    row.target = m_pair.get(AttachmentPair::SEPARATION) * element(1, axis);
  }
}

void Dot1::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  const Vec3& axis1 = element(0, m_axes[0]);
  const Vec3& axis2 = element(1, m_axes[1]);
  ConstraintRow& row = addRow(0, buffer);
  fillAngular(row, m_pair, cross(axis1, axis2));
  row.target = axis1 * axis2;
}

void Dot2::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  ConstraintRow& row = addRow(0, buffer);
  fillLinear(row, m_pair, element(1, m_axis));
  row.target = m_pair.get(AttachmentPair::SEPARATION) * element(1, m_axis);
}

void QuatLock::addRows(Real, std::vector<ConstraintRow>& buffer)
{
  const Quat rotation1 = m_pair.getAttachment(0)->getFrame()->getRotate();
  const Quat wanted = m_rotation * m_pair.getAttachment(1)->getFrame()->getRotate();
  Quat missing = wanted.conj() * rotation1; // after the wanted one, in world axes
  if (missing.w() < 0) missing = -missing;
  const Real sine = missing.asVec3().length();
  const Real angle = 2 * std::atan2(sine, missing.w());
  const Vec3 vector = missing.asVec3() * (sine > 0 ? angle / sine : 2);
  for (std::size_t axis = 0; axis < 3; ++axis) {
    ConstraintRow& row = addRow(axis, buffer);
    fillAngular(row, m_pair, element(1, axis));
    row.target = vector * element(1, axis);
  }
}

} // namespace kel
