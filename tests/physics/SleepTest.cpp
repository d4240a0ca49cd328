#include "Scene.h"
#include "kel/Hinge.h"
#include "kel/LockJoint.h"
#include "kel/Motor1D.h"
#include "kelCollide/ShapeGroup.h"
#include "meshes.h"
#include <functional>
#include <gtest/gtest.h>
#include <set>

namespace {

using namespace kel;
using kelCollide::Box;
using Sleep = RigidBody::AutoSleepProperties;

Sleep& sleepOf(RigidBody* body) { return *body->getAutoSleepProperties(); }

/// Three islands that may sleep: a pile of boxes, a bar that hangs in a hinge, a box on a table.
struct Bedroom : Ground
{
  std::vector<RigidBody*> pile;
  ref_ptr<RigidBody> door;
  ref_ptr<Hinge> hinge;
  ref_ptr<Box> tableTop = new Box(1, 1, 0.1);
  ref_ptr<kelCollide::Geometry> table;
  ref_ptr<RigidBody> onTable;

  Bedroom() : Ground(1.0 / 60)
  {
    contact->setFrictionCoefficient(0.5);
    getSleep().setEnable(true);
    for (int i = 0; i < 3; ++i) pile.push_back(addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5 + i), 1));
    door = addBody(new Box(0.1, 0.1, 0.5), Vec3(10, 0, 4.5), 1);
    hinge = new Hinge(HingeFrame(Vec3(10, 0, 5), Vec3(0, 1, 0)), door.get());
    simulation->add(hinge.get());
    table = addGeometry(tableTop.get());
    table->setTransform(AffineMatrix4x4::translate(-10, 0, 1));
    onTable = addBody(new Box(0.5, 0.5, 0.5), Vec3(-10, 0, 1.6), 1);
  }
  AutoSleep& getSleep() { return *simulation->getDynamicsSystem()->getAutoSleep(); }
  std::vector<RigidBody*> all() { return {pile[0], pile[1], pile[2], door.get(), onTable.get()}; }
  void fallAsleep()
  {
    step(120);
    for (RigidBody* body : all()) {
      ASSERT_TRUE(sleepOf(body).isSleeping());
      ASSERT_EQ(body->getVelocity(), Vec3());
    }
  }
};

TEST(Sleep, WhatRestsFallsAsleepTogetherAfterItsTime)
{
  Bedroom scene;
  ref_ptr<AutoSleepThreshold> patient = new AutoSleepThreshold;
  patient->setTime(100);
  scene.pile[2]->setAutoSleepThreshold(patient.get());
  scene.step(46);
  EXPECT_EQ(sleepOf(scene.door.get()).getState(), Sleep::AWAKE);
  EXPECT_NEAR(sleepOf(scene.door.get()).getRestTime(), 46.0 / 60, 1e-5);
  scene.step(3);
  EXPECT_TRUE(sleepOf(scene.door.get()).isSleeping());
  scene.step(120);
  EXPECT_EQ(sleepOf(scene.pile[0]).getState(), Sleep::TIRED);
  EXPECT_FALSE(sleepOf(scene.pile[0]).isSleeping());
  patient->setTime(1);
  scene.step(2);
  EXPECT_TRUE(sleepOf(scene.pile[0]).isSleeping());
}

TEST(Sleep, SleepersStandStillCostNoRowsAndKeepTheirForces)
{
  Bedroom scene;
  scene.fallAsleep();
  const Vec3 place = scene.pile[2]->getPosition();
  scene.step(1000);
  EXPECT_EQ(scene.pile[2]->getPosition(), place);
  EXPECT_EQ(scene.simulation->getSolver()->getNumRows(), 0u);
  Real weight = 0;
  const kelCollide::GeometryContact ground =
      scene.simulation->getSpace()->getContact(scene.plane, scene.pile[0]->getGeometries()[0].get());
  for (std::size_t i = 0; i < ground.getNumPoints(); ++i)
    weight += ground.getPoint(i).getNormalForceMagnitude();
  EXPECT_NEAR(weight, 3 * Scene::G, 1e-3 * Scene::G);
  const Real held = std::hypot(scene.hinge->getCurrentForce(Hinge::TRANSLATIONAL_1),
                               scene.hinge->getCurrentForce(Hinge::TRANSLATIONAL_2));
  EXPECT_NEAR(held, Scene::G, 1e-3 * Scene::G);
}

/// Something that wakes some islands and lets the others sleep.
struct Alarm
{
  const char* name;
  std::function<void(Bedroom&)> ring;
  std::set<std::size_t> wakes; // indices in `Bedroom::all`
};

class Alarms : public testing::TestWithParam<Alarm>
{};

TEST_P(Alarms, WakeWhomTheyMean)
{
  Bedroom scene;
  scene.fallAsleep();
  GetParam().ring(scene);
  scene.step(1);
  const std::vector<RigidBody*> bodies = scene.all();
  for (std::size_t i = 0; i < bodies.size(); ++i)
    EXPECT_EQ(sleepOf(bodies[i]).isSleeping(), GetParam().wakes.count(i) == 0) << i;
}

const std::set<std::size_t> PILE = {0, 1, 2};
const std::set<std::size_t> DOOR = {3};
const std::set<std::size_t> TABLE = {4};
const std::set<std::size_t> ALL = {0, 1, 2, 3, 4};

void moveTable(Bedroom& scene) { scene.table->setTransform(AffineMatrix4x4::translate(-10, 0, 0.999)); }

void startMotor(Bedroom& scene)
{
  scene.hinge->getMotor1D()->setEnable(true);
  scene.hinge->getMotor1D()->setSpeed(0.01);
}

RigidBody* addPlate(Bedroom& scene, const Vec3& position, const Vec3& velocity)
{
  RigidBody* plate = scene.addBody(new Box(0.5, 0.5, 0.5), position, 1);
  plate->setMotionControl(RigidBody::KINEMATICS);
  plate->setVelocity(velocity);
  return plate;
}

const Alarm ALARMS[] = {
    {"Velocity", [](Bedroom& s) { s.pile[2]->setVelocity(0, 0, 0.01); }, PILE},
    {"Force", [](Bedroom& s) { s.pile[1]->addForce(0.01, 0, 0); }, PILE},
    {"Torque", [](Bedroom& s) { s.door->addTorque(0, 0.1, 0); }, DOOR},
    {"Place", [](Bedroom& s) { s.onTable->setPosition(-10, 0.001, 1.6); }, TABLE},
    {"Mass", [](Bedroom& s) { s.door->getMassProperties()->setMass(3); }, DOOR},
    {"Call", [](Bedroom& s) { sleepOf(s.pile[1]).setSleeping(false); }, PILE},
    {"Insomnia", [](Bedroom& s) { sleepOf(s.pile[1]).setEnable(false); }, PILE},
    {"MotionControl", [](Bedroom& s) { s.pile[1]->setMotionControl(RigidBody::KINEMATICS); }, PILE},
    {"Friction", [](Bedroom& s) { s.contact->setFrictionCoefficient(0); }, {0, 1, 2, 4}},
    {"Gravity", [](Bedroom& s) { s.simulation->setUniformGravity(Vec3(0, 0, -1)); }, ALL},
    {"Switch", [](Bedroom& s) { s.getSleep().setEnable(false); }, ALL},
    {"SupportGone", [](Bedroom& s) { s.simulation->remove(s.table.get()); }, TABLE},
    {"SupportOff", [](Bedroom& s) { s.table->setEnableCollisions(false); }, TABLE},
    {"SupportMoved", moveTable, TABLE},
    {"SupportThinner", [](Bedroom& s) { s.tableTop->setHalfExtents(Vec3(1, 1, 0.05)); }, TABLE},
    {"Belt", [](Bedroom& s) { s.table->setSurfaceVelocity(Vec3f(0.001F, 0, 0)); }, TABLE},
    {"JointGone", [](Bedroom& s) { s.simulation->remove(s.hinge.get()); }, DOOR},
    {"JointOff", [](Bedroom& s) { s.hinge->setEnable(false); }, DOOR},
    {"NewJoint", [](Bedroom& s) { s.simulation->add(new LockJoint(s.door.get())); }, DOOR},
    {"SofterJoint", [](Bedroom& s) { s.hinge->setCompliance(1e-3, Hinge::TRANSLATIONAL_3); }, DOOR},
    {"Motor", startMotor, DOOR},
    {"Visitor", [](Bedroom& s) { s.addBody(new Box(0.1, 0.1, 0.1), Vec3(0, 0, 3.1), 0.1); }, PILE},
    {"MovingPlate", [](Bedroom& s) { addPlate(s, Vec3(-10, 0, 2.6), Vec3(0.001, 0, 0)); }, TABLE},
    {"StandingPlateFarAway", [](Bedroom& s) { addPlate(s, Vec3(-10, 0, 5), Vec3()); }, {}},
};

INSTANTIATE_TEST_SUITE_P(Sleep, Alarms, testing::ValuesIn(ALARMS),
                         [](const auto& test) { return test.param.name; });

TEST(Sleep, WhatLosesItsSupportFallsAsIfItHadNeverSlept)
{
  Bedroom scene;
  scene.fallAsleep();
  scene.simulation->remove(scene.table.get());
  scene.step(24);
  EXPECT_NEAR(scene.onTable->getVelocity().z(), -Scene::G * 0.4, 1e-6);
}

TEST(Sleep, WhatIsPutToSleepInTheAirStaysUntilItIsTouched)
{
  Scene scene;
  RigidBody* floating = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(), 1);
  floating->setVelocity(1, 0, 0);
  sleepOf(floating).setSleeping(true);
  scene.step(100);
  EXPECT_EQ(floating->getPosition(), Vec3());
  scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 1.1), 1);
  scene.step(30);
  EXPECT_FALSE(sleepOf(floating).isSleeping());
  EXPECT_LT(floating->getPosition().z(), 0);
}

TEST(Sleep, SharedGroundWakesWhoeverLiesOnIt)
{
  Scene scene;
  const ref_ptr<kelCollide::HeightField> field = flatField(4, 4);
  auto* group = new kelCollide::ShapeGroup;
  group->addChild(field->shallowCopy());
  scene.addGeometry(group);
  RigidBody* body = scene.addBody(new Box(0.2, 0.2, 0.2), Vec3(0, 0, 0.2), 1);
  scene.simulation->getDynamicsSystem()->getAutoSleep()->setEnable(true);
  scene.step(120);
  ASSERT_TRUE(sleepOf(body).isSleeping());
  for (std::size_t i = 0; i < 25; ++i) field->setHeight(i % 5, i / 5, -0.5);
  scene.step(60);
  EXPECT_NEAR(body->getPosition().z(), -0.3, 1e-3);
}

TEST(Sleep, WhatIsDrivenSlowlyStaysAwake)
{
  Bedroom scene;
  scene.hinge->getMotor1D()->setEnable(true);
  scene.hinge->getMotor1D()->setSpeed(0.02);
  scene.table->setSurfaceVelocity(Vec3f(0.01F, 0, 0));
  addPlate(scene, Vec3(10, 10, 0), Vec3(0, 0, 0.01));
  RigidBody* lifted = scene.addBody(new Box(0.2, 0.2, 0.2), Vec3(10, 10, 0.7), 1);
  scene.step(600);
  EXPECT_NEAR(scene.hinge->getAngle(), 0.2, 1e-3);
  EXPECT_NEAR(scene.onTable->getPosition().x(), -9.9, 1e-3);
  EXPECT_NEAR(lifted->getPosition().z(), 0.8, 1e-3);
}

} // namespace
