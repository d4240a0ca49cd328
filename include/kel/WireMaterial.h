#pragma once
#include "kel/MaterialPart.h"

namespace kel {

/// What a material is like as a wire. The parameters are a row of the storage of all wire materials; setters
/// take any number. The defaults are those of a steel rope.
class WireMaterial : public MaterialPart
{
public:
  static constexpr Real DEFAULT_FRICTION = 0.5;
  static constexpr Real DEFAULT_VELOCITY_SCALE = 1;
  /// Pa
  static constexpr Real DEFAULT_YOUNGS_MODULUS_STRETCH = 6e10;
  static constexpr Real DEFAULT_YOUNGS_MODULUS_BEND = 6e9;
  /// s
  static constexpr Real DEFAULT_DAMPING = 0.075;

  WireMaterial();
  /// Takes over all parameters of another one.
  void copy(const WireMaterial& other);

  /// Coefficient of friction of a wire along what it runs over.
  void setFrictionCoefficient(Real friction);
  Real getFrictionCoefficient() const;
  /// Part of the speed of a kinematic body that a wire's contact with it takes over.
  void setKinematicContactNodeVelocityScale(Real scale);
  Real getKinematicContactNodeVelocityScale() const;
  /// Stiffness against stretching, Pa, and the time in which a stretch goes to about a third, s.
  void setYoungsModulusStretch(Real modulus);
  Real getYoungsModulusStretch() const;
  void setDampingStretch(Real time);
  Real getDampingStretch() const;
  /// Stiffness against bending, Pa, and the time in which a bend goes to about a third, s.
  void setYoungsModulusBend(Real modulus);
  Real getYoungsModulusBend() const;
  void setDampingBend(Real time);
  Real getDampingBend() const;
  String getClassName() const override { return "WireMaterial"; }

protected:
  ~WireMaterial() override = default;
};

} // namespace kel
