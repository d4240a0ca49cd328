#include "material/MaterialRows.h"
#include "kel/BulkMaterial.h"
#include "kel/ContactMaterial.h"
#include "kel/SurfaceMaterial.h"
#include "kel/WireMaterial.h"
#include "kelData/EntityLayout.h"

namespace kel {

BulkMaterialRows::BulkMaterialRows()
{
  kelData::EntityLayout layout("Physics.BulkMaterial");
  layout.readOnlyColumn("dirty", dirty, true);
  layout.readOnlyColumn("density", density, BulkMaterial::DEFAULT_DENSITY);
  layout.readOnlyColumn("youngsModulus", youngsModulus, BulkMaterial::DEFAULT_YOUNGS_MODULUS);
  layout.readOnlyColumn("poissonsRatio", poissonsRatio, BulkMaterial::DEFAULT_POISSONS_RATIO);
  layout.readOnlyColumn("damping", damping, BulkMaterial::DEFAULT_DAMPING);
  layout.readOnlyColumn("viscosity", viscosity, BulkMaterial::DEFAULT_VISCOSITY);
  layout.readOnlyColumn("minElasticRestLength", minElasticRestLength,
                        BulkMaterial::DEFAULT_MIN_ELASTIC_REST_LENGTH);
  layout.readOnlyColumn("maxElasticRestLength", maxElasticRestLength,
                        BulkMaterial::DEFAULT_MAX_ELASTIC_REST_LENGTH);
  storage = layout.createStorage();
}

SurfaceMaterialRows::SurfaceMaterialRows()
{
  kelData::EntityLayout layout("Physics.SurfaceMaterial");
  layout.readOnlyColumn("dirty", dirty, true);
  layout.readOnlyColumn("roughness", roughness, SurfaceMaterial::DEFAULT_ROUGHNESS);
  layout.readOnlyColumn("adhesion", adhesion);
  layout.readOnlyColumn("adhesiveOverlap", adhesiveOverlap);
  layout.readOnlyColumn("viscosity", viscosity, SurfaceMaterial::DEFAULT_VISCOSITY);
  layout.readOnlyColumn("frictionEnabled", frictionEnabled, true);
  storage = layout.createStorage();
}

WireMaterialRows::WireMaterialRows()
{
  kelData::EntityLayout layout("Physics.WireMaterial");
  layout.readOnlyColumn("dirty", dirty, true);
  layout.readOnlyColumn("frictionCoefficient", frictionCoefficient, WireMaterial::DEFAULT_FRICTION);
  layout.readOnlyColumn("kinematicContactNodeVelocityScale", kinematicContactNodeVelocityScale,
                        WireMaterial::DEFAULT_VELOCITY_SCALE);
  layout.readOnlyColumn("youngsModulusStretch", youngsModulusStretch,
                        WireMaterial::DEFAULT_YOUNGS_MODULUS_STRETCH);
  layout.readOnlyColumn("dampingStretch", dampingStretch, WireMaterial::DEFAULT_DAMPING);
  layout.readOnlyColumn("youngsModulusBend", youngsModulusBend, WireMaterial::DEFAULT_YOUNGS_MODULUS_BEND);
  layout.readOnlyColumn("dampingBend", dampingBend, WireMaterial::DEFAULT_DAMPING);
  storage = layout.createStorage();
}

MaterialRows::MaterialRows()
{
  kelData::EntityLayout layout("Physics.Material");
  layout.readOnlyColumn("bulkMaterial", bulkMaterial);
  layout.readOnlyColumn("surfaceMaterial", surfaceMaterial);
  layout.readOnlyColumn("wireMaterial", wireMaterial);
  layout.readOnlyColumn("frictionType", frictionType);
  storage = layout.createStorage();
}

// Most parameters come from the materials when a contact material is made; these do not.
ContactMaterialRows::ContactMaterialRows()
{
  kelData::EntityLayout layout("Physics.ContactMaterial");
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
