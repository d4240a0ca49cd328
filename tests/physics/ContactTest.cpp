#include "Scene.h"
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using kel::Quat;
using kel::Real;
using kel::RigidBody;
using kel::Vec3;
using kelCollide::Box;
using kelCollide::GeometryContact;
using kelCollide::Plane;
using kelCollide::Sphere;

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

TEST(Contact, TenBoxesStayStacked)
{
  Scene scene;
  scene.addGeometry(new Plane);
  RigidBody* top = nullptr;
  for (int i = 0; i < 10; ++i) top = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5 + i), 100);
  scene.step(120);
  const Vec3 before = top->getPosition();
  scene.step(28 * 60);
  EXPECT_LT((top->getPosition() - before).length(), 0.02);
  EXPECT_NEAR(top->getPosition().z(), 9.5, 0.02);
  EXPECT_LT(std::hypot(top->getPosition().x(), top->getPosition().y()), 0.02);
}

class Bounce : public testing::TestWithParam<Real>
{};

TEST_P(Bounce, RisesToTheSquareOfTheRestitution)
{
  Scene scene(1.0 / 240);
  const Real restitution = GetParam();
  scene.setRestitution(restitution);
  scene.addGeometry(new Plane);
  const RigidBody* ball = scene.addBody(new Sphere(0.1), Vec3(0, 0, 1.1), 1);
  Real top = 0;
  bool hit = false;
  for (int i = 0; i < 480; ++i) {
    scene.step(1);
    const bool rises = ball->getVelocity().z() > 0;
    if (hit && !rises) break;
    hit = hit || rises;
    if (hit) top = std::max(top, ball->getPosition().z() - 0.1);
  }
  ASSERT_TRUE(hit);
  EXPECT_NEAR(top, restitution * restitution, 0.02 * restitution * restitution);
}

INSTANTIATE_TEST_SUITE_P(Restitutions, Bounce, testing::Values(0.5, 0.8, 1.0));

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

TEST(Contact, FrictionPointsAgainstTheSlidingDirection)
{
  for (const Real angle : {0.0, 30.0, 45.0}) {
    Scene scene(1.0 / 240);
    scene.setFriction(0.3);
    scene.addGeometry(new Plane);
    RigidBody* box = scene.addBody(new Box(0.5, 0.5, 0.1), Vec3(0, 0, 0.1), 1);
    scene.step(60);
    const Vec3 direction(std::cos(angle * std::numbers::pi / 180), std::sin(angle * std::numbers::pi / 180),
                         0);
    box->setVelocity(direction * 5);
    scene.step(120);
    const Vec3 lost = direction * 5 - box->getVelocity();
    EXPECT_NEAR(lost * direction, 0.3 * Scene::G * 0.5, 0.01 * 0.3 * Scene::G * 0.5);
    EXPECT_LT(cross(lost, direction).length(), 0.01 * lost.length());
  }
}

TEST(Contact, SurfaceVelocityCarriesABoxAlong)
{
  Scene scene;
  kelCollide::Geometry* belt = scene.addGeometry(new Plane);
  belt->setSurfaceVelocity(kel::Vec3f(2, 0, 0));
  const RigidBody* box = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), 1);
  scene.step(120);
  EXPECT_NEAR(box->getVelocity().x(), 2, 2e-3);
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

std::vector<Real> heapOfBodies()
{
  Scene scene;
  scene.addGeometry(new Plane);
  std::vector<const RigidBody*> bodies;
  for (int i = 0; i < 60; ++i) {
    const Vec3 place(i % 4 * 0.55 + 0.01 * (i * 7 % 10), i / 4 % 4 * 0.55, 0.5 + i / 16 * 0.7);
    kelCollide::Shape* shape =
        i % 2 ? static_cast<kelCollide::Shape*>(new Box(0.25, 0.25, 0.25)) : new Sphere(0.25);
    bodies.push_back(scene.addBody(shape, place, 1));
  }
  scene.step(300);
  std::vector<Real> state;
  for (const RigidBody* body : bodies) {
    state.insert(state.end(), body->getTransform().ptr(), body->getTransform().ptr() + 16);
    state.insert(state.end(), body->getVelocity().ptr(), body->getVelocity().ptr() + 3);
    state.insert(state.end(), body->getAngularVelocity().ptr(), body->getAngularVelocity().ptr() + 3);
  }
  return state;
}

TEST(Contact, SameSceneGivesTheSameBits)
{
  const std::vector<Real> first = heapOfBodies();
  // Holes in the storages must not change the order in which anything is done.
  kel::ref_ptr<RigidBody> early = new RigidBody;
  kel::ref_ptr<RigidBody> late = new RigidBody;
  early = nullptr;
  const std::vector<Real> second = heapOfBodies();
  ASSERT_EQ(first.size(), second.size());
  EXPECT_EQ(std::memcmp(first.data(), second.data(), first.size() * sizeof(Real)), 0);
}

} // namespace
