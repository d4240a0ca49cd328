#pragma once
#include "kel/Vec3.h"
#include "kelData/EntityPtr.h"

namespace kelCollide {

/// Handle on the row of a contact point, valid until the next update of its space. World coordinates, m, N,
/// m/s. References are views of the row.
class ContactPoint : public kelData::EntityPtr
{
public:
  /// Components of the local force.
  enum Component
  {
    NORMAL_FORCE = 0,
    TANGENTIAL_FORCE_U = 1,
    TANGENTIAL_FORCE_V = 2
  };

  /// Names no point.
  ContactPoint() = default;
  explicit ContactPoint(const kelData::EntityPtr& row) : kelData::EntityPtr(row) {}

  /// Whether the solver takes the point.
  bool& enabled() const;
  /// Middle between the two surfaces.
  kel::Vec3& point() const;
  /// Depth of penetration, m; negative for surfaces that only come near each other.
  kel::Real& depth() const;
  /// Share of the contact's area, m2, where the contact material uses it; 0 elsewhere.
  kel::Real& area() const;
  /// Unit normal, from the second geometry to the first.
  kel::Vec3f& normal() const;
  /// Unit tangents; u, v and the normal are orthogonal.
  kel::Vec3f& tangentU() const;
  kel::Vec3f& tangentV() const;
  /// What the surface of the first geometry moves against that of the second by their surface velocities.
  kel::Vec3f& velocity() const;
  /// Component of the force on the first geometry in the last solution; the index is not tested.
  kel::Real& localForce(std::size_t component) const;

  /// The force on the first geometry in the last solution, and its parts.
  kel::Vec3 getForce() const { return getTangentialForce() + getNormalForce(); }
  kel::Vec3 getNormalForce() const;
  kel::Vec3 getTangentialForce() const;
  kel::Real getNormalForceMagnitude() const;
  kel::Real getTangentialForceMagnitude() const;
};

} // namespace kelCollide
