#include "kel/BulkMaterial.h"
#include "kel/SurfaceMaterial.h"
#include "kel/WireMaterial.h"
#include "material/MaterialRows.h"

namespace kel {

MaterialPart::MaterialPart(kelData::EntityStorage& storage, bool* dirty)
    : m_entity(storage.createInstance()), m_row(m_entity.calculateIndex()), m_dirty(dirty + m_row)
{}

MaterialPart::~MaterialPart() { m_entity.destroy(); }

void MaterialPart::changed()
{
  *m_dirty = true;
  ++m_modifiedCount;
}

namespace {
const BulkMaterialRows& bulk() { return BulkMaterialRows::instance(); }
const SurfaceMaterialRows& surface() { return SurfaceMaterialRows::instance(); }
const WireMaterialRows& wire() { return WireMaterialRows::instance(); }
} // namespace

BulkMaterial::BulkMaterial() : MaterialPart(*bulk().storage, bulk().dirty) {}

void BulkMaterial::copy(const BulkMaterial& other)
{
  setDensity(other.getDensity());
  setYoungsModulus(other.getYoungsModulus());
  setPoissonsRatio(other.getPoissonsRatio());
  setDamping(other.getDamping());
  setViscosity(other.getViscosity());
  setMinMaxElasticRestLength(other.getMinElasticRestLength(), other.getMaxElasticRestLength());
}

void BulkMaterial::setDensity(Real density) { write(bulk().density, density); }
Real BulkMaterial::getDensity() const { return bulk().density[getRow()]; }
void BulkMaterial::setYoungsModulus(Real modulus) { write(bulk().youngsModulus, modulus); }
Real BulkMaterial::getYoungsModulus() const { return bulk().youngsModulus[getRow()]; }
void BulkMaterial::setPoissonsRatio(Real ratio) { write(bulk().poissonsRatio, ratio); }
Real BulkMaterial::getPoissonsRatio() const { return bulk().poissonsRatio[getRow()]; }
void BulkMaterial::setDamping(Real time) { write(bulk().damping, time); }
Real BulkMaterial::getDamping() const { return bulk().damping[getRow()]; }
void BulkMaterial::setViscosity(Real viscosity) { write(bulk().viscosity, viscosity); }
Real BulkMaterial::getViscosity() const { return bulk().viscosity[getRow()]; }
Real BulkMaterial::getMinElasticRestLength() const { return bulk().minElasticRestLength[getRow()]; }
Real BulkMaterial::getMaxElasticRestLength() const { return bulk().maxElasticRestLength[getRow()]; }

bool BulkMaterial::setMinMaxElasticRestLength(Real min, Real max)
{
  if (!(min > 0 && max >= min)) return false;
  write(bulk().minElasticRestLength, min);
  write(bulk().maxElasticRestLength, max);
  return true;
}

SurfaceMaterial::SurfaceMaterial() : MaterialPart(*surface().storage, surface().dirty) {}

void SurfaceMaterial::copy(const SurfaceMaterial& other)
{
  setRoughness(other.getRoughness());
  setAdhesion(other.getAdhesion(), other.getAdhesiveOverlap());
  setViscosity(other.getViscosity());
  setFrictionEnabled(other.getFrictionEnabled());
}

void SurfaceMaterial::setRoughness(Real roughness) { write(surface().roughness, roughness); }
Real SurfaceMaterial::getRoughness() const { return surface().roughness[getRow()]; }
Real SurfaceMaterial::getAdhesion() const { return surface().adhesion[getRow()]; }
Real SurfaceMaterial::getAdhesiveOverlap() const { return surface().adhesiveOverlap[getRow()]; }
void SurfaceMaterial::setViscosity(Real viscosity) { write(surface().viscosity, viscosity); }
Real SurfaceMaterial::getViscosity() const { return surface().viscosity[getRow()]; }
void SurfaceMaterial::setFrictionEnabled(bool enable) { write(surface().frictionEnabled, enable); }
bool SurfaceMaterial::getFrictionEnabled() const { return surface().frictionEnabled[getRow()]; }

void SurfaceMaterial::setAdhesion(Real adhesion, Real overlap)
{
  write(surface().adhesion, adhesion);
  write(surface().adhesiveOverlap, overlap);
}

WireMaterial::WireMaterial() : MaterialPart(*wire().storage, wire().dirty) {}

void WireMaterial::copy(const WireMaterial& other)
{
  setFrictionCoefficient(other.getFrictionCoefficient());
  setKinematicContactNodeVelocityScale(other.getKinematicContactNodeVelocityScale());
  setYoungsModulusStretch(other.getYoungsModulusStretch());
  setDampingStretch(other.getDampingStretch());
  setYoungsModulusBend(other.getYoungsModulusBend());
  setDampingBend(other.getDampingBend());
}

void WireMaterial::setFrictionCoefficient(Real friction) { write(wire().frictionCoefficient, friction); }
Real WireMaterial::getFrictionCoefficient() const { return wire().frictionCoefficient[getRow()]; }
void WireMaterial::setYoungsModulusStretch(Real modulus) { write(wire().youngsModulusStretch, modulus); }
Real WireMaterial::getYoungsModulusStretch() const { return wire().youngsModulusStretch[getRow()]; }
void WireMaterial::setDampingStretch(Real time) { write(wire().dampingStretch, time); }
Real WireMaterial::getDampingStretch() const { return wire().dampingStretch[getRow()]; }
void WireMaterial::setYoungsModulusBend(Real modulus) { write(wire().youngsModulusBend, modulus); }
Real WireMaterial::getYoungsModulusBend() const { return wire().youngsModulusBend[getRow()]; }
void WireMaterial::setDampingBend(Real time) { write(wire().dampingBend, time); }
Real WireMaterial::getDampingBend() const { return wire().dampingBend[getRow()]; }

void WireMaterial::setKinematicContactNodeVelocityScale(Real scale)
{
  write(wire().kinematicContactNodeVelocityScale, scale);
}

Real WireMaterial::getKinematicContactNodeVelocityScale() const
{
  return wire().kinematicContactNodeVelocityScale[getRow()];
}

} // namespace kel
