#pragma once
#include "kel/MaterialPart.h"

namespace kel {

/// What a material is like inside. The parameters are a row of the storage of all bulk materials; setters
/// take any number.
class BulkMaterial : public MaterialPart
{
public:
  /// Density of water, kg/m3.
  static constexpr Real DEFAULT_DENSITY = 1000;
  /// Nylon or wood along the grain, Pa.
  static constexpr Real DEFAULT_YOUNGS_MODULUS = 2e9;
  static constexpr Real DEFAULT_POISSONS_RATIO = 0.3;
  /// Ten of the usual steps, s.
  static constexpr Real DEFAULT_DAMPING = 1.0 / 6;
  /// Gives a restitution of 0.5: hard plastic or wood, which bounce a little and come to rest.
  static constexpr Real DEFAULT_VISCOSITY = 0.5;
  /// m
  static constexpr Real DEFAULT_MIN_ELASTIC_REST_LENGTH = 1e-3;
  static constexpr Real DEFAULT_MAX_ELASTIC_REST_LENGTH = 1;

  BulkMaterial();
  /// Takes over all parameters of another one.
  void copy(const BulkMaterial& other);

  /// Density, kg/m3, above 0. Bodies take it when their mass is next computed.
  void setDensity(Real density);
  Real getDensity() const;
  /// Stiffness of the material, Pa.
  void setYoungsModulus(Real modulus);
  Real getYoungsModulus() const;
  /// Ratio of the strains across and along a pull.
  void setPoissonsRatio(Real ratio);
  Real getPoissonsRatio() const;
  /// Time in which a penetration goes to about a third, s.
  void setDamping(Real time);
  Real getDamping() const;
  /// Part of the speed that an impact takes: 0 gives restitution 1, 1 gives restitution 0.
  void setViscosity(Real viscosity);
  Real getViscosity() const;
  /// Bounds of the length over which a contact squeezes the material, m; see
  /// `ContactMaterial::setUseContactAreaApproach`. False, and nothing changes, unless 0 < min <= max.
  bool setMinMaxElasticRestLength(Real min, Real max);
  Real getMinElasticRestLength() const;
  Real getMaxElasticRestLength() const;
  String getClassName() const override { return "BulkMaterial"; }

protected:
  ~BulkMaterial() override = default;
};

} // namespace kel
