#include "Scene.h"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;
using namespace kelCollide;
using kelCollide::Plane;

Vec3 sumOfForces(const kelCollide::Space& space)
{
  Vec3 sum;
  for (const GeometryContact& contact : space.getGeometryContacts())
    for (std::size_t i = 0; i < contact.getNumPoints(); ++i) sum += contact.getPoint(i).getForce();
  return sum;
}

TEST(Contact, ForcesCarryTheWeight)
{
  Scene scene;
  scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.6), 7);
  scene.addGeometry(new Plane); // comes later, so that the body is the first of the pair
  scene.step(300);
  const kelCollide::Space& space = *scene.simulation->getSpace();
  ASSERT_EQ(space.getGeometryContacts().size(), 1u);
  EXPECT_EQ(space.getGeometryContacts()[0].getNumPoints(), 4u);
  const Vec3 force = sumOfForces(space);
  EXPECT_NEAR(force.z(), 7 * Scene::G, 1e-4 * 7 * Scene::G);
  EXPECT_NEAR(force.x(), 0, 1e-4 * 7 * Scene::G);
  EXPECT_GT(space.getGeometryContacts()[0].getPoint(0).normal().z(), 0.999F);
}

TEST(Contact, EveryBroadPhaseFindsThePairs)
{
  Scene scene;
  scene.addGeometry(new Plane);
  scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), 7);
  scene.addBody(new Sphere(0.5), Vec3(0.1, 0, 1.5), 7);
  kelCollide::Space& space = *scene.simulation->getSpace();
  EXPECT_EQ(space.getBroadPhaseAlgorithm(), kelCollide::Space::HIERARCHICAL_GRID);
  scene.step(2);
  EXPECT_EQ(space.getGeometryContacts().size(), 2u);
  EXPECT_TRUE(space.setBroadPhaseAlgorithm(kelCollide::Space::SWEEP_AND_PRUNE));
  EXPECT_TRUE(space.getGeometryContacts().empty());
  scene.step(2);
  EXPECT_EQ(space.getGeometryContacts().size(), 2u);
  EXPECT_FALSE(space.setBroadPhaseAlgorithm(2));
}

TEST(Contact, SweepGrowsWithItsGeometries)
{
  Scene scene;
  scene.simulation->getSpace()->setBroadPhaseAlgorithm(kelCollide::Space::SWEEP_AND_PRUNE);
  constexpr int count = 5000;
  const auto place = [](int i) { return Vec3(3.0 * (i % 17), 3.0 * (i / 17 % 17), 3.0 * (i / 289)); };
  for (int i = 0; i < count; ++i) {
    auto* geometry = new kelCollide::Geometry(new Sphere(0.5));
    geometry->setPosition(place(i));
    scene.simulation->add(geometry);
  }
  for (const int i : {0, count - 1}) scene.addBody(new Sphere(0.5), place(i) + Vec3(0, 0, 0.999), 1);
  scene.step(1);
  EXPECT_EQ(scene.simulation->getSpace()->getGeometryContacts().size(), 2u);
}

TEST(Contact, BoundsFollowInEachStep)
{
  Scene scene;
  const RigidBody* ball = scene.addBody(new Sphere(0.5), Vec3(0, 0, 100), 1);
  scene.step(10);
  const Vec3 before = ball->getPosition();
  scene.step(1); // which looks for contacts where the body stands before it moves
  EXPECT_NEAR(ball->getGeometries()[0]->getBoundingVolume()->min().z(), before.z() - 0.5, 1e-12);
}

TEST(Contact, SlowImpactsDoNotBounce)
{
  Scene scene;
  scene.setRestitution(1);
  scene.addGeometry(new Plane);
  const RigidBody* ball = scene.addBody(new Sphere(0.1), Vec3(0, 0, 0.1001), 1);
  scene.step(60);
  EXPECT_LT(std::fabs(ball->getVelocity().z()), 1e-6);
}

struct Incline
{
  static constexpr Real ANGLE = std::numbers::pi / 6;
  const Vec3 normal{std::sin(ANGLE), 0, std::cos(ANGLE)};
  const Vec3 downhill{std::cos(ANGLE), 0, -std::sin(ANGLE)};
  Scene scene;
  RigidBody* box;

  explicit Incline(Real friction)
  {
    scene.setFriction(friction);
    scene.addGeometry(new Plane(normal, Real(0)));
    box = scene.addBody(new Box(0.5, 0.5, 0.5), normal * 0.5, 1, Quat(ANGLE, Vec3(0, 1, 0)));
    scene.step(60);
  }
};

TEST(Contact, SlidesDownAnInclineBelowTheFrictionAngle)
{
  const Real friction = 0.97 * std::tan(Incline::ANGLE);
  Incline incline(friction);
  const Vec3 before = incline.box->getVelocity();
  incline.scene.step(60);
  const Real acceleration = (incline.box->getVelocity() - before) * incline.downhill;
  const Real exact = Scene::G * (std::sin(Incline::ANGLE) - friction * std::cos(Incline::ANGLE));
  EXPECT_NEAR(acceleration, exact, 0.01 * exact);
}

TEST(Contact, HoldsOnAnInclineAboveTheFrictionAngle)
{
  Incline incline(1.03 * std::tan(Incline::ANGLE));
  const Vec3 before = incline.box->getPosition();
  incline.scene.step(120);
  EXPECT_LT((incline.box->getPosition() - before).length() / 2, 1e-3);
}

TEST(Contact, KinematicBodiesPushAndAreNotPushed)
{
  Scene scene;
  RigidBody* lift = scene.addBody(new Box(1, 1, 0.1), Vec3(0, 0, 0), 1);
  lift->setMotionControl(RigidBody::KINEMATICS);
  lift->setVelocity(0, 0, 0.5);
  const RigidBody* box = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.6), 1000);
  scene.step(120);
  EXPECT_NEAR(lift->getPosition().z(), 1, 1e-9);
  EXPECT_NEAR(box->getPosition().z(), 1.6, 1e-3);
  EXPECT_NEAR(box->getVelocity().z(), 0.5, 1e-6);
}

TEST(Contact, FiltersAreAskedInEveryStep)
{
  Scene scene;
  kelCollide::Geometry* ground = scene.addGeometry(new Plane);
  RigidBody* box = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), 1);
  scene.step(30);
  EXPECT_NEAR(box->getVelocity().z(), 0, 1e-4);
  const auto falls = [&] {
    const Real before = box->getVelocity().z();
    scene.step(1);
    return box->getVelocity().z() < before - 0.1;
  };
  kelCollide::Geometry* geometry = box->getGeometries()[0].get();
  ground->setEnableCollisions(geometry, false);
  EXPECT_TRUE(falls());
  ground->setEnableCollisions(geometry, true);
  EXPECT_FALSE(falls());
  geometry->setSensor(true);
  EXPECT_TRUE(falls());
  EXPECT_EQ(scene.simulation->getSpace()->getGeometryContacts().size(), 1u);
  geometry->setSensor(false);
  EXPECT_FALSE(falls());
  ground->setEnable(false);
  EXPECT_TRUE(falls());
}

} // namespace
