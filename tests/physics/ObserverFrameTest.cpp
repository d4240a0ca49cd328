#include "kel/ObserverFrame.h"
#include "Scene.h"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;

void expectNear(const Vec3& a, const Vec3& b, Real tolerance = 1e-12)
{
  for (std::size_t i = 0; i < 3; ++i) EXPECT_NEAR(a[i], b[i], tolerance) << i;
}

/// A body that turns about z, 2 rad/s, about a centre of mass that moves along x, 3 m/s.
ref_ptr<RigidBody> makeTurning()
{
  ref_ptr<RigidBody> body = new RigidBody;
  body->setPosition(1, 2, 0);
  body->setVelocity(3, 0, 0);
  body->setAngularVelocity(0, 0, 2);
  return body;
}

TEST(ObserverFrame, SeesTheMotionOfItsPoint)
{
  const ref_ptr<RigidBody> body = makeTurning();
  const ref_ptr<ObserverFrame> observer =
      new ObserverFrame("eye", body.get(), AffineMatrix4x4::translate(0, 4, 0));
  expectNear(observer->getPosition(), Vec3(1, 6, 0));
  expectNear(observer->getVelocity(), Vec3(3 - 8, 0, 0));
  expectNear(observer->getAngularVelocity(), Vec3(0, 0, 2));
  expectNear(observer->getAcceleration(), Vec3(0, -16, 0));
  body->setCmLocalTranslate(Vec3(0, 4, 0));
  expectNear(observer->getVelocity(), Vec3(3, 0, 0));
}

TEST(ObserverFrame, AgreesWithTheWayThatItGoes)
{
  // Accelerations are those of a step, so the differences are central ones over two steps.
  const Real h = 1e-4;
  Scene scene(h);
  RigidBody* body = scene.addBody(new kelCollide::Box(0.5, 0.3, 0.2), Vec3(), 2, Quat(0.3, Vec3(1, 2, 3)));
  RigidBody* other = scene.addBody(new kelCollide::Box(0.1, 0.2, 0.4), Vec3(9, 0, 0), 2);
  body->setAngularVelocity(1, 2, 3);
  other->setAngularVelocity(-2, 1, 1);
  other->setVelocity(0, 1, 4);
  const ref_ptr<ObserverFrame> observer =
      new ObserverFrame(body, AffineMatrix4x4(Quat(1, Vec3(1, 1, 0)), Vec3(0.5, 1, 2)));
  const auto seen = [&] { return other->getFrame()->transformPointToLocal(observer->getPosition()); };

  std::vector<Vec3> places, sights;
  Vec3 velocity, acceleration, relativeVelocity, relativeAcceleration;
  for (int i = 0; i < 3; ++i) {
    body->addTorque(3, -2, 1);
    other->addForce(5, 6, 7);
    scene.step(1);
    places.push_back(observer->getPosition());
    sights.push_back(seen());
    if (i != 1) continue;
    velocity = observer->getVelocity();
    acceleration = observer->getAcceleration();
    const auto turned = [&](const Vec3& v) { return other->getFrame()->transformVectorToLocal(v); };
    relativeVelocity = turned(observer->getRelativeVelocity(other));
    relativeAcceleration = turned(observer->getRelativeAcceleration(other));
  }
  expectNear(velocity, (places[2] - places[0]) / (2 * h), 1e-2);
  expectNear(acceleration, (places[2] - places[1] * 2 + places[0]) / (h * h), 5e-2);
  expectNear(relativeVelocity, (sights[2] - sights[0]) / (2 * h), 1e-2);
  expectNear(relativeAcceleration, (sights[2] - sights[1] * 2 + sights[0]) / (h * h), 5e-2);
  EXPECT_GT(relativeAcceleration.length(), 10) << "nothing was measured";
}

TEST(ObserverFrame, IsSeenByOthersAsTheyMove)
{
  const ref_ptr<RigidBody> body = makeTurning();
  const ref_ptr<ObserverFrame> observer = new ObserverFrame(body.get(), AffineMatrix4x4::translate(0, 4, 1));
  const ref_ptr<ObserverFrame> still = new ObserverFrame;
  expectNear(still->getVelocity(), Vec3());
  expectNear(still->getRelativeVelocity(body.get()), -(Vec3(3, 0, 0) + Vec3(4, -2, 0)));
  expectNear(still->getRelativeAngularVelocity(body.get()), Vec3(0, 0, -2));
  const ref_ptr<RigidBody> crossways = new RigidBody;
  crossways->setAngularVelocity(5, 0, 0);
  expectNear(observer->getRelativeAngularAcceleration(crossways.get()),
             -cross(Vec3(5, 0, 0), Vec3(-5, 0, 2)));
}

TEST(ObserverFrame, ComesAndGoes)
{
  ref_ptr<RigidBody> body = makeTurning();
  const ref_ptr<ObserverFrame> observer = new ObserverFrame("eye");
  EXPECT_EQ(observer->getSystem(), nullptr);
  EXPECT_EQ(observer->getFrame()->getRigidBody(), nullptr);
  observer->attach(body.get(), AffineMatrix4x4::translate(0, 4, 0));
  observer->attach(body.get());
  EXPECT_EQ(observer->getFrame()->getRigidBody(), body.get());
  expectNear(observer->getPosition(), Vec3(1, 2, 0));
  observer->attach(body.get(), observer->getFrame()->getMatrix());
  expectNear(observer->getPosition(), Vec3(2, 4, 0));
  observer->detatch();
  observer->detatch();
  body->setPosition(0, 0, 0);
  expectNear(observer->getPosition(), Vec3(2, 4, 0));
  expectNear(observer->getVelocity(), Vec3());
  observer->attach(body.get());
  body = nullptr;
  expectNear(observer->getVelocity(), Vec3());
  EXPECT_FALSE(observer->getFrame()->hasParent());
  observer->attach(nullptr, AffineMatrix4x4::translate(7, 0, 0));
  expectNear(observer->getPosition(), Vec3(7, 0, 0));
}

} // namespace
