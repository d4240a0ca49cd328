#include "../core/LogCapture.h"
#include "Scene.h"
#include "kel/BuildConfiguration.h"
#include "kelCollide/Capsule.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/ShapeGroup.h"
#include "meshes.h"
#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>
#include <random>

namespace {

using namespace kelCollide;
using kelCollide::Plane;
using namespace kel;

constexpr Real PI = std::numbers::pi;

using Maker = std::function<Shape*()>;

struct Named
{
  const char* name;
  Maker make;
  Real top = 0; // height of the surface above the origin
};

std::string nameOf(const testing::TestParamInfo<Named>& test)
{
  std::string name = test.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

const Named TRIANGLES[] = {
    {"mesh", [] { return flatMesh(40, 20); }},
    {"closed mesh", [] { return boxMesh(Vec3(10, 10, 1)); }, 1},
    {"field", [] { return flatField(40, 20); }},
};

class OnTriangles : public testing::TestWithParam<Named>
{};

TEST_P(OnTriangles, SlidingSolidsKeepTheirSpeed)
{
  const Maker sliders[] = {
      [] { return new Box(0.3, 0.2, 0.1); },       [] { return new Capsule(0.1, 0.4); },
      [] { return new Cylinder(0.1, 0.4); },       [] { return new Sphere(0.1); },
      [] { return boxHull(Vec3(0.3, 0.2, 0.1)); }, [] { return boxMesh(Vec3(0.3, 0.2, 0.1)); }};
  for (const Maker& make : sliders) {
    Scene scene;
    scene.setFriction(0);
    scene.setRestitution(0);
    scene.addGeometry(GetParam().make());
    RigidBody* body = scene.addBody(make(), Vec3(-6, -4, GetParam().top + 0.1), 1);
    body->setVelocity(6, 3, 0);
    scene.step(120);
    EXPECT_NEAR(body->getVelocity().x(), 6, 1e-3) << body->getGeometries()[0]->getShape()->getTypeName();
    EXPECT_NEAR(body->getVelocity().y(), 3, 1e-3);
    EXPECT_NEAR(body->getPosition().z(), GetParam().top + 0.1, 1e-3);
    EXPECT_LT(body->getAngularVelocity().length(), 1e-3);
  }
}

INSTANTIATE_TEST_SUITE_P(Grounds, OnTriangles, testing::ValuesIn(TRIANGLES), nameOf);

const Named SUPPORTS[] = {
    {"plane", [] { return new Plane; }},
    {"box", [] { return new Box(5, 5, 1); }, 1},
    {"hull", [] { return boxHull(Vec3(5, 5, 1)); }, 1},
    {"mesh", [] { return flatMesh(9, 10); }},
    {"closed mesh", [] { return boxMesh(Vec3(5, 5, 1)); }, 1},
    {"field", [] { return flatField(9, 10); }},
};

class OnSupports : public testing::TestWithParam<Named>
{};

TEST_P(OnSupports, SolidsThatFallComeToRest)
{
  const struct
  {
    Maker make;
    Quat rotation;
    Real height;
  } solids[] = {
      {[] { return new Box(0.3, 0.2, 0.1); }, Quat(), 0.1},
      {[] { return new Capsule(0.1, 0.4); }, Quat(), 0.1},
      {[] { return new Cylinder(0.1, 0.4); }, Quat(), 0.1},
      {[] { return new Cylinder(0.2, 0.2); }, Quat(PI / 2, Vec3(1, 0, 0)), 0.1},
      {[] { return boxHull(Vec3(0.3, 0.2, 0.1)); }, Quat(), 0.1},
      {[] { return boxMesh(Vec3(0.3, 0.2, 0.1)); }, Quat(), 0.1},
  };
  for (const auto& solid : solids) {
    Scene scene;
    scene.addGeometry(GetParam().make());
    const RigidBody* body =
        scene.addBody(solid.make(), Vec3(0.13, 0.17, GetParam().top + solid.height + 0.2), 1, solid.rotation);
    scene.step(240);
    const std::string name = body->getGeometries()[0]->getShape()->getTypeName();
    EXPECT_NEAR(body->getPosition().z(), GetParam().top + solid.height, 1e-3) << name;
    EXPECT_LT(body->getVelocity().length(), 1e-3) << name;
    EXPECT_LT(body->getAngularVelocity().length(), 1e-2) << name;
    EXPECT_NEAR(std::hypot(body->getPosition().x() - 0.13, body->getPosition().y() - 0.17), 0, 1e-2) << name;
  }
}

INSTANTIATE_TEST_SUITE_P(Supports, OnSupports, testing::ValuesIn(SUPPORTS), nameOf);

TEST(CollisionDynamics, WheelsRollOverGroundsOfTriangles)
{
  const Named grounds[] = {{"plane", [] { return new Plane; }}, TRIANGLES[0], TRIANGLES[2]};
  for (const Named& ground : grounds) {
    Scene scene;
    scene.setFriction(1);
    scene.setRestitution(0);
    scene.addGeometry(ground.make());
    RigidBody* wheel = scene.addBody(new Cylinder(0.3, 0.2), Vec3(-5, 0.03, 0.3), 1);
    wheel->setVelocity(3, 0, 0);
    wheel->setAngularVelocity(0, 10, 0);
    scene.step(120);
    EXPECT_NEAR(wheel->getVelocity().x(), 3, 0.03) << ground.name;
    EXPECT_NEAR(wheel->getPosition().x(), 1, 0.05) << ground.name;
    EXPECT_NEAR(wheel->getPosition().z(), 0.3, 2e-3) << ground.name;
  }
}

TEST(CollisionDynamics, HillsCarryAndTerrainsPushUp)
{
  const auto hill = [](Real x, Real y) { return 0.3 * std::cos(x) * std::cos(y); };
  for (const Maker& make :
       {Maker([&] { return groundMesh(60, 12, hill); }), Maker([&] { return heightField(60, 12, hill); })}) {
    Scene scene;
    scene.addGeometry(make());
    std::vector<const RigidBody*> bodies;
    for (int i = 0; i < 9; ++i) {
      Shape* shape = nullptr;
      if (i % 3 == 0) shape = new Box(0.2, 0.2, 0.2);
      if (i % 3 == 1) shape = new Sphere(0.2);
      if (i % 3 == 2) shape = new Capsule(0.1, 0.4);
      bodies.push_back(scene.addBody(shape, Vec3(i % 3 - 1, i / 3 - 1, 1), 1));
    }
    const kel::DynamicsSystem& system = *scene.simulation->getDynamicsSystem();
    const auto energy = [&] {
      Real sum = system.getTranslationalEnergy() + system.getRotationalEnergy();
      for (const RigidBody* body : bodies) sum += Scene::G * body->getPosition().z();
      return sum;
    };
    const Real start = energy();
    scene.step(180);
    EXPECT_LT(energy(), start);
    for (const RigidBody* body : bodies) {
      const Vec3 place = body->getPosition();
      ASSERT_LT(std::max(std::fabs(place.x()), std::fabs(place.y())), 5.5);
      EXPECT_GT(place.z(), hill(place.x(), place.y()) + 0.05);
    }
  }
  Mesh* const terrains[] = {flatField(10, 10), groundMesh(
                                                   10, 10, [](Real, Real) { return 0.0; }, Trimesh::TERRAIN)};
  for (Mesh* terrain : terrains) {
    Scene scene;
    scene.addGeometry(terrain);
    scene.step(1);
    terrain->setBottomMargin(1);
    const RigidBody* sunk = scene.addBody(new Box(0.2, 0.2, 0.2), Vec3(0.3, 0.4, -0.5), 1);
    scene.step(300);
    EXPECT_NEAR(sunk->getPosition().z(), 0.2, 0.01);
  }
}

TEST(CollisionDynamics, CoincidentBodiesSeparate)
{
  const Maker makers[] = {[] { return new Box(0.5, 0.5, 0.5); }, [] { return new Sphere(0.5); },
                          [] { return new Capsule(0.3, 0.6); }, [] { return new Cylinder(0.5, 1); },
                          [] { return boxHull(Vec3(0.5, 0.5, 0.5)); }};
  for (const Maker& make : makers) {
    Scene scene;
    scene.simulation->setUniformGravity(Vec3());
    const RigidBody* first = scene.addBody(make(), Vec3(), 1);
    const RigidBody* second = scene.addBody(make(), Vec3(), 1);
    scene.step(300);
    EXPECT_GT(first->getPosition().distance(second->getPosition()), 0.5);
    EXPECT_LT(first->getVelocity().length(), 20);
  }
}

/// Shapes that are degenerate or wrong in some way.
Shape* oddShape(std::mt19937& random)
{
  const auto number = [&] { return std::uniform_real_distribution<Real>(0.05, 0.5)(random); };
  const auto point = [&] { return Vec3(number() - 0.25, number() - 0.25, number() - 0.25); };
  kel::Vec3Vector points;
  const int kind = int(random() % 16);
  switch (kind) {
  case 0:
    return new Box(number(), number(), 0);
  case 1:
    return new Sphere(random() % 2 ? 0 : -1);
  case 2:
    return new Capsule(number(), 0);
  case 3:
    return new Cylinder(0, number());
  case 4:
    return new Line(Vec3(), Vec3());
  case 5: // a plane without a normal
    return new Plane(0, 0, 0, 1);
  case 6: // flat, collinear, coincident or random points
    for (int i = 0; i < 9; ++i) points.push_back(Vec3::mul(point(), Vec3(1, 1, 0)));
    break;
  case 7:
    for (int i = 0; i < 5; ++i) points.push_back(Vec3(number(), 0, 0));
    break;
  case 8:
    for (int i = 0; i < 5; ++i) points.push_back(Vec3(0.1, 0.1, 0.1));
    break;
  case 9:
    for (int i = 0; i < 40; ++i) points.push_back(point());
    break;
  case 10: { // triangles anywhere, some of no size
    kel::UInt32Vector indices;
    for (int i = 0; i < 12; ++i) points.push_back(point());
    for (int i = 0; i < 60; ++i) indices.push_back(random() % 12);
    return new Trimesh(points, indices, "odd", Trimesh::NO_WARNINGS | (random() % 256 & ~16u));
  }
  case 11:
    return new Box(std::numeric_limits<Real>::quiet_NaN(), 1, 1);
  case 12:
    return new Cylinder(1e-9, 1e3);
  case 13:
    return new Capsule(number(), number());
  case 14:
    return boxMesh(Vec3(number(), number(), number()));
  default:
    return new Box(number(), number(), number());
  }
  return new Convex(points, kel::UInt32Vector(), "odd", Trimesh::NO_WARNINGS);
}

void expectSound(const Scene& scene, unsigned seed)
{
  for (const auto& body : scene.simulation->getDynamicsSystem()->getRigidBodies()) {
    ASSERT_TRUE(std::isfinite(body->getPosition().length2())) << "seed " << seed;
    ASSERT_TRUE(std::isfinite(body->getAngularVelocity().length2())) << "seed " << seed;
  }
  for (const GeometryContact& contact : scene.simulation->getSpace()->getGeometryContacts()) {
    for (std::size_t i = 0; i < contact.getNumPoints(); ++i) {
      const ContactPoint point = contact.getPoint(i);
      ASSERT_TRUE(std::isfinite(point.depth())) << "seed " << seed;
      ASSERT_TRUE(std::isfinite(point.point().length2())) << "seed " << seed;
      ASSERT_NEAR(point.normal().length(), 1, 1e-5) << "seed " << seed;
    }
  }
}

TEST(CollisionFuzz, OddShapesNeverBreakAScene)
{
  const LogCapture quiet(kel::Notify::NOTIFY_ERROR);
  for (unsigned seed = 1; seed <= 150 * scale(); ++seed) {
    std::mt19937 random(seed);
    Scene scene(random() % 4 == 0 ? 0.05 : 1.0 / 60);
    if (random() % 2) scene.simulation->getSpace()->setBroadPhaseAlgorithm(Space::SWEEP_AND_PRUNE);
    switch (random() % 4) {
    case 0:
      scene.addGeometry(new Plane);
      break;
    case 1:
      scene.addGeometry(heightField(12, 4, [](Real x, Real y) { return 0.2 * std::sin(5 * x) * y; }));
      break;
    case 2:
      scene.addGeometry(groundMesh(12, 4, [](Real x, Real y) { return 0.2 * std::sin(5 * x) * y; }));
      break;
    default:
      scene.addGeometry(oddShape(random));
    }
    for (int i = 0; i < 10; ++i) {
      Shape* shape = oddShape(random);
      if (random() % 4 == 0) {
        auto* group = new ShapeGroup;
        group->addChild(shape, kel::AffineMatrix4x4::translate(0.1, 0, 0));
        group->addChild(oddShape(random));
        shape = group;
      }
      const auto place = [&] { return random() % 3 ? Real(random() % 100) / 100 : 0; };
      scene.addBody(shape, Vec3(place(), place(), place()), 1,
                    random() % 2 ? Quat() : Quat(place() * 6, Vec3(1, 2, 3).normal()));
    }
    for (int i = 0; i < 30; ++i) {
      scene.step(1);
      expectSound(scene, seed);
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

std::vector<Real> mixedPile(int numBodies, int steps, Space::BroadPhaseAlgorithm algorithm)
{
  Scene scene;
  scene.simulation->getSpace()->setBroadPhaseAlgorithm(algorithm);
  scene.addGeometry(heightField(30, 15, [](Real x, Real y) { return 0.05 * (x * x + y * y); }));
  for (int i = 0; i < numBodies; ++i) {
    const Maker makers[] = {[] { return new Box(0.1, 0.08, 0.06); }, [] { return new Sphere(0.08); },
                            [] { return new Capsule(0.06, 0.1); }, [] { return new Cylinder(0.08, 0.12); },
                            [] { return boxHull(Vec3(0.1, 0.08, 0.06)); }};
    const Vec3 place(i % 12 * 0.3 - 1.8 + 0.01 * (i % 7), i / 12 % 12 * 0.3 - 1.8, 0.5 + i / 144 * 0.25);
    scene.addBody(makers[i % 5](), place, 1, Quat(0.1 * i, Vec3(1, 1, 0).normal()));
  }
  scene.step(steps);
  expectSound(scene, 0);
  std::vector<Real> state;
  for (const auto& body : scene.simulation->getDynamicsSystem()->getRigidBodies()) {
    EXPECT_GT(body->getPosition().z(), -0.1);
    EXPECT_LT(body->getVelocity().length(), 20);
    state.insert(state.end(), body->getTransform().ptr(), body->getTransform().ptr() + 16);
  }
  return state;
}

TEST(CollisionDynamics, PilesOfAllShapesStaySound)
{
  mixedPile(2000 * int(scale()), 60, Space::HIERARCHICAL_GRID);
}

TEST(CollisionDynamics, BroadPhasesAndThreadsGiveTheSameBits)
{
  const std::vector<Real> first = mixedPile(200, 120, Space::HIERARCHICAL_GRID);
  const auto expectSame = [&](const std::vector<Real>& other) {
    EXPECT_EQ(std::memcmp(first.data(), other.data(), first.size() * sizeof(Real)), 0);
  };
  // Holes in the storages must not change the order in which anything is done.
  kel::ref_ptr<RigidBody> early = new RigidBody;
  const kel::ref_ptr<RigidBody> late = new RigidBody;
  early = nullptr;
  expectSame(mixedPile(200, 120, Space::SWEEP_AND_PRUNE));
  for (const unsigned long threads : {2, 4}) {
    kel::setNumThreads(threads);
    expectSame(mixedPile(200, 120, Space::HIERARCHICAL_GRID));
  }
  kel::setNumThreads(1);
}

} // namespace
