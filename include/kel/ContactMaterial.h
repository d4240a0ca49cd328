#pragma once
#include "kel/FrictionModel.h"
#include "kel/Material.h"

namespace kel {

/// How two materials meet. The parameters are a row of the storage of all contact materials.
class ContactMaterial : public Referenced, public kelStream::Serializable
{
public:
  /// The directions of friction, along the two tangents of a contact point.
  enum FrictionDirection
  {
    PRIMARY_DIRECTION = 0,
    SECONDARY_DIRECTION = 1,
    BOTH_PRIMARY_AND_SECONDARY = 2
  };
  /// Which contact points are thinned out together.
  enum ContactReductionMode
  {
    REDUCE_NONE = 0,     ///< none
    REDUCE_GEOMETRY = 1, ///< those of a pair of geometries
    REDUCE_ALL = 2       ///< those of all geometries of two bodies
  };
  /// 1/kg
  static constexpr Real DEFAULT_IMPACT_COMPLIANCE = 1e-9;
  /// rad/(N m s)
  static constexpr Real DEFAULT_RESISTANCE_COMPLIANCE = 1e-10;

  /// A contact material with the parameters that `calculate` gives, which are its own from then on. An
  /// implicit one follows its materials.
  ContactMaterial(const Material& material1, const Material& material2, bool isImplicit = false);
  ContactMaterial(const ContactMaterial&) = delete;
  ContactMaterial& operator=(const ContactMaterial&) = delete;

  /// Computes the parameters from the two materials: the geometric means of roughness, wire friction and
  /// restitution, 1 - bulk viscosity; Young's modulus of both in series; the sum of the surface viscosities;
  /// the larger damping time, adhesion, overlap and bounds of the elastic rest length; the mean of the wires'
  /// velocity scale. Friction only where both surfaces have it. The other parameters stay.
  void calculate();
  /// Calculates an implicit one whose materials have changed since it was last calculated.
  void update();
  void setImplicit(bool isImplicit) { m_isImplicit = isImplicit; }
  bool isImplicit() const { return m_isImplicit; }
  /// The materials. Held by the contact material.
  const Material* getMaterial1() const { return m_materials[0].get(); }
  const Material* getMaterial2() const { return m_materials[1].get(); }

  /// Coefficient of friction in a direction, 0 or 1, or any above for both; below 0 counts as 0. Throws
  /// `std::out_of_range` for a negative direction.
  void setFrictionCoefficient(Real coefficient, int direction = BOTH_PRIMARY_AND_SECONDARY);
  /// The coefficient in a direction; the secondary one for any above.
  Real getFrictionCoefficient(UInt32 direction = PRIMARY_DIRECTION) const;
  /// Sliding speed that a force makes where friction holds, m/(N s); directions as above.
  void setSurfaceViscosity(Real viscosity, int direction = BOTH_PRIMARY_AND_SECONDARY);
  Real getSurfaceViscosity(UInt32 direction = PRIMARY_DIRECTION) const;
  /// Whether there is any friction.
  void setEnableSurfaceFriction(bool enable);
  bool getSurfaceFrictionEnabled() const;
  /// Takes a reference on what decides the bounds of friction. Null, as at first, means an
  /// `IterativeProjectedConeFriction`.
  void setFrictionModel(FrictionModel* model) { m_frictionModel = model; }
  FrictionModel* getFrictionModel() const { return m_frictionModel.get(); }

  /// Ratio of speeds after and before an impact; below 0 counts as 0.
  void setRestitution(Real restitution);
  Real getRestitution() const;
  /// Stiffness, Pa. A contact point is a spring of this times 1 m, unless the contact area decides.
  void setYoungsModulus(Real modulus);
  Real getYoungsModulus() const;
  /// Time in which a penetration goes to about a third, s; below 0 acts as 0.
  void setDamping(Real time);
  Real getDamping() const;
  /// Speed that an impulse takes from a bounce, 1/kg; below 0 acts as 0.
  void setImpactCompliance(Real compliance);
  Real getImpactCompliance() const;
  /// Whether contacts are springs of Young's modulus times contact area by elastic rest length. The area is
  /// that of the hull of the points, or what a sphere of the rest length as diameter has in its plane. False
  /// at first.
  void setUseContactAreaApproach(bool use);
  bool getUseContactAreaApproach() const;
  /// Bounds of the elastic rest length, m: how thick the material behind a contact is, both sides together.
  /// False, and nothing changes, unless 0 < min <= max.
  bool setMinMaxElasticRestLength(Real min, Real max);
  Real getMinElasticRestLength() const;
  Real getMaxElasticRestLength() const;

  /// Greatest force that holds a contact together, N, shared by its points, and the depth that such a contact
  /// keeps, m. Below 0 counts as 0.
  void setAdhesion(Real adhesion, Real overlap);
  Real getAdhesion() const;
  Real getAdhesiveOverlap() const;

  /// A number of `ContactReductionMode`, which is not tested; `REDUCE_GEOMETRY` at first.
  void setContactReductionMode(UInt32 mode);
  UInt32 getContactReductionMode() const;
  /// Bins an axis by which points are thinned out; 0, as at first, means the space's number.
  void setContactReductionBinResolution(UInt8 resolution);
  UInt8 getContactReductionBinResolution() const;

  /// Arm of the moment by which the normal force resists rolling, m, and twisting about the normal, m. 0 at
  /// first; below 0 acts as 0.
  void setRollingResistanceCoefficient(Real arm);
  Real getRollingResistanceCoefficient() const;
  void setTwistingResistanceCoefficient(Real arm);
  Real getTwistingResistanceCoefficient() const;
  /// Angular speed that a moment makes where the resistance holds, rad/(N m s); below 0 acts as 0.
  void setRollingResistanceCompliance(Real compliance);
  Real getRollingResistanceCompliance() const;
  void setTwistingResistanceCompliance(Real compliance);
  Real getTwistingResistanceCompliance() const;

  /// Coefficient of friction of a wire along what it runs over; below 0 counts as 0.
  void setWireFrictionCoefficient(Real coefficient);
  Real getWireFrictionCoefficient() const;
  /// Part of the speed of a kinematic body that a wire's contact with it takes over; below 0 counts as 0.
  void setKinematicContactNodeVelocityScale(Real scale);
  Real getKinematicContactNodeVelocityScale() const;

  /// The row of this contact material in the storage of all contact materials.
  kelData::EntityPtr getEntity() const { return m_entity; }
  String getClassName() const override { return "ContactMaterial"; }

protected:
  ~ContactMaterial() override;

private:
  ref_ptr<const Material> m_materials[2];
  ref_ptr<FrictionModel> m_frictionModel;
  kelData::EntityPtr m_entity;
  Index m_row;
  UInt32 m_calculatedCount = 0; // changes of both materials when it was calculated
  bool m_isImplicit;
};

} // namespace kel
