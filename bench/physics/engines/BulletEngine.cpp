#include "Engine.h"
#include <btBulletDynamicsCommon.h>
#include <vector>

namespace bench {

namespace {

btVector3 toBullet(const kel::Vec3& v) { return {v.x(), v.y(), v.z()}; }
kel::Vec3 fromBullet(const btVector3& v) { return {v.x(), v.y(), v.z()}; }

class BulletEngine : public Engine
{
public:
  BulletEngine(double timeStep, const Surface& surface) : m_timeStep(timeStep), m_surface(surface)
  {
    m_world.setGravity(btVector3(0, 0, -GRAVITY));
    m_world.getSolverInfo().m_numIterations = 50; // as many as ours
  }
  ~BulletEngine() override
  {
    for (const auto& joint : m_joints) m_world.removeConstraint(joint.get());
    for (const auto& body : m_bodies) m_world.removeRigidBody(body.get());
    for (const auto& plane : m_planes) m_world.removeRigidBody(plane.get());
  }

  int addBox(const kel::Vec3& halfExtents, double mass, const kel::Vec3& position,
             const kel::Quat& rotation) override
  {
    const btQuaternion turn(rotation.x(), rotation.y(), rotation.z(), rotation.w());
    return add(std::make_unique<btBoxShape>(toBullet(halfExtents)), mass,
               btTransform(turn, toBullet(position)));
  }
  int addSphere(double radius, double mass, const kel::Vec3& position) override
  {
    return add(std::make_unique<btSphereShape>(radius), mass,
               btTransform(btQuaternion::getIdentity(), toBullet(position)));
  }
  void addPlane(const kel::Vec3& normal, double offset) override
  {
    m_shapes.push_back(std::make_unique<btStaticPlaneShape>(toBullet(normal), offset));
    m_planes.push_back(std::make_unique<btRigidBody>(0, nullptr, m_shapes.back().get()));
    enter(*m_planes.back());
  }
  void addBallJoint(int body1, int body2, const kel::Vec3& point) override
  {
    const btVector3 pivot1 = local(body1, point);
    if (body2 == WORLD)
      join(std::make_unique<btPoint2PointConstraint>(*m_bodies[body1], pivot1));
    else
      join(std::make_unique<btPoint2PointConstraint>(*m_bodies[body1], *m_bodies[body2], pivot1,
                                                     local(body2, point)));
  }
  void addHinge(int body1, int body2, const kel::Vec3& point, const kel::Vec3& axis) override
  {
    btVector3 pivot1 = local(body1, point);
    btVector3 axis1 = toBullet(axis); // bodies are added unturned in scenes with hinges
    if (body2 == WORLD) return join(std::make_unique<btHingeConstraint>(*m_bodies[body1], pivot1, axis1));
    btVector3 pivot2 = local(body2, point);
    join(std::make_unique<btHingeConstraint>(*m_bodies[body1], *m_bodies[body2], pivot1, pivot2, axis1,
                                             axis1));
  }
  void setVelocity(int body, const kel::Vec3& velocity, const kel::Vec3& angularVelocity) override
  {
    m_bodies[body]->setLinearVelocity(toBullet(velocity));
    m_bodies[body]->setAngularVelocity(toBullet(angularVelocity));
  }
  Motion motion(int body) const override
  {
    const btRigidBody& b = *m_bodies[body];
    const btQuaternion q = b.getWorldTransform().getRotation();
    return {fromBullet(b.getWorldTransform().getOrigin()), kel::Quat(q.x(), q.y(), q.z(), q.w()),
            fromBullet(b.getLinearVelocity()), fromBullet(b.getAngularVelocity())};
  }
  void allowSleep() override
  {
    gDeactivationTime = REST_TIME;
    for (const auto& body : m_bodies) {
      body->setSleepingThresholds(SLOW, SLOW);
      body->forceActivationState(ACTIVE_TAG);
    }
  }
  void step() override { m_world.stepSimulation(m_timeStep, 0, m_timeStep); }

private:
  int add(std::unique_ptr<btCollisionShape> shape, double mass, const btTransform& place)
  {
    btVector3 inertia(0, 0, 0);
    shape->calculateLocalInertia(mass, inertia);
    auto body = std::make_unique<btRigidBody>(mass, nullptr, shape.get(), inertia);
    body->setWorldTransform(place);
    body->setActivationState(DISABLE_DEACTIVATION);
    enter(*body);
    m_shapes.push_back(std::move(shape));
    m_bodies.push_back(std::move(body));
    return static_cast<int>(m_bodies.size()) - 1;
  }
  // Coefficients of two bodies are multiplied.
  void enter(btRigidBody& body)
  {
    body.setFriction(std::sqrt(m_surface.friction));
    body.setRestitution(std::sqrt(m_surface.restitution));
    m_world.addRigidBody(&body);
  }
  void join(std::unique_ptr<btTypedConstraint> joint)
  {
    m_world.addConstraint(joint.get(), true); // what is joined does not collide
    m_joints.push_back(std::move(joint));
  }
  btVector3 local(int body, const kel::Vec3& point) const
  {
    return m_bodies[body]->getWorldTransform().inverse() * toBullet(point);
  }

  double m_timeStep;
  Surface m_surface;
  btDefaultCollisionConfiguration m_configuration;
  btCollisionDispatcher m_dispatcher{&m_configuration};
  btDbvtBroadphase m_broadphase;
  btSequentialImpulseConstraintSolver m_solver;
  btDiscreteDynamicsWorld m_world{&m_dispatcher, &m_broadphase, &m_solver, &m_configuration};
  std::vector<std::unique_ptr<btCollisionShape>> m_shapes;
  std::vector<std::unique_ptr<btRigidBody>> m_planes;
  std::vector<std::unique_ptr<btRigidBody>> m_bodies;
  std::vector<std::unique_ptr<btTypedConstraint>> m_joints;
};

} // namespace

std::unique_ptr<Engine> makeBullet(double timeStep, const Surface& surface)
{
  return std::make_unique<BulletEngine>(timeStep, surface);
}

} // namespace bench
