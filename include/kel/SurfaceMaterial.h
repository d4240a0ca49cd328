#pragma once
#include "kel/MaterialPart.h"

namespace kel {

/// What the surface of a material is like. The parameters are a row of the storage of all surface materials;
/// setters take any number.
class SurfaceMaterial : public MaterialPart
{
public:
  /// Wood on stone, dry metal on metal.
  static constexpr Real DEFAULT_ROUGHNESS = 0.5;
  /// m/(N s); two of them make friction that holds creep by 1e-10 m/s a newton.
  static constexpr Real DEFAULT_VISCOSITY = 5e-11;

  SurfaceMaterial();
  /// Takes over all parameters of another one.
  void copy(const SurfaceMaterial& other);

  /// Coefficient of dry friction against the same surface.
  void setRoughness(Real roughness);
  Real getRoughness() const;
  /// Greatest force that holds a contact together, N, and the depth that such a contact keeps, m.
  void setAdhesion(Real adhesion, Real overlap);
  Real getAdhesion() const;
  Real getAdhesiveOverlap() const;
  /// Sliding speed that a force makes where friction holds, m/(N s): 0 for dry surfaces.
  void setViscosity(Real viscosity);
  Real getViscosity() const;
  /// Whether contacts of the surface have friction; true at first.
  void setFrictionEnabled(bool enable);
  bool getFrictionEnabled() const;
  String getClassName() const override { return "SurfaceMaterial"; }

protected:
  ~SurfaceMaterial() override = default;
};

} // namespace kel
