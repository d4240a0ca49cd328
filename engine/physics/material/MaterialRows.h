#pragma once
#include "kel/Vec2.h"
#include "kel/ref_ptr.h"
#include "kelData/EntityStorage.h"

namespace kel {

/// The rows of all bulk materials of the process, in the units of `BulkMaterial`. These and the rows below
/// are never destroyed: materials may outlive any static object.
struct BulkMaterialRows
{
  ref_ptr<kelData::EntityStorage> storage;
  bool* dirty = nullptr;
  Real* density = nullptr;
  Real* youngsModulus = nullptr;
  Real* poissonsRatio = nullptr;
  Real* damping = nullptr;
  Real* viscosity = nullptr;
  Real* minElasticRestLength = nullptr;
  Real* maxElasticRestLength = nullptr;

  static const BulkMaterialRows& instance();

private:
  BulkMaterialRows();
};

/// The rows of all surface materials, in the units of `SurfaceMaterial`.
struct SurfaceMaterialRows
{
  ref_ptr<kelData::EntityStorage> storage;
  bool* dirty = nullptr;
  Real* roughness = nullptr;
  Real* adhesion = nullptr;
  Real* adhesiveOverlap = nullptr;
  Real* viscosity = nullptr;
  bool* frictionEnabled = nullptr;

  static const SurfaceMaterialRows& instance();

private:
  SurfaceMaterialRows();
};

/// The rows of all wire materials, in the units of `WireMaterial`.
struct WireMaterialRows
{
  ref_ptr<kelData::EntityStorage> storage;
  bool* dirty = nullptr;
  Real* frictionCoefficient = nullptr;
  Real* kinematicContactNodeVelocityScale = nullptr;
  Real* youngsModulusStretch = nullptr;
  Real* dampingStretch = nullptr;
  Real* youngsModulusBend = nullptr;
  Real* dampingBend = nullptr;

  static const WireMaterialRows& instance();

private:
  WireMaterialRows();
};

/// The rows of all materials.
struct MaterialRows
{
  ref_ptr<kelData::EntityStorage> storage;
  kelData::EntityPtr* bulkMaterial = nullptr;
  kelData::EntityPtr* surfaceMaterial = nullptr;
  kelData::EntityPtr* wireMaterial = nullptr;
  UInt32* frictionType = nullptr;

  static const MaterialRows& instance();

private:
  MaterialRows();
};

/// The rows of all contact materials, in the units of `ContactMaterial`.
struct ContactMaterialRows
{
  ref_ptr<kelData::EntityStorage> storage;
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

  static const ContactMaterialRows& instance();

private:
  ContactMaterialRows();
};

} // namespace kel
