#pragma once
#include "Rows.h"
#include "kel/Vec2.h"

namespace kel {

/// The rows of all bulk materials, in the units of `BulkMaterial`.
struct BulkMaterialRows : Rows<BulkMaterialRows>
{
  bool* dirty = nullptr;
  Real* density = nullptr;
  Real* youngsModulus = nullptr;
  Real* poissonsRatio = nullptr;
  Real* damping = nullptr;
  Real* viscosity = nullptr;
  Real* minElasticRestLength = nullptr;
  Real* maxElasticRestLength = nullptr;

private:
  friend Rows;
  BulkMaterialRows();
};

/// The rows of all surface materials, in the units of `SurfaceMaterial`.
struct SurfaceMaterialRows : Rows<SurfaceMaterialRows>
{
  bool* dirty = nullptr;
  Real* roughness = nullptr;
  Real* adhesion = nullptr;
  Real* adhesiveOverlap = nullptr;
  Real* viscosity = nullptr;
  bool* frictionEnabled = nullptr;

private:
  friend Rows;
  SurfaceMaterialRows();
};

/// The rows of all wire materials, in the units of `WireMaterial`.
struct WireMaterialRows : Rows<WireMaterialRows>
{
  bool* dirty = nullptr;
  Real* frictionCoefficient = nullptr;
  Real* kinematicContactNodeVelocityScale = nullptr;
  Real* youngsModulusStretch = nullptr;
  Real* dampingStretch = nullptr;
  Real* youngsModulusBend = nullptr;
  Real* dampingBend = nullptr;

private:
  friend Rows;
  WireMaterialRows();
};

/// The rows of all materials.
struct MaterialRows : Rows<MaterialRows>
{
  kelData::EntityPtr* bulkMaterial = nullptr;
  kelData::EntityPtr* surfaceMaterial = nullptr;
  kelData::EntityPtr* wireMaterial = nullptr;
  UInt32* frictionType = nullptr;

private:
  friend Rows;
  MaterialRows();
};

/// The rows of all contact materials, in the units of `ContactMaterial`.
struct ContactMaterialRows : Rows<ContactMaterialRows>
{
  Vec2* frictionCoefficient = nullptr; ///< in the primary and the secondary direction
  Vec2* surfaceViscosity = nullptr;
  bool* surfaceFrictionEnabled = nullptr;
  Real* restitution = nullptr;
  Real* youngsModulus = nullptr;
  Real* damping = nullptr;
  Real* minElasticRestLength = nullptr;
  Real* maxElasticRestLength = nullptr;
  Real* impactCompliance = nullptr;
  Real* adhesion = nullptr;
  Real* adhesiveOverlap = nullptr;
  UInt32* contactReductionMode = nullptr;
  UInt8* contactReductionBinResolution = nullptr;
  bool* useContactAreaApproach = nullptr;
  Real* rollingResistanceCoefficient = nullptr;
  Real* twistingResistanceCoefficient = nullptr;
  Real* rollingResistanceCompliance = nullptr;
  Real* twistingResistanceCompliance = nullptr;
  Real* wireFrictionCoefficient = nullptr;
  Real* kinematicContactNodeVelocityScale = nullptr;

private:
  friend Rows;
  ContactMaterialRows();
};

} // namespace kel
