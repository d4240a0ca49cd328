#pragma once
#include "kel/ContactMaterial.h"
#include "kelCollide/GeometryContact.h"

namespace kel {

/// Stiffness of the points of a contact, N/m, by the contact area; writes each point's share of the area to
/// its row.
class AreaStiffness
{
public:
  AreaStiffness(const kelCollide::GeometryContact& contact, const ContactMaterial& material);

  Real at(const kelCollide::ContactPoint& point) const;

private:
  const kelCollide::GeometryContact& m_contact;
  const ContactMaterial& m_material;
  Real m_hullShare; ///< of one point, m2; 0 if the points span no area
};

} // namespace kel
