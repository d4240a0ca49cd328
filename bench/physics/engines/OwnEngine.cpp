#include "Engine.h"
#include "kel/BallJoint.h"
#include "kel/Hinge.h"
#include "kelCollide/Box.h"
#include "kelCollide/Plane.h"
#include "kelCollide/Sphere.h"
#include "kelSDK/Simulation.h"
#include <vector>

namespace bench {

namespace {

class OwnEngine : public Engine
{
public:
  OwnEngine(double timeStep, const Surface& surface)
      : m_material(new kel::Material("surface", surface.friction, surface.restitution))
  {
    m_simulation->setTimeStep(timeStep);
  }

  int addBox(const kel::Vec3& halfExtents, double mass, const kel::Vec3& position,
             const kel::Quat& rotation) override
  {
    return add(new kelCollide::Box(halfExtents), mass, position, rotation);
  }
  int addSphere(double radius, double mass, const kel::Vec3& position) override
  {
    return add(new kelCollide::Sphere(radius), mass, position, kel::Quat());
  }
  void addPlane(const kel::Vec3& normal, double offset) override
  {
    m_simulation->add(geometry(new kelCollide::Plane(normal, -offset)));
  }
  void addBallJoint(int body1, int body2, const kel::Vec3& point) override
  {
    m_simulation->add(new kel::BallJoint(kel::BallJointFrame(point), m_bodies[body1], second(body2)));
  }
  void addHinge(int body1, int body2, const kel::Vec3& point, const kel::Vec3& axis) override
  {
    m_simulation->add(new kel::Hinge(kel::HingeFrame(point, axis), m_bodies[body1], second(body2)));
  }
  void setVelocity(int body, const kel::Vec3& velocity, const kel::Vec3& angularVelocity) override
  {
    m_bodies[body]->setVelocity(velocity);
    m_bodies[body]->setAngularVelocity(angularVelocity);
  }
  Motion motion(int body) const override
  {
    const kel::RigidBody& b = *m_bodies[body];
    return {b.getPosition(), b.getRotation(), b.getVelocity(), b.getAngularVelocity()};
  }
  void allowSleep() override
  {
    kel::AutoSleep& sleep = *m_simulation->getDynamicsSystem()->getAutoSleep();
    sleep.getThreshold()->setVelocity(SLOW);
    sleep.getThreshold()->setAngularVelocity(SLOW);
    sleep.getThreshold()->setTime(REST_TIME);
    sleep.setEnable(true);
  }
  void step() override { m_simulation->stepForward(); }

private:
  kelCollide::Geometry* geometry(kelCollide::Shape* shape)
  {
    auto* result = new kelCollide::Geometry(shape);
    result->setMaterial(m_material.get());
    return result;
  }
  int add(kelCollide::Shape* shape, double mass, const kel::Vec3& position, const kel::Quat& rotation)
  {
    auto* body = new kel::RigidBody(geometry(shape));
    body->getMassProperties()->setMass(mass);
    body->setTransform(kel::AffineMatrix4x4(rotation, position));
    m_simulation->add(body);
    m_bodies.push_back(body);
    return static_cast<int>(m_bodies.size()) - 1;
  }
  kel::RigidBody* second(int body) const { return body == WORLD ? nullptr : m_bodies[body]; }

  kel::ref_ptr<kelSDK::Simulation> m_simulation = new kelSDK::Simulation;
  kel::ref_ptr<kel::Material> m_material;
  std::vector<kel::RigidBody*> m_bodies; // the simulation holds them
};

} // namespace

std::unique_ptr<Engine> makeOwn(double timeStep, const Surface& surface)
{
  return std::make_unique<OwnEngine>(timeStep, surface);
}

} // namespace bench
