#pragma once
#include "kelCollide/ContactPoint.h"
#include "kelData/EntityStorage.h"

namespace kelCollide {

class Geometry;

/// The rows of the contacts of all spaces. Never destroyed.
struct ContactRows
{
  kel::ref_ptr<kelData::EntityStorage> storage;
  Geometry** geometry1;
  Geometry** geometry2;
  const ContactPoint** points; ///< the first of them, in the space
  kel::UInt32* numPoints;
  bool* enabled;

  static const ContactRows& instance();

private:
  ContactRows();
};

/// The rows of the contact points of all spaces. Never destroyed.
struct ContactPointRows
{
  kel::ref_ptr<kelData::EntityStorage> storage;
  kel::Vec3* point;   ///< m
  kel::Vec3f* normal; ///< from the second geometry to the first
  kel::Vec3f* tangentU;
  kel::Vec3f* tangentV;
  kel::Vec3f* velocity;  ///< m/s, of the surfaces
  kel::Vec3* localForce; ///< N, along the normal, u and v
  kel::Vec3* impulse;    ///< N s, the same; before the solution where it starts
  kel::Real* depth;      ///< m
  bool* enabled;
  void** source; ///< the detector's point

  static const ContactPointRows& instance();

private:
  ContactPointRows();
};

} // namespace kelCollide
