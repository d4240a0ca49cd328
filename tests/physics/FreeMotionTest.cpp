#include "kel/DynamicsSystem.h"
#include "kelCollide/Box.h"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace kel;

constexpr Real G = 9.80665;

struct FreeMotion : testing::TestWithParam<Real>
{
  ref_ptr<DynamicsSystem> system = new DynamicsSystem;
  Real h = GetParam();

  FreeMotion() { system->getTimeGovernor()->setTimeStep(h); }
  void run(Real time)
  {
    for (int i = 0; i < std::lround(time / h); ++i) system->stepForward();
  }
};

TEST_P(FreeMotion, FallsWithGravity)
{
  ref_ptr<RigidBody> body = new RigidBody("ball");
  body->setPosition(0, 0, 1000);
  body->setVelocity(10, 0, 20);
  system->add(body.get());
  run(2);
  EXPECT_NEAR(body->getVelocity().z(), 20 - G * 2, 1e-12);
  EXPECT_NEAR(body->getPosition().x(), 20, 1e-11);
  EXPECT_NEAR(body->getPosition().z(), 1000 + 40 - G * 2, G * h * 2 / 2 * (1 + 1e-9));
  EXPECT_NEAR(body->getAcceleration().z(), -G, 1e-10);
}

TEST_P(FreeMotion, KeepsMomentumAndEnergyOfATumblingBody)
{
  ref_ptr<RigidBody> body = new RigidBody(new kelCollide::Geometry(new kelCollide::Box(0.5, 0.3, 0.1)));
  body->setAngularVelocity(0.02, 3, 0.02);
  system->add(body.get());
  system->setUniformGravity(Vec3());
  const Vec3 momentum = system->getAngularMomentum();
  const Real energy = system->getRotationalEnergy();
  int flips = 0;
  Real sign = 1;
  for (int i = 0; i < std::lround(60 / h); ++i) {
    system->stepForward();
    EXPECT_LT((system->getAngularMomentum() - momentum).length(), 1e-10 * momentum.length());
    EXPECT_LT(std::fabs(system->getRotationalEnergy() - energy), 1e-3 * energy);
    const Real spin = body->getFrame()->transformVectorToLocal(body->getAngularVelocity()).y();
    if (spin * sign < 0) {
      sign = -sign;
      ++flips;
    }
  }
  // The axis in the middle is unstable: without the gyroscopic term the body would never turn over.
  EXPECT_GT(flips, 3);
}

TEST_P(FreeMotion, ForcesActForOneStep)
{
  ref_ptr<RigidBody> body = new RigidBody;
  body->getMassProperties()->setMass(2);
  body->getMassProperties()->setInertiaTensor(Vec3(1, 2, 4));
  system->add(body.get());
  system->setUniformGravity(Vec3());
  body->addForce(6, 0, 0);
  body->addTorque(0, 0, 8);
  system->stepForward();
  system->stepForward();
  EXPECT_NEAR(body->getVelocity().x(), 3 * h, 1e-15);
  EXPECT_NEAR(body->getAngularVelocity().z(), 2 * h, 1e-15);
  EXPECT_EQ(body->getForce().length() + body->getLastForce().length() + body->getLastTorque().length(), 0);
  body->addForce(6, 0, 0);
  system->stepForward();
  EXPECT_EQ(body->getLastForce().x(), 6);
  EXPECT_NEAR(body->getAcceleration().x(), 3, 1e-10);
  body->setMotionControl(RigidBody::KINEMATICS);
  system->stepForward();
  EXPECT_EQ(body->getAcceleration().length(), 0);
  body->setMotionControl(RigidBody::DYNAMICS);
  body->setEnable(false);
  body->addForce(6, 0, 0);
  system->stepForward();
  EXPECT_EQ(body->getForce().length(), 0);
}

TEST_P(FreeMotion, TurnsAboutTheCentreOfMass)
{
  ref_ptr<RigidBody> body = new RigidBody;
  body->setCmLocalTranslate(Vec3(1, 0, 0));
  body->setAngularVelocity(0, 0, 2);
  system->add(body.get());
  system->setUniformGravity(Vec3());
  run(1);
  EXPECT_LT((body->getCmPosition() - Vec3(1, 0, 0)).length(), 1e-12);
  EXPECT_LT((body->getPosition() - Vec3(1 - std::cos(2), -std::sin(2), 0)).length(), 1e-10);
  EXPECT_LT((body->getModelVelocity() - Vec3(2 * std::sin(2), -2 * std::cos(2), 0)).length(), 1e-9);
}

TEST_P(FreeMotion, KinematicBodiesArriveWhereTheyAreSent)
{
  ref_ptr<RigidBody> body = new RigidBody;
  body->setCmLocalTranslate(Vec3(1, 0, 0));
  body->setMotionControl(RigidBody::KINEMATICS);
  system->add(body.get());
  const kel::Quat turn(2.5, Vec3(1, 2, 3));
  body->moveTo(Vec3(4, 5, 6), turn, h);
  system->stepForward();
  EXPECT_LT((body->getPosition() - Vec3(4, 5, 6)).length(), 1e-10);
  EXPECT_TRUE(kel::equivalent(body->getTransform(), kel::AffineMatrix4x4(turn, Vec3(4, 5, 6))));
}

INSTANTIATE_TEST_SUITE_P(TimeSteps, FreeMotion, testing::Values(1.0 / 60, 1.0 / 600),
                         [](const auto& test) { return std::to_string(std::lround(1 / test.param)) + "Hz"; });

} // namespace
