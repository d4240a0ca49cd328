#include "material/MaterialRows.h"
#include "kel/BulkMaterial.h"
#include "kel/ContactMaterial.h"
#include "kel/SurfaceMaterial.h"
#include "kel/WireMaterial.h"
#include "kelData/EntityLayout.h"

namespace kel {

const BulkMaterialRows& BulkMaterialRows::instance()
{
  static const auto* rows = new BulkMaterialRows;
  return *rows;
}

BulkMaterialRows::BulkMaterialRows()
{
  kelData::EntityLayout layout("BulkMaterial");
  layout.column("dirty", dirty, true);
  layout.column("density", density, BulkMaterial::DEFAULT_DENSITY);
  layout.column("youngsModulus", youngsModulus, BulkMaterial::DEFAULT_YOUNGS_MODULUS);
  layout.column("poissonsRatio", poissonsRatio, BulkMaterial::DEFAULT_POISSONS_RATIO);
  layout.column("damping", damping, BulkMaterial::DEFAULT_DAMPING);
  layout.column("viscosity", viscosity, BulkMaterial::DEFAULT_VISCOSITY);
  layout.column("minElasticRestLength", minElasticRestLength, BulkMaterial::DEFAULT_MIN_ELASTIC_REST_LENGTH);
  layout.column("maxElasticRestLength", maxElasticRestLength, BulkMaterial::DEFAULT_MAX_ELASTIC_REST_LENGTH);
  storage = layout.createStorage();
}

const SurfaceMaterialRows& SurfaceMaterialRows::instance()
{
  static const auto* rows = new SurfaceMaterialRows;
  return *rows;
}

SurfaceMaterialRows::SurfaceMaterialRows()
{
  kelData::EntityLayout layout("SurfaceMaterial");
  layout.column("dirty", dirty, true);
  layout.column("roughness", roughness, SurfaceMaterial::DEFAULT_ROUGHNESS);
  layout.column("adhesion", adhesion);
  layout.column("adhesiveOverlap", adhesiveOverlap);
  layout.column("viscosity", viscosity, SurfaceMaterial::DEFAULT_VISCOSITY);
  layout.column("frictionEnabled", frictionEnabled, true);
  storage = layout.createStorage();
}

const WireMaterialRows& WireMaterialRows::instance()
{
  static const auto* rows = new WireMaterialRows;
  return *rows;
}

WireMaterialRows::WireMaterialRows()
{
  kelData::EntityLayout layout("WireMaterial");
  layout.column("dirty", dirty, true);
  layout.column("frictionCoefficient", frictionCoefficient, WireMaterial::DEFAULT_FRICTION);
  layout.column("kinematicContactNodeVelocityScale", kinematicContactNodeVelocityScale,
                WireMaterial::DEFAULT_VELOCITY_SCALE);
  layout.column("youngsModulusStretch", youngsModulusStretch, WireMaterial::DEFAULT_YOUNGS_MODULUS_STRETCH);
  layout.column("dampingStretch", dampingStretch, WireMaterial::DEFAULT_DAMPING);
  layout.column("youngsModulusBend", youngsModulusBend, WireMaterial::DEFAULT_YOUNGS_MODULUS_BEND);
  layout.column("dampingBend", dampingBend, WireMaterial::DEFAULT_DAMPING);
  storage = layout.createStorage();
}

const MaterialRows& MaterialRows::instance()
{
  static const auto* rows = new MaterialRows;
  return *rows;
}

MaterialRows::MaterialRows()
{
  kelData::EntityLayout layout("Material");
  layout.column("bulkMaterial", bulkMaterial);
  layout.column("surfaceMaterial", surfaceMaterial);
  layout.column("wireMaterial", wireMaterial);
  layout.column("frictionType", frictionType);
  storage = layout.createStorage();
}

const ContactMaterialRows& ContactMaterialRows::instance()
{
  static const auto* rows = new ContactMaterialRows;
  return *rows;
}

// Most parameters come from the materials when a contact material is made; these do not.
ContactMaterialRows::ContactMaterialRows()
{
  kelData::EntityLayout layout("ContactMaterial");
  layout.column("frictionCoefficient", frictionCoefficient);
  layout.column("surfaceViscosity", surfaceViscosity);
  layout.column("surfaceFrictionEnabled", surfaceFrictionEnabled);
  layout.column("restitution", restitution);
  layout.column("youngsModulus", youngsModulus);
  layout.column("damping", damping);
  layout.column("minElasticRestLength", minElasticRestLength);
  layout.column("maxElasticRestLength", maxElasticRestLength);
  layout.column("impactCompliance", impactCompliance, ContactMaterial::DEFAULT_IMPACT_COMPLIANCE);
  layout.column("adhesion", adhesion);
  layout.column("adhesiveOverlap", adhesiveOverlap);
  layout.column("contactReductionMode", contactReductionMode, UInt32(ContactMaterial::REDUCE_GEOMETRY));
  layout.column("contactReductionBinResolution", contactReductionBinResolution);
  layout.column("useContactAreaApproach", useContactAreaApproach);
  layout.column("rollingResistanceCoefficient", rollingResistanceCoefficient);
  layout.column("twistingResistanceCoefficient", twistingResistanceCoefficient);
  layout.column("rollingResistanceCompliance", rollingResistanceCompliance,
                ContactMaterial::DEFAULT_RESISTANCE_COMPLIANCE);
  layout.column("twistingResistanceCompliance", twistingResistanceCompliance,
                ContactMaterial::DEFAULT_RESISTANCE_COMPLIANCE);
  layout.column("wireFrictionCoefficient", wireFrictionCoefficient);
  layout.column("kinematicContactNodeVelocityScale", kinematicContactNodeVelocityScale);
  storage = layout.createStorage();
}

} // namespace kel
