#include "Scene.h"
#include "kel/AngularLockJoint.h"
#include "kel/BallJoint.h"
#include "kel/CylindricalJoint.h"
#include "kel/DistanceJoint.h"
#include "kel/Dot1Joint.h"
#include "kel/Hinge.h"
#include "kel/LockJoint.h"
#include "kel/PlaneJoint.h"
#include "kel/Prismatic.h"
#include "kel/Spherical.h"
#include "kel/WorldFrameBallJoint.h"
#include <bit>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;
using kelCollide::Box;

const Quat TURNED(0.7, Vec3(1, 2, 3));
const Vec3 ANCHOR(0.3, -0.2, 0.1);

using MakeJoint = std::function<Constraint*(RigidBody*, RigidBody*)>;

struct Kind
{
  const char* name;
  MakeJoint make;
  int freeWays; // along and about the axes of the second attachment, as bits U = 1, V = 2, N = 4
  int freeTurns;
};

Frame* frameAt(const Vec3& point) { return new Frame(AffineMatrix4x4(TURNED, point)); }

const Kind KINDS[] = {
    {"Hinge", [](RigidBody* a, RigidBody* b) { return new kel::Hinge(a, frameAt(ANCHOR), b); }, 0, 4},
    {"Prismatic", [](RigidBody* a, RigidBody* b) { return new kel::Prismatic(a, frameAt(ANCHOR), b); }, 4, 0},
    {"LockJoint", [](RigidBody* a, RigidBody* b) { return new kel::LockJoint(a, frameAt(ANCHOR), b); }, 0, 0},
    {"BallJoint", [](RigidBody* a, RigidBody* b) { return new kel::BallJoint(a, frameAt(ANCHOR), b); }, 0, 7},
    {"WorldFrameBallJoint",
     [](RigidBody* a, RigidBody* b) { return new kel::WorldFrameBallJoint(a, frameAt(ANCHOR), b); }, 0, 7},
    {"CylindricalJoint",
     [](RigidBody* a, RigidBody* b) { return new kel::CylindricalJoint(a, frameAt(ANCHOR), b); }, 4, 4},
    {"AngularLockJoint",
     [](RigidBody* a, RigidBody* b) { return new kel::AngularLockJoint(a, frameAt(ANCHOR), b); }, 7, 0},
    {"PlaneJoint", [](RigidBody* a, RigidBody* b) { return new kel::PlaneJoint(a, frameAt(ANCHOR), b); }, 3,
     7},
};

class Freedom : public testing::TestWithParam<Kind>
{};

// A kick in all directions: what the joint leaves free keeps moving, and what it takes does not.
TEST_P(Freedom, JointTakesItsDegreesOfFreedom)
{
  for (const bool world : {false, true}) {
    Scene scene;
    scene.simulation->setUniformGravity(Vec3());
    RigidBody* first = scene.addBody(new Box(0.3, 0.4, 0.5), Vec3(1, 2, 3), 2, Quat(1, Vec3(0, 1, 1)));
    RigidBody* second =
        world ? nullptr : scene.addBody(new Box(0.5, 0.3, 0.2), Vec3(2, 1, 3), 5, Quat(2, Vec3(1, 0, 1)));
    Constraint* joint = GetParam().make(first, second);
    scene.simulation->add(joint);
    EXPECT_TRUE(joint->getValid());
    EXPECT_EQ(joint->getNumDOF(), 6u - std::popcount(unsigned(GetParam().freeWays)) -
                                      std::popcount(unsigned(GetParam().freeTurns)));
    first->setVelocity(1, 0.6, 1.7);
    first->setAngularVelocity(0.4, -0.5, 0.6);
    scene.step(30);

    const Attachment& attachment1 = *joint->getAttachment(std::size_t(0));
    const Attachment& attachment2 = *joint->getAttachment(std::size_t(1));
    const AffineMatrix4x4 between =
        attachment1.getFrame()->getMatrix() * attachment2.getFrame()->getMatrix().inverse();
    const Vec3 way = between.getTranslate();
    Real angle = 0;
    Vec3 axis;
    between.getRotate().getRotate(angle, axis);
    const Vec3 turn = axis * std::remainder(angle, 2 * std::numbers::pi);
    for (int i = 0; i < 3; ++i) {
      const bool freeWay = GetParam().freeWays >> i & 1;
      const bool freeTurn = GetParam().freeTurns >> i & 1;
      if (freeWay)
        EXPECT_GT(std::fabs(way[i]), 0.01) << i;
      else
        EXPECT_LT(std::fabs(way[i]), 1e-3) << i;
      if (freeTurn)
        EXPECT_GT(std::fabs(turn[i]), 0.01) << i;
      else
        EXPECT_LT(std::fabs(turn[i]), 1e-3) << i;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, Freedom, testing::ValuesIn(KINDS),
                         [](const auto& kind) { return kind.param.name; });

TEST(Joint, IsNotValidWithoutABodyOrWithOneTwice)
{
  for (const Kind& kind : KINDS) {
    const ref_ptr<RigidBody> body = new RigidBody;
    EXPECT_FALSE(ref_ptr<Constraint>(kind.make(nullptr, body.get()))->getValid());
    const ref_ptr<Constraint> twice = kind.make(body.get(), body.get());
    EXPECT_FALSE(twice->getValid());
    Scene scene;
    scene.simulation->add(body.get());
    scene.simulation->add(twice.get());
    scene.step(10);
    EXPECT_NEAR(body->getVelocity().z(), -Scene::G / 6, 1e-9);
  }
}

TEST(Joint, HingeFillsBodyByBody)
{
  Scene scene;
  RigidBody* first = scene.addBody(new Box(0.5, 0.1, 0.1), Vec3(0.5, 0, 0), 1);
  RigidBody* second = scene.addBody(new Box(0.5, 0.1, 0.1), Vec3(-0.5, 0, 0), 1);
  second->setMotionControl(RigidBody::STATIC);
  auto* hinge = new kel::Hinge;
  EXPECT_FALSE(hinge->getValid());
  EXPECT_EQ(hinge->getMotor1D(), nullptr);
  EXPECT_FALSE(hinge->addRigidBody(nullptr, nullptr));
  EXPECT_TRUE(hinge->addRigidBody(first, new Frame(AffineMatrix4x4::translate(-0.5, 0, 0))));
  EXPECT_TRUE(hinge->getValid());
  scene.simulation->add(hinge);
  EXPECT_TRUE(hinge->addRigidBody(second, new Frame(AffineMatrix4x4::translate(0.5, 0, 0))));
  EXPECT_FALSE(hinge->addRigidBody(first, nullptr));
  EXPECT_EQ(hinge->getNumBodies(), 2u);
  EXPECT_EQ(second->getNumConstraints(), 1u);
  scene.step(60);
  EXPECT_LT((first->getPosition() - Vec3(0.5, 0, 0)).length(), 1e-3); // the axis is upright
  scene.simulation->remove(hinge);
  EXPECT_EQ(first->getNumConstraints() + second->getNumConstraints(), 0u);
}

TEST(Joint, FramesMeetInTheWorldAndInTheBody)
{
  ref_ptr<RigidBody> first = new RigidBody;
  ref_ptr<RigidBody> second = new RigidBody;
  first->setTransform(AffineMatrix4x4(TURNED, Vec3(1, 2, 3)));
  second->setTransform(AffineMatrix4x4(Quat(2, Vec3(0, 1, 0)), Vec3(-1, 0, 5)));
  for (const bool inBody : {false, true}) {
    ref_ptr<Frame> frame1 = new Frame;
    ref_ptr<Frame> frame2 = new Frame;
    const auto calculate =
        inBody ? Constraint::calculateFramesFromBody : Constraint::calculateFramesFromWorld;
    EXPECT_FALSE(calculate(Vec3(), Vec3(), first.get(), frame1.get(), second.get(), frame2.get()));
    EXPECT_TRUE(
        calculate(Vec3(4, 5, 6), Vec3(0, 3, 4), first.get(), frame1.get(), second.get(), frame2.get()));
    frame1->setParent(first->getFrame());
    frame2->setParent(second->getFrame());
    EXPECT_TRUE(kel::equivalent(frame1->getMatrix(), frame2->getMatrix(), 1e-12));
    const Vec3 point = inBody ? first->getTransform().transformPoint(Vec3(4, 5, 6)) : Vec3(4, 5, 6);
    const Vec3 axis = inBody ? first->getTransform().transformVector(Vec3(0, 0.6, 0.8)) : Vec3(0, 0.6, 0.8);
    EXPECT_LT((frame1->getTranslate() - point).length(), 1e-12);
    EXPECT_LT((frame1->transformVectorToWorld(Vec3::Z_AXIS()) - axis).length(), 1e-12);
  }
}

/// A bar of 1 m and 2 kg along x on a hinge about y at the origin: at its end, or at another place of it.
struct Bar
{
  static constexpr Real MASS = 2;
  Scene scene;
  RigidBody* bar;
  kel::Hinge* hinge;
  Real inertia; // about the hinge

  explicit Bar(Real timeStep = 1.0 / 60, bool gravity = false, Real place = 0.5) : scene(timeStep)
  {
    if (!gravity) scene.simulation->setUniformGravity(Vec3());
    bar = scene.addBody(new Box(0.5, 0.05, 0.05), Vec3(place, 0, 0), MASS);
    hinge = new kel::Hinge(kel::HingeFrame(Vec3(), Vec3(0, -1, 0)), bar);
    scene.simulation->add(hinge);
    inertia = bar->getMassProperties()->getInertiaTensor()(1, 1) + MASS * place * place;
  }
};

TEST(Joint, PendulumKeepsItsLengthAndMostOfItsEnergy)
{
  for (const auto& [timeStep, loss, violation] :
       {std::tuple(1.0 / 60, 0.12, 4e-3), std::tuple(1.0 / 600, 2e-4, 5e-5)}) {
    Bar pendulum(timeStep, true);
    const Real swing = Bar::MASS * Scene::G * 0.5;
    Real largest = 0;
    for (int i = 0; i < std::lround(60 / timeStep); ++i) {
      pendulum.scene.step(1);
      const Vec3 end = pendulum.bar->getTransform().transformPoint(Vec3(-0.5, 0, 0));
      largest = std::max(largest, end.length());
    }
    EXPECT_LT(std::fabs(pendulum.bar->getTotalEnergy()), loss * swing) << timeStep;
    EXPECT_LT(largest, violation) << timeStep;
  }
}

TEST(Joint, ChainCarriesAThousandfoldMass)
{
  Scene scene;
  constexpr int links = 10;
  RigidBody* last = nullptr;
  for (int i = 0; i <= links; ++i) {
    RigidBody* link = scene.addBody(new Box(0.1, 0.1, 0.5), Vec3(0, 0, -0.5 - i), i == links ? 1000 : 1);
    link->getGeometries()[0]->setSensor(true);
    scene.simulation->add(new kel::Hinge(kel::HingeFrame(Vec3(0, 0, -i), Vec3(0, 1, 0)), link, last));
    last = link;
  }
  scene.step(600);
  const Real sag = -0.5 - links - last->getPosition().z();
  EXPECT_LT(sag, 1e-4);
  EXPECT_GT(sag, 0);
}

TEST(Joint, MotorReachesItsSpeedOrItsTorque)
{
  Bar bar;
  kel::Motor1D& motor = *bar.hinge->getMotor1D();
  EXPECT_FALSE(motor.getEnable());
  motor.setEnable(true);
  motor.setSpeed(3);
  motor.setForceRange(RangeReal(-2, 2));
  bar.scene.step(1);
  EXPECT_NEAR(motor.getCurrentForce(0), 2, 1e-9);
  EXPECT_NEAR(bar.hinge->getCurrentSpeed(), 2 / bar.inertia / 60, 1e-4 * 2 / bar.inertia / 60);
  bar.scene.step(120);
  EXPECT_NEAR(bar.hinge->getCurrentSpeed(), 3, 1e-4);
  EXPECT_NEAR(bar.bar->getAngularVelocity().y(), -3, 1e-4);
  const Real before = bar.hinge->getAngle();
  bar.scene.step(600); // some turns
  EXPECT_NEAR(bar.hinge->getAngle() - before, 30, 0.01);
  // Against a load, at a speed where the centrifugal force is small.
  motor.setSpeed(0.3);
  bar.scene.step(60);
  for (int i = 0; i < 60; ++i) {
    bar.bar->addTorque(0, 1.25, 0);
    bar.scene.step(1);
  }
  EXPECT_NEAR(motor.getCurrentForce(0), 1.25, 1.25e-4);
  EXPECT_NEAR(bar.hinge->getCurrentSpeed(), 0.3, 1e-4);
  motor.setEnable(false);
  EXPECT_EQ(motor.getCurrentForce(0), 0);
}

TEST(Joint, MotorLocksAtZeroSpeed)
{
  Bar bar(1.0 / 60, true);
  kel::Motor1D& motor = *bar.hinge->getMotor1D();
  motor.setEnable(true);
  motor.setSpeed(0.5);
  bar.scene.step(60);
  motor.setCompliance(1e-3); // it creeps under its load unless it is locked
  motor.setLockedAtZeroSpeed(true);
  motor.setSpeed(0);
  bar.scene.step(120);
  const Real held = bar.hinge->getAngle();
  bar.scene.step(120);
  EXPECT_NEAR(bar.hinge->getAngle(), held, 1e-6);
  const Real torque = Bar::MASS * Scene::G * 0.5 * std::cos(held);
  EXPECT_NEAR(motor.getCurrentForce(0), torque, 1e-4 * torque);
}

TEST(Joint, ElectricMotorRunsUpToItsIdleSpeed)
{
  const Real timeStep = 1.0 / 1000;
  Bar bar(timeStep, false, 0);
  kel::ElectricMotorController& motor = *bar.hinge->getElectricMotorController();
  motor.setEnable(true);
  motor.setVoltage(12);
  motor.setArmatureResistance(0.5);
  motor.setTorqueConstant(0.8);
  // I w' = k (U - k w)/R
  const Real idle = 12 / 0.8;
  const Real rate = 0.8 * 0.8 / 0.5 / bar.inertia;
  bar.scene.step(500);
  EXPECT_NEAR(bar.hinge->getCurrentSpeed(), idle * (1 - std::exp(-rate * 0.5)), 5e-3 * idle);
  bar.scene.step(10000);
  EXPECT_NEAR(bar.hinge->getCurrentSpeed(), idle, 1e-3);
  EXPECT_NEAR(motor.getCurrentForce(0), 0, 1e-2);
}

TEST(Joint, LockHoldsAgainstGravity)
{
  Bar bar(1.0 / 60, true);
  kel::Lock1D& lock = *bar.hinge->getLock1D();
  lock.setEnable(true);
  lock.setPosition(0.25);
  bar.scene.step(600);
  EXPECT_NEAR(bar.hinge->getAngle(), 0.25, 1e-6);
  const Real torque = Bar::MASS * Scene::G * 0.5 * std::cos(0.25);
  EXPECT_NEAR(lock.getCurrentForce(0), torque, 1e-4 * torque);
}

TEST(Joint, RangeStopsTheBar)
{
  Bar bar(1.0 / 60, true);
  kel::Range1D& range = *bar.hinge->getRange1D();
  range.setEnable(true);
  range.setRange(-1, 0.5);
  EXPECT_FALSE(range.isActive());
  Real lowest = 0;
  for (int i = 0; i < 300; ++i) {
    bar.scene.step(1);
    lowest = std::min(lowest, bar.hinge->getAngle());
  }
  EXPECT_GT(lowest, -1 - 1e-3);
  EXPECT_NEAR(bar.hinge->getAngle(), -1, 1e-6);
  EXPECT_TRUE(range.isActive());
  const Real torque = Bar::MASS * Scene::G * 0.5 * std::cos(1);
  EXPECT_NEAR(range.getCurrentForce(0), torque, 1e-4 * torque);
  // The other end, reached at speed.
  bar.bar->setAngularVelocity(0, -8, 0);
  bar.bar->setVelocity(cross(Vec3(0, -8, 0), bar.bar->getPosition()));
  Real highest = -1;
  for (int i = 0; i < 60; ++i) {
    bar.scene.step(1);
    highest = std::max(highest, bar.hinge->getAngle());
  }
  EXPECT_NEAR(highest, 0.5, 1e-3);
}

TEST(Joint, ComplianceMakesASpringOfTheRightFrequency)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* body = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  auto* joint = new kel::Prismatic(Vec3(1, 0, 0), body);
  scene.simulation->add(joint);
  const Real frequency = 1; // Hz
  const Real stiffness = 3 * std::pow(2 * std::numbers::pi * frequency, 2);
  joint->getLock1D()->setEnable(true);
  joint->getLock1D()->setCompliance(1 / stiffness);
  joint->getLock1D()->setDamping(0);
  body->setPosition(0.2, 0, 0);
  std::vector<Real> crossings;
  Real before = joint->getAngle();
  Real largest = 0;
  for (int i = 1; i < 60 * 60; ++i) {
    scene.step(1);
    const Real angle = joint->getAngle();
    if (before > 0 && angle <= 0) crossings.push_back((i - angle / (angle - before)) / 60);
    before = angle;
    if (i > 58 * 60) largest = std::max(largest, angle);
  }
  const Real period = (crossings.back() - crossings.front()) / static_cast<Real>(crossings.size() - 1);
  EXPECT_NEAR(period, 1 / frequency, 0.005 / frequency);
  EXPECT_NEAR(largest, 0.2, 0.01); // without damping, a minute later
}

TEST(Joint, ComplianceAndForceRangeArePerDegreeOfFreedom)
{
  Scene scene;
  RigidBody* body = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  auto* joint = new kel::LockJoint(body);
  scene.simulation->add(joint);
  joint->setCompliance(1e-4, kel::LockJoint::TRANSLATIONAL_3);
  EXPECT_EQ(joint->getCompliance(kel::LockJoint::TRANSLATIONAL_3), 1e-4);
  EXPECT_EQ(joint->getCompliance(kel::LockJoint::TRANSLATIONAL_2), 1e-10);
  EXPECT_EQ(joint->getCompliance(6), 0);
  EXPECT_EQ(joint->getRegularizationParameters(6), nullptr);
  joint->setDamping(0.5);
  EXPECT_EQ(joint->getDamping(kel::LockJoint::ROTATIONAL_3), 0.5);
  joint->setDamping(0.02);
  scene.step(600);
  const Real weight = 3 * Scene::G;
  EXPECT_NEAR(body->getPosition().z(), -weight * 1e-4, 1e-3 * weight * 1e-4);
  EXPECT_NEAR(joint->getCurrentForce(kel::LockJoint::TRANSLATIONAL_3), weight, 1e-4 * weight);
  joint->setForceRange(-10, 10, kel::LockJoint::TRANSLATIONAL_3);
  EXPECT_EQ(joint->getForceRange(kel::LockJoint::TRANSLATIONAL_3).upper(), 10);
  scene.step(60);
  EXPECT_NEAR(body->getAcceleration().z(), -(weight - 10) / 3, 1e-6);
  EXPECT_NEAR(joint->getCurrentForce(kel::LockJoint::TRANSLATIONAL_3), 10, 1e-9);
}

TEST(Joint, ForcesOnTheBodiesAreSummedUp)
{
  Scene scene;
  RigidBody* body = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(1, 0, 0), 3);
  RigidBody* holder = scene.addBody(new Box(0.1, 0.1, 0.1), Vec3(0, 0, 0), 1);
  holder->setMotionControl(RigidBody::STATIC);
  const Quat rotation(std::numbers::pi / 2, Vec3(1, 0, 0)); // N along -y
  auto* joint = new kel::LockJoint(body, new Frame(AffineMatrix4x4(rotation, Vec3(-1, 0, 0))), holder);
  scene.simulation->add(joint);
  Vec3 force;
  Vec3 torque;
  EXPECT_FALSE(joint->getLastForce(body, force, torque));
  joint->setEnableComputeForces(true);
  scene.step(300);
  const Real weight = 3 * Scene::G;
  const auto expectNear = [&](const Vec3& value, const Vec3& expected) {
    EXPECT_LT((value - expected).length(), 1e-4 * weight);
  };
  ASSERT_TRUE(joint->getLastForce(body, force, torque));
  expectNear(force, Vec3(0, 0, weight));
  expectNear(torque, Vec3(0, -weight, 0));
  ASSERT_TRUE(joint->getLastForce(std::size_t(0), force, torque, true));
  expectNear(torque, Vec3());
  ASSERT_TRUE(joint->getLastForce(holder, force, torque));
  expectNear(force, Vec3(0, 0, -weight));
  expectNear(torque, Vec3(0, weight, 0));
  ASSERT_TRUE(joint->getLastLocalForce(body, force, torque));
  expectNear(force, Vec3(0, weight, 0));
  expectNear(torque, Vec3(0, 0, weight));
  EXPECT_FALSE(joint->getLastForce(std::size_t(2), force, torque));
}

TEST(Joint, ForcesEndWithTheJointsPart)
{
  const auto force = [](const Bar& bar) { return bar.hinge->getCurrentForce(kel::Hinge::TRANSLATIONAL_1); };
  Bar bar(1.0 / 60, true);
  const ref_ptr<Constraint> keep = bar.hinge;
  bar.scene.step(60);
  EXPECT_NE(force(bar), 0);
  bar.bar->setMotionControl(RigidBody::STATIC);
  bar.scene.step(1);
  EXPECT_EQ(force(bar), 0);
  bar.bar->setMotionControl(RigidBody::DYNAMICS);
  bar.scene.step(1);
  EXPECT_NE(force(bar), 0);
  EXPECT_TRUE(bar.scene.simulation->remove(keep.get()));
  EXPECT_EQ(force(bar), 0);
}

TEST(Joint, DisabledAndEnabledAgain)
{
  Bar bar(1.0 / 60, true);
  bar.scene.step(60);
  bar.hinge->setEnable(false);
  EXPECT_EQ(bar.hinge->getCurrentForce(kel::Hinge::TRANSLATIONAL_1), 0);
  bar.scene.step(1);
  EXPECT_NEAR(bar.bar->getAcceleration().z(), -Scene::G, 1e-9);
  bar.scene.step(10);
  bar.hinge->setEnable(true);
  EXPECT_TRUE(bar.hinge->rebind());
  const Vec3 anchor = bar.hinge->getAttachment(std::size_t(1))->getFrame()->getTranslate();
  EXPECT_GT(anchor.length(), 0.01);
  bar.scene.step(60);
  EXPECT_LT(bar.hinge->getAttachmentPair().getAttachment(0)->getFrame()->getTranslate().z() - anchor.z(),
            0.01);
}

TEST(Joint, ScrewTurnsAWayIntoARotation)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* nut = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  auto* joint = new kel::CylindricalJoint(kel::CylindricalJointFrame(Vec3(), Vec3(0, 0, 1)), nut);
  scene.simulation->add(joint);
  joint->getScrew1D()->setEnable(true);
  joint->getScrew1D()->setLead(0.1);
  joint->getMotor1D(Constraint2DOF::SECOND)->setEnable(true);
  joint->getMotor1D(Constraint2DOF::SECOND)->setSpeed(2);
  scene.step(600);
  EXPECT_NEAR(joint->getAngle(Constraint2DOF::SECOND), 20, 1e-3);
  EXPECT_NEAR(joint->getAngle(Constraint2DOF::FIRST), 0.1 * 20 / (2 * std::numbers::pi), 1e-5);
  EXPECT_NEAR(joint->getCurrentSpeed(Constraint2DOF::FIRST), 0.1 * 2 / (2 * std::numbers::pi), 1e-5);
}

TEST(Joint, DistanceJointIsAnIdealRod)
{
  Scene scene(1.0 / 240);
  RigidBody* body = scene.addBody(new Box(0.1, 0.1, 0.1), Vec3(2, 0, 0), 1);
  auto* joint = new kel::DistanceJoint(body, Vec3(), Vec3(0, 0, 0));
  scene.simulation->add(joint);
  EXPECT_EQ(joint->getNumDOF(), 1u);
  for (int i = 0; i < 2400; ++i) {
    scene.step(1);
    EXPECT_NEAR(body->getPosition().length(), 2, 1e-3);
  }
  joint->setCompliance(1e-2);
  joint->setDamping(0.5);
  body->setPosition(0, 0, -2);
  body->setVelocity(0, 0, 0);
  scene.step(240 * 20);
  EXPECT_NEAR(joint->getAngle(), 2 + Scene::G * 1e-2, 1e-4);
  EXPECT_TRUE(joint->rebind());
  EXPECT_NEAR(joint->getLock1D()->getPosition(), joint->getAngle(), 1e-12);
}

TEST(Joint, Dot1JointKeepsARightAngle)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* body = scene.addBody(new Box(0.2, 0.3, 0.4), Vec3(0, 0, 0), 1);
  scene.simulation->add(new kel::Dot1Joint(body, Vec3(2, 0, 0), nullptr, Vec3(0, 0, 3)));
  body->setAngularVelocity(1, 2, 3);
  scene.step(120);
  EXPECT_LT(std::fabs(body->getTransform().transformVector(Vec3(1, 0, 0)).z()), 5e-3);
  EXPECT_GT(body->getAngularVelocity().length(), 1);
}

TEST(Joint, PartsAreFoundByName)
{
  ref_ptr<RigidBody> body = new RigidBody;
  ref_ptr<kel::Hinge> hinge = new kel::Hinge(kel::HingeFrame(), body.get());
  EXPECT_EQ(hinge->getNumElementaryConstraints(), 3u);
  EXPECT_EQ(hinge->getNumSecondaryConstraints(), 4u);
  EXPECT_EQ(hinge->getSecondaryConstraintGivenName("Range1D"), hinge->getRange1D());
  EXPECT_FALSE(hinge->addSecondaryConstraint(
      "Range1D", new kel::Spherical(kel::ElementaryConstraintData(hinge->getAttachmentPair()))));
  EXPECT_FALSE(hinge->addElementaryConstraint("again", hinge->getRange1D()));
  EXPECT_TRUE(hinge->removeSecondaryConstraint("Range1D"));
  EXPECT_FALSE(hinge->removeSecondaryConstraint("Range1D"));
  EXPECT_EQ(hinge->getSecondaryConstraintGivenName("Range1D"), nullptr);
  EXPECT_EQ(hinge->getElementaryConstraint(3), nullptr);
}

} // namespace
