#pragma once
#include "kelCollide/Box.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
#include "kelSDK/Simulation.h"
#include <cstdlib>

/// How many times the seeds and bodies of a short run a test takes: some in long runs.
inline unsigned scale()
{
  const char* factor = std::getenv("KEL_TEST_SCALE");
  return factor ? static_cast<unsigned>(std::atoi(factor)) : 1;
}

/// A simulation with short ways to fill it.
struct Scene
{
  static constexpr kel::Real G = 9.80665;

  kel::ref_ptr<kelSDK::Simulation> simulation = new kelSDK::Simulation;
  kel::ref_ptr<kel::Material> material = new kel::Material("test");

  explicit Scene(kel::Real timeStep = 1.0 / 60) { simulation->setTimeStep(timeStep); }

  kelCollide::Geometry* addGeometry(kelCollide::Shape* shape)
  {
    auto* geometry = new kelCollide::Geometry(shape);
    geometry->setMaterial(material.get());
    simulation->add(geometry);
    return geometry;
  }

  kel::RigidBody* addBody(kelCollide::Shape* shape, const kel::Vec3& position, kel::Real mass,
                          const kel::Quat& rotation = kel::Quat())
  {
    kel::ref_ptr<kelCollide::Geometry> geometry = new kelCollide::Geometry(shape);
    geometry->setMaterial(material.get());
    kel::ref_ptr<kel::RigidBody> body = new kel::RigidBody(geometry.get());
    body->getMassProperties()->setMass(mass);
    body->setTransform(kel::AffineMatrix4x4(rotation, position));
    simulation->add(body.get());
    return body.get();
  }

  void setFriction(kel::Real coefficient) { material->getSurfaceMaterial()->setRoughness(coefficient); }
  void setRestitution(kel::Real restitution) { material->getBulkMaterial()->setViscosity(1 - restitution); }

  void step(int steps)
  {
    for (int i = 0; i < steps; ++i) simulation->stepForward();
  }
};

/// A scene with a plane through the origin and a contact material for all that lies on it.
struct Ground : Scene
{
  kelCollide::Geometry* plane;
  kel::ref_ptr<kel::ContactMaterial> contact = new kel::ContactMaterial(*material, *material);

  explicit Ground(kel::Real timeStep = 1.0 / 240, const kel::Vec3& normal = kel::Vec3(0, 0, 1))
      : Scene(timeStep), plane(addGeometry(new kelCollide::Plane(normal, kel::Real(0))))
  {
    simulation->add(contact.get());
  }
};
