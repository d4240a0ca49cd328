#include "Engine.h"
#include <cstdarg>
#include <ode/ode.h>
#include <vector>

namespace bench {

namespace {

class OdeEngine : public Engine
{
public:
  using Step = int (*)(dWorldID, dReal);

  OdeEngine(double timeStep, const Surface& surface, Step stepper)
      : m_timeStep(timeStep), m_surface(surface), m_step(stepper)
  {
    dWorldSetGravity(m_world, 0, 0, -GRAVITY);
    dWorldSetQuickStepNumIterations(m_world, 50); // as many as ours
  }
  ~OdeEngine() override
  {
    dJointGroupDestroy(m_contacts);
    dSpaceDestroy(m_space);
    dWorldDestroy(m_world);
  }

  int addBox(const kel::Vec3& halfExtents, double mass, const kel::Vec3& position,
             const kel::Quat& rotation) override
  {
    dMass inertia;
    const kel::Vec3 size = halfExtents * 2;
    dMassSetBoxTotal(&inertia, mass, size.x(), size.y(), size.z());
    return add(dCreateBox(m_space, size.x(), size.y(), size.z()), inertia, position, rotation);
  }
  int addSphere(double radius, double mass, const kel::Vec3& position) override
  {
    dMass inertia;
    dMassSetSphereTotal(&inertia, mass, radius);
    return add(dCreateSphere(m_space, radius), inertia, position, kel::Quat());
  }
  void addPlane(const kel::Vec3& normal, double offset) override
  {
    dCreatePlane(m_space, normal.x(), normal.y(), normal.z(), offset);
  }
  void addBallJoint(int body1, int body2, const kel::Vec3& point) override
  {
    const dJointID joint = dJointCreateBall(m_world, nullptr);
    attach(joint, body1, body2);
    dJointSetBallAnchor(joint, point.x(), point.y(), point.z());
  }
  void addHinge(int body1, int body2, const kel::Vec3& point, const kel::Vec3& axis) override
  {
    const dJointID joint = dJointCreateHinge(m_world, nullptr);
    attach(joint, body1, body2);
    dJointSetHingeAnchor(joint, point.x(), point.y(), point.z());
    dJointSetHingeAxis(joint, axis.x(), axis.y(), axis.z());
  }
  void setVelocity(int body, const kel::Vec3& velocity, const kel::Vec3& angularVelocity) override
  {
    dBodySetLinearVel(m_bodies[body], velocity.x(), velocity.y(), velocity.z());
    dBodySetAngularVel(m_bodies[body], angularVelocity.x(), angularVelocity.y(), angularVelocity.z());
  }
  Motion motion(int body) const override
  {
    const auto vector = [](const dReal* v) { return kel::Vec3(v[0], v[1], v[2]); };
    const dBodyID b = m_bodies[body];
    const dReal* q = dBodyGetQuaternion(b);
    return {vector(dBodyGetPosition(b)), kel::Quat(q[1], q[2], q[3], q[0]), vector(dBodyGetLinearVel(b)),
            vector(dBodyGetAngularVel(b))};
  }
  void allowSleep() override
  {
    for (const dBodyID body : m_bodies) {
      dBodySetAutoDisableFlag(body, 1);
      dBodySetAutoDisableLinearThreshold(body, SLOW);
      dBodySetAutoDisableAngularThreshold(body, SLOW);
      dBodySetAutoDisableTime(body, REST_TIME);
      dBodySetAutoDisableSteps(body, 0);
    }
  }
  void step() override
  {
    dSpaceCollide(m_space, this, near);
    m_step(m_world, m_timeStep);
    dJointGroupEmpty(m_contacts);
  }

private:
  int add(dGeomID geometry, const dMass& inertia, const kel::Vec3& position, const kel::Quat& rotation)
  {
    const dBodyID body = dBodyCreate(m_world);
    dBodySetMass(body, &inertia);
    dGeomSetBody(geometry, body);
    dBodySetPosition(body, position.x(), position.y(), position.z());
    const dQuaternion turn = {rotation.w(), rotation.x(), rotation.y(), rotation.z()};
    dBodySetQuaternion(body, turn);
    m_bodies.push_back(body);
    return static_cast<int>(m_bodies.size()) - 1;
  }
  void attach(dJointID joint, int body1, int body2)
  {
    dJointAttach(joint, m_bodies[body1], body2 == WORLD ? nullptr : m_bodies[body2]);
  }
  static void near(void* self, dGeomID first, dGeomID second)
  {
    static_cast<OdeEngine*>(self)->collide(first, second);
  }
  void collide(dGeomID first, dGeomID second)
  {
    const dBodyID body1 = dGeomGetBody(first);
    const dBodyID body2 = dGeomGetBody(second);
    if (body1 && body2 && dAreConnectedExcluding(body1, body2, dJointTypeContact)) return;
    constexpr int most = 8;
    dContact contacts[most];
    const int count = dCollide(first, second, most, &contacts[0].geom, sizeof(dContact));
    for (int i = 0; i < count; ++i) {
      dSurfaceParameters& surface = contacts[i].surface;
      surface.mode = dContactApprox1 | dContactBounce;
      surface.mu = m_surface.friction;
      surface.bounce = m_surface.restitution;
      surface.bounce_vel = 0.1;
      dJointAttach(dJointCreateContact(m_world, m_contacts, &contacts[i]), body1, body2);
    }
  }

  struct Library
  {
    Library()
    {
      dInitODE2(0);
      dSetMessageHandler([](int, const char*, std::va_list) {}); // the figures tell
    }
  };

  inline static const Library s_library;
  double m_timeStep;
  Surface m_surface;
  Step m_step;
  dWorldID m_world = dWorldCreate();
  dSpaceID m_space = dHashSpaceCreate(nullptr);
  dJointGroupID m_contacts = dJointGroupCreate(0);
  std::vector<dBodyID> m_bodies;
};

} // namespace

std::unique_ptr<Engine> makeOde(double timeStep, const Surface& surface)
{
  return std::make_unique<OdeEngine>(timeStep, surface, dWorldStep);
}

std::unique_ptr<Engine> makeOdeQuick(double timeStep, const Surface& surface)
{
  return std::make_unique<OdeEngine>(timeStep, surface, dWorldQuickStep);
}

} // namespace bench
