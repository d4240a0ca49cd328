#pragma once
#include "kel/Name.h"
#include "kel/Referenced.h"
#include "kel/Types.h"
#include "kelStream/Serializable.h"

namespace kel {

/// What a geometry is made of. A contact takes the geometric means of the friction coefficients and of the
/// restitutions of its two materials.
class Material : public Referenced, public kelStream::Serializable
{
public:
  /// Coefficient of dry friction: wood on stone, dry metal on metal.
  static constexpr Real DEFAULT_FRICTION = 0.5;
  /// Ratio of speeds after and before an impact: hard plastic or wood, which bounce a little and come to
  /// rest.
  static constexpr Real DEFAULT_RESTITUTION = 0.5;
  /// Density of water, kg/m3.
  static constexpr Real DEFAULT_DENSITY = 1000;

  explicit Material(const Name& name, Real friction = DEFAULT_FRICTION,
                    Real restitution = DEFAULT_RESTITUTION)
      : m_name(name)
  {
    setFrictionCoefficient(friction);
    setRestitution(restitution);
  }

  /// The material of geometries that have none of their own. Lives as long as the process.
  static Material* getDefaultMaterial();

  const String& getName() const { return m_name.str(); }
  /// Coefficient of friction; below 0 counts as 0.
  void setFrictionCoefficient(Real friction) { m_friction = friction > 0 ? friction : 0; }
  Real getFrictionCoefficient() const { return m_friction; }
  /// Ratio of speeds after and before an impact; below 0 counts as 0.
  void setRestitution(Real restitution) { m_restitution = restitution > 0 ? restitution : 0; }
  Real getRestitution() const { return m_restitution; }
  /// Density in kg/m3, above 0.
  void setDensity(Real density) { m_density = density; }
  Real getDensity() const { return m_density; }
  String getClassName() const override { return "Material"; }

protected:
  ~Material() override = default;

private:
  Name m_name;
  Real m_friction = DEFAULT_FRICTION;
  Real m_restitution = DEFAULT_RESTITUTION;
  Real m_density = DEFAULT_DENSITY;
};

} // namespace kel
