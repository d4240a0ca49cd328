#include "kel/ContactMaterial.h"
#include "material/MaterialRows.h"
#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace kel {

namespace {

const ContactMaterialRows& rows() { return ContactMaterialRows::instance(); }

Real notNegative(Real value) { return value > 0 ? value : 0; }

Real geometricMean(Real a, Real b) { return std::sqrt(notNegative(a) * notNegative(b)); }

void storeDirection(Vec2& pair, Real value, int direction)
{
  if (direction < 0) throw std::out_of_range("A direction of friction is 0, 1, or 2 for both.");
  if (direction != ContactMaterial::SECONDARY_DIRECTION) pair[0] = notNegative(value);
  if (direction != ContactMaterial::PRIMARY_DIRECTION) pair[1] = notNegative(value);
}

} // namespace

ContactMaterial::ContactMaterial(const Material& material1, const Material& material2, bool isImplicit)
    : m_materials{&material1, &material2}, m_entity(rows().storage->createInstance()),
      m_row(m_entity.calculateIndex()), m_isImplicit(isImplicit)
{
  calculate();
}

ContactMaterial::~ContactMaterial() { m_entity.destroy(); }

void ContactMaterial::calculate()
{
  const BulkMaterial& bulk1 = *m_materials[0]->getBulkMaterial();
  const BulkMaterial& bulk2 = *m_materials[1]->getBulkMaterial();
  setRestitution(geometricMean(1 - bulk1.getViscosity(), 1 - bulk2.getViscosity()));
  const Real modulus1 = bulk1.getYoungsModulus();
  const Real modulus2 = bulk2.getYoungsModulus();
  setYoungsModulus(modulus1 + modulus2 > 0 ? modulus1 * modulus2 / (modulus1 + modulus2) : 0);
  setDamping(std::max(bulk1.getDamping(), bulk2.getDamping()));
  setMinMaxElasticRestLength(std::max(bulk1.getMinElasticRestLength(), bulk2.getMinElasticRestLength()),
                             std::max(bulk1.getMaxElasticRestLength(), bulk2.getMaxElasticRestLength()));

  const SurfaceMaterial& surface1 = *m_materials[0]->getSurfaceMaterial();
  const SurfaceMaterial& surface2 = *m_materials[1]->getSurfaceMaterial();
  setFrictionCoefficient(geometricMean(surface1.getRoughness(), surface2.getRoughness()));
  setSurfaceViscosity(surface1.getViscosity() + surface2.getViscosity());
  setEnableSurfaceFriction(surface1.getFrictionEnabled() && surface2.getFrictionEnabled());
  setAdhesion(std::max(surface1.getAdhesion(), surface2.getAdhesion()),
              std::max(surface1.getAdhesiveOverlap(), surface2.getAdhesiveOverlap()));

  const WireMaterial& wire1 = *m_materials[0]->getWireMaterial();
  const WireMaterial& wire2 = *m_materials[1]->getWireMaterial();
  setWireFrictionCoefficient(geometricMean(wire1.getFrictionCoefficient(), wire2.getFrictionCoefficient()));
  setKinematicContactNodeVelocityScale(
      (wire1.getKinematicContactNodeVelocityScale() + wire2.getKinematicContactNodeVelocityScale()) / 2);
  for (const auto& material : m_materials) material->setDirty(false);
  m_calculatedCount = m_materials[0]->getModifiedCount() + m_materials[1]->getModifiedCount();
}

void ContactMaterial::update()
{
  const UInt32 count = m_materials[0]->getModifiedCount() + m_materials[1]->getModifiedCount();
  if (m_isImplicit && count != m_calculatedCount) calculate();
}

void ContactMaterial::setFrictionCoefficient(Real coefficient, int direction)
{
  storeDirection(rows().frictionCoefficient[m_row], coefficient, direction);
}

Real ContactMaterial::getFrictionCoefficient(UInt32 direction) const
{
  return rows().frictionCoefficient[m_row][std::min(direction, 1U)];
}

void ContactMaterial::setSurfaceViscosity(Real viscosity, int direction)
{
  storeDirection(rows().surfaceViscosity[m_row], viscosity, direction);
}

Real ContactMaterial::getSurfaceViscosity(UInt32 direction) const
{
  return rows().surfaceViscosity[m_row][std::min(direction, 1U)];
}

bool ContactMaterial::setMinMaxElasticRestLength(Real min, Real max)
{
  if (!(min > 0 && max >= min)) return false;
  rows().minElasticRestLength[m_row] = min;
  rows().maxElasticRestLength[m_row] = max;
  return true;
}

void ContactMaterial::setAdhesion(Real adhesion, Real overlap)
{
  rows().adhesion[m_row] = notNegative(adhesion);
  rows().adhesiveOverlap[m_row] = notNegative(overlap);
}

void ContactMaterial::setEnableSurfaceFriction(bool enable) { rows().surfaceFrictionEnabled[m_row] = enable; }
bool ContactMaterial::getSurfaceFrictionEnabled() const { return rows().surfaceFrictionEnabled[m_row]; }
void ContactMaterial::setRestitution(Real restitution)
{
  rows().restitution[m_row] = notNegative(restitution);
}
Real ContactMaterial::getRestitution() const { return rows().restitution[m_row]; }
void ContactMaterial::setYoungsModulus(Real modulus) { rows().youngsModulus[m_row] = modulus; }
Real ContactMaterial::getYoungsModulus() const { return rows().youngsModulus[m_row]; }
void ContactMaterial::setDamping(Real time) { rows().damping[m_row] = time; }
Real ContactMaterial::getDamping() const { return rows().damping[m_row]; }
void ContactMaterial::setImpactCompliance(Real compliance) { rows().impactCompliance[m_row] = compliance; }
Real ContactMaterial::getImpactCompliance() const { return rows().impactCompliance[m_row]; }
void ContactMaterial::setUseContactAreaApproach(bool use) { rows().useContactAreaApproach[m_row] = use; }
bool ContactMaterial::getUseContactAreaApproach() const { return rows().useContactAreaApproach[m_row]; }
Real ContactMaterial::getMinElasticRestLength() const { return rows().minElasticRestLength[m_row]; }
Real ContactMaterial::getMaxElasticRestLength() const { return rows().maxElasticRestLength[m_row]; }
Real ContactMaterial::getAdhesion() const { return rows().adhesion[m_row]; }
Real ContactMaterial::getAdhesiveOverlap() const { return rows().adhesiveOverlap[m_row]; }
void ContactMaterial::setContactReductionMode(UInt32 mode) { rows().contactReductionMode[m_row] = mode; }
UInt32 ContactMaterial::getContactReductionMode() const { return rows().contactReductionMode[m_row]; }
void ContactMaterial::setContactReductionBinResolution(UInt8 resolution)
{
  rows().contactReductionBinResolution[m_row] = resolution;
}
UInt8 ContactMaterial::getContactReductionBinResolution() const
{
  return rows().contactReductionBinResolution[m_row];
}
void ContactMaterial::setRollingResistanceCoefficient(Real arm)
{
  rows().rollingResistanceCoefficient[m_row] = arm;
}
Real ContactMaterial::getRollingResistanceCoefficient() const
{
  return rows().rollingResistanceCoefficient[m_row];
}
void ContactMaterial::setTwistingResistanceCoefficient(Real arm)
{
  rows().twistingResistanceCoefficient[m_row] = arm;
}
Real ContactMaterial::getTwistingResistanceCoefficient() const
{
  return rows().twistingResistanceCoefficient[m_row];
}
void ContactMaterial::setRollingResistanceCompliance(Real compliance)
{
  rows().rollingResistanceCompliance[m_row] = compliance;
}
Real ContactMaterial::getRollingResistanceCompliance() const
{
  return rows().rollingResistanceCompliance[m_row];
}
void ContactMaterial::setTwistingResistanceCompliance(Real compliance)
{
  rows().twistingResistanceCompliance[m_row] = compliance;
}
Real ContactMaterial::getTwistingResistanceCompliance() const
{
  return rows().twistingResistanceCompliance[m_row];
}
void ContactMaterial::setWireFrictionCoefficient(Real coefficient)
{
  rows().wireFrictionCoefficient[m_row] = notNegative(coefficient);
}
Real ContactMaterial::getWireFrictionCoefficient() const { return rows().wireFrictionCoefficient[m_row]; }
void ContactMaterial::setKinematicContactNodeVelocityScale(Real scale)
{
  rows().kinematicContactNodeVelocityScale[m_row] = notNegative(scale);
}
Real ContactMaterial::getKinematicContactNodeVelocityScale() const
{
  return rows().kinematicContactNodeVelocityScale[m_row];
}

} // namespace kel
