#pragma once
#include "kel/RigidBody.h"
#include "kelCollide/Space.h"
#include <vector>

/// Two shapes in a space; the second one rides on a body.
struct Pair
{
  kel::ref_ptr<kelCollide::Space> space = new kelCollide::Space;
  kel::ref_ptr<kelCollide::Geometry> still;
  kel::ref_ptr<kel::RigidBody> body;

  Pair(kelCollide::Shape* stillShape, kelCollide::Shape* movingShape)
      : still(new kelCollide::Geometry(stillShape)),
        body(new kel::RigidBody(new kelCollide::Geometry(movingShape)))
  {
    space->add(still.get());
    space->add(body->getGeometries()[0].get());
  }

  /// The points of the contact with the body somewhere; the normal goes from the body to the other shape.
  std::vector<kelCollide::ContactPoint> pointsAt(const kel::Vec3& position,
                                                 const kel::Quat& rotation = kel::Quat())
  {
    body->setTransform(kel::AffineMatrix4x4(rotation, position));
    space->update();
    std::vector<kelCollide::ContactPoint> points;
    for (const kelCollide::GeometryContact& contact : space->getGeometryContacts())
      for (std::size_t i = 0; i < contact.getNumPoints(); ++i) points.push_back(contact.getPoint(i));
    return points;
  }
};
