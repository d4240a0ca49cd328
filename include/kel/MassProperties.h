#pragma once
#include "kel/Matrix3x3.h"
#include "kel/SPDMatrix3x3.h"
#include "kelStream/Serializable.h"

namespace kel {

class RigidBody;

/// Mass and inertia of a body, part of the body. They lie in the body's row. Values that are generated follow
/// the body's geometries; a body whose geometries have no volume keeps the values that it has.
class MassProperties : public kelStream::Serializable
{
public:
  /// What follows the geometries.
  enum AutoGenerate
  {
    MASS = 1,
    CM_OFFSET = 2,
    INERTIA = 4,
    AUTO_GENERATE_ALL = MASS | CM_OFFSET | INERTIA
  };

  /// Mass in kg, 1 at first. Unless `autoGenerate` is set it is no longer generated. An inertia that is still
  /// generated is made for the new mass. False, and nothing happens, for a mass that is not above 0 and
  /// finite.
  bool setMass(Real mass, bool autoGenerate = false);
  /// The mass, kg.
  Real getMass() const;
  /// 1 / mass, 1/kg.
  Real getInvMass() const;

  /// Inertia about the centre of mass along the axes of the centre-of-mass frame, kg m2, the identity at
  /// first. Unless `autoGenerate` is set it is no longer generated. False, and nothing happens, if the matrix
  /// is not positive definite.
  bool setInertiaTensor(const SPDMatrix3x3& inertia, bool autoGenerate = false);
  /// The same for a diagonal tensor.
  bool setInertiaTensor(const Vec3& principalInertiae, bool autoGenerate = false);
  /// The inertia: a view of the body's row.
  const SPDMatrix3x3& getInertiaTensor() const;
  /// The inverse of the inertia, 1/(kg m2).
  const SPDMatrix3x3& getInvInertiaTensor() const;
  /// Diagonal of the inertia.
  Vec3 getPrincipalInertiae() const { return getInertiaTensor().getDiagonal(); }
  /// The inverse mass three times.
  Vec3 getInvMassVector() const { return Vec3(getInvMass()); }
  /// The inverse mass on a diagonal.
  SPDMatrix3x3 getInvMassMatrix() const { return SPDMatrix3x3(getInvMassVector()); }

  /// Bits of `AutoGenerate`: what follows the geometries from now on, all of it at first.
  void setAutoGenerateMask(UInt32 mask);
  /// Bits of `AutoGenerate`: what follows the geometries.
  UInt32 getAutoGenerateMask() const;

  /// The tensor about a point at `offset` (m) from the centre of a mass (kg), by the parallel axis theorem;
  /// each element of the input is used for itself.
  static Matrix3x3 calculateOffsetTensor(const Matrix3x3& inertia, const Vec3& offset, Real mass);
  String getClassName() const override { return "MassProperties"; }

private:
  friend class RigidBody;
  explicit MassProperties(Index row) : m_row(row) {}
  void write(Real mass, const SPDMatrix3x3& inertia);

  Index m_row;
};

} // namespace kel
