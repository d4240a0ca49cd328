#pragma once
#include "kelCollide/ContactPoint.h"
#include <cstddef>

namespace kel {
class ContactMaterial;
class RigidBody;
} // namespace kel

namespace kelCollide {

class Geometry;

/// Handle on the row of a contact of two geometries, valid until the next update of its space.
class GeometryContact : public kelData::EntityPtr
{
public:
  /// Names no contact.
  GeometryContact() = default;
  explicit GeometryContact(const kelData::EntityPtr& row) : kelData::EntityPtr(row) {}

  /// The first geometry for index 0, the second for any other. Not owned.
  Geometry* geometry(std::size_t index) const;
  /// The body that the geometry of an index rides on now, null for none. Not owned.
  kel::RigidBody* rigidBody(std::size_t index) const;
  std::size_t getNumPoints() const;
  /// The point of an index, not tested.
  ContactPoint getPoint(std::size_t index) const;
  /// Whether the solver takes the contact.
  void setEnable(bool enable);
  bool isEnabled() const;
  /// How the surfaces meet; null means what the materials of the geometries give. Held by the contact.
  kel::ContactMaterial* getMaterial() const;
  void setMaterial(kel::ContactMaterial* material);
};

} // namespace kelCollide
