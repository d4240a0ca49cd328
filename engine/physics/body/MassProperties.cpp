#include "kel/MassProperties.h"
#include "body/BodyRows.h"
#include "body/inertia.h"
#include "kel/RigidBody.h"
#include <cmath>

namespace kel {

bool MassProperties::setMass(Real mass, bool autoGenerate)
{
  if (!(mass > 0) || !std::isfinite(mass)) return false;
  const Real oldMass = getMass();
  UInt32& mask = BodyRows::instance().autoGenerateMask[m_row];
  mask = autoGenerate ? mask | MASS : mask & ~UInt32(MASS);
  write(mass, mask & INERTIA ? getInertiaTensor() * (mass / oldMass) : getInertiaTensor());
  return true;
}

Real MassProperties::getMass() const { return BodyRows::instance().mass[m_row]; }

Real MassProperties::getInvMass() const { return BodyRows::instance().inverseMass[m_row]; }

bool MassProperties::setInertiaTensor(const SPDMatrix3x3& inertia, bool autoGenerate)
{
  if (!inertia.isValid()) return false;
  UInt32& mask = BodyRows::instance().autoGenerateMask[m_row];
  mask = autoGenerate ? mask | INERTIA : mask & ~UInt32(INERTIA);
  write(getMass(), inertia);
  return true;
}

bool MassProperties::setInertiaTensor(const Vec3& principalInertiae, bool autoGenerate)
{
  return setInertiaTensor(SPDMatrix3x3(principalInertiae), autoGenerate);
}

const SPDMatrix3x3& MassProperties::getInertiaTensor() const { return BodyRows::instance().inertia[m_row]; }

const SPDMatrix3x3& MassProperties::getInvInertiaTensor() const
{
  return BodyRows::instance().inverseInertia[m_row];
}

void MassProperties::setAutoGenerateMask(UInt32 mask)
{
  BodyRows::instance().autoGenerateMask[m_row] = mask & AUTO_GENERATE_ALL;
}

UInt32 MassProperties::getAutoGenerateMask() const { return BodyRows::instance().autoGenerateMask[m_row]; }

Matrix3x3 MassProperties::calculateOffsetTensor(const Matrix3x3& inertia, const Vec3& offset, Real mass)
{
  const Real square = offset * offset;
  Matrix3x3 result = inertia;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j)
      result(i, j) = i == j ? inertia(i, i) + mass * (square - offset[i] * offset[i])
                            : inertia(i, j) - mass * offset[i] * offset[j];
  return result;
}

void MassProperties::write(Real mass, const SPDMatrix3x3& inertia)
{
  const BodyRows& rows = BodyRows::instance();
  rows.mass[m_row] = mass;
  rows.inverseMass[m_row] = 1 / mass;
  rows.inertia[m_row] = inertia;
  rows.inverseInertia[m_row] = inertia.inverse();
}

SPDMatrix3x3 transformInertia(const SPDMatrix3x3& inertia, Real mass, const Vec3& center,
                              const AffineMatrix4x4& transform, const Vec3& point)
{
  const Matrix3x3 rotation(transform);
  const Matrix3x3 rotated = rotation.transpose() * Matrix3x3(inertia) * rotation;
  const Vec3 offset = transform.transformPoint(center) - point;
  return SPDMatrix3x3(MassProperties::calculateOffsetTensor(rotated, offset, mass));
}

} // namespace kel
