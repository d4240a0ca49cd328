#pragma once
#include "Rows.h"
#include "kelCollide/ContactPoint.h"

namespace kel {
class ContactMaterial;
}

namespace kelCollide {

class Geometry;

/// The rows of the contacts of all spaces.
struct ContactRows : kel::Rows<ContactRows>
{
  Geometry** geometry1 = nullptr;
  Geometry** geometry2 = nullptr;
  ContactPoint** points = nullptr; ///< the first of them, in the space
  kel::UInt32* numPoints = nullptr;
  bool* enabled = nullptr;
  kel::ContactMaterial** material = nullptr; ///< held by the row

  /// Lets a row hold a contact material, or none.
  void setMaterial(kel::Index row, kel::ContactMaterial* newMaterial) const;

private:
  friend Rows;
  ContactRows();
};

/// The rows of the contact points of all spaces.
struct ContactPointRows : kel::Rows<ContactPointRows>
{
  kel::Vec3* point = nullptr;   ///< m
  kel::Vec3f* normal = nullptr; ///< from the second geometry to the first
  kel::Vec3f* tangentU = nullptr;
  kel::Vec3f* tangentV = nullptr;
  kel::Vec3f* velocity = nullptr;     ///< m/s, of the surfaces
  kel::Vec3* localForce = nullptr;    ///< N, along the normal, u and v
  kel::Vec3* impulse = nullptr;       ///< N s, the same; before the solution where it starts
  kel::Real* depth = nullptr;         ///< m
  kel::Real* area = nullptr;          ///< m2, 0 where nobody has asked for it
  kel::Real* boundingForce = nullptr; ///< N, of friction, where a friction model gives it
  bool* enabled = nullptr;

private:
  friend Rows;
  ContactPointRows();
};

} // namespace kelCollide
