#include "Pair.h"
#include "kelCollide/Box.h"
#include "kelCollide/Capsule.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/Plane.h"
#include "kelCollide/ShapeGroup.h"
#include "kelCollide/Sphere.h"
#include "meshes.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kelCollide;
using kel::Quat;
using kel::Real;
using kel::Vec3;

constexpr Real PI = std::numbers::pi;
const Quat LYING(PI / 2, Vec3(1, 0, 0)); // y becomes z: capsules and cylinders stand

struct Form
{
  const char* name;
  std::function<Shape*()> make;
  Quat rotation;
  Real bottom; // height of the origin above the lowest point
  std::size_t numPoints;
};

const Form RESTING[] = {
    {"box", [] { return new Box(0.5, 0.4, 0.3); }, Quat(), 0.3, 4},
    {"turned box", [] { return new Box(0.5, 0.4, 0.3); }, Quat(0.3, Vec3(0, 0, 1)), 0.3, 4},
    {"box on an edge", [] { return new Box(0.5, 0.3, 0.3); }, Quat(PI / 4, Vec3(1, 0, 0)),
     0.3 * std::sqrt(2.0), 2},
    {"sphere", [] { return new Sphere(0.4); }, Quat(), 0.4, 1},
    {"lying capsule", [] { return new Capsule(0.2, 0.8); }, Quat(), 0.2, 2},
    {"standing capsule", [] { return new Capsule(0.2, 0.8); }, LYING, 0.6, 1},
    {"lying cylinder", [] { return new Cylinder(0.3, 0.8); }, Quat(), 0.3, 2},
    {"standing cylinder", [] { return new Cylinder(0.3, 0.8); }, LYING, 0.4, 4},
    {"hull", [] { return boxHull(Vec3(0.5, 0.4, 0.3)); }, Quat(), 0.3, 4},
    {"mesh", [] { return boxMesh(Vec3(0.5, 0.4, 0.3)); }, Quat(), 0.3, 4},
    {"line", [] { return new Line(Vec3(-0.5, 0, 0), Vec3(0.5, 0, 0)); }, Quat(), 0, 2},
    {"group",
     [] {
       auto* group = new ShapeGroup;
       group->addChild(new Box(0.2, 0.2, 0.2), kel::AffineMatrix4x4::translate(0.3, 0, 0));
       group->addChild(new Sphere(0.2), kel::AffineMatrix4x4::translate(-0.3, 0, 0));
       return group;
     },
     Quat(), 0.2, 5},
};

struct Ground
{
  const char* name;
  std::function<Shape*()> make;
};

const Ground GROUNDS[] = {
    {"plane", [] { return new Plane; }},
    {"box", [] { return new Box(5, 5, 2); }},
    {"hull", [] { return boxHull(Vec3(5, 5, 2)); }},
    {"cylinder", [] { return new Cylinder(5, 4); }},
    {"flat mesh", [] { return flatMesh(7, 10); }},
    {"closed mesh", [] { return boxMesh(Vec3(5, 5, 2)); }},
    {"height field", [] { return flatField(7, 10); }},
};

/// How the ground must lie for its top to be at z = 0.
kel::AffineMatrix4x4 groundTransform(const Ground& ground)
{
  const std::string name = ground.name;
  const bool isThick = name == "box" || name == "hull" || name == "cylinder" || name == "closed mesh";
  return kel::AffineMatrix4x4(name == "cylinder" ? LYING : Quat(), Vec3(0, 0, isThick ? -2 : 0));
}

class Resting : public testing::TestWithParam<std::tuple<Form, Ground>>
{};

TEST_P(Resting, HasTheWholePatch)
{
  const auto& [form, ground] = GetParam();
  Pair pair(ground.make(), form.make());
  pair.still->setTransform(groundTransform(ground));
  for (const Real depth : {9e-3, 1e-3, 1e-5, 0.0, -1e-3}) {
    const auto points = pair.pointsAt(Vec3(0.13, 0.17, form.bottom - depth), form.rotation);
    ASSERT_EQ(points.size(), form.numPoints) << "depth " << depth;
    for (const ContactPoint& point : points) {
      EXPECT_NEAR(point.depth(), depth, 2e-6);
      EXPECT_NEAR(Vec3(point.normal()).distance(Vec3(0, 0, -1)), 0, 1e-5);
      EXPECT_NEAR(point.point().z(), -depth / 2, 2e-6);
    }
  }
  EXPECT_TRUE(pair.pointsAt(Vec3(0.13, 0.17, form.bottom + 0.1), form.rotation).empty());
}

INSTANTIATE_TEST_SUITE_P(Forms, Resting,
                         testing::Combine(testing::ValuesIn(RESTING), testing::ValuesIn(GROUNDS)),
                         [](const auto& test) {
                           std::string name = std::string(std::get<0>(test.param).name) + " on " +
                                              std::get<1>(test.param).name;
                           std::replace(name.begin(), name.end(), ' ', '_');
                           return name;
                         });

TEST(Collision, RoundShapesMeetByTheDistanceOfTheirCores)
{
  struct Case
  {
    std::function<Shape*()> first;
    std::function<Shape*()> second;
    Vec3 position;
    Quat rotation;
    Real depth;
    Vec3 normal;
  };
  const Case cases[] = {
      {[] { return new Sphere(0.5); }, [] { return new Sphere(0.3); }, Vec3(0.6, 0, 0.5), Quat(),
       0.8 - std::hypot(0.6, 0.5), Vec3(-0.6, 0, -0.5).normal()},
      {[] { return new Capsule(0.2, 1); }, [] { return new Sphere(0.3); }, Vec3(0.4, 0.3, 0), Quat(), 0.1,
       Vec3(-1, 0, 0)},
      {[] { return new Capsule(0.2, 1); }, [] { return new Sphere(0.3); }, Vec3(0.3, 0.8, 0), Quat(),
       0.5 - std::hypot(0.3, 0.3), Vec3(-1, -1, 0).normal()},
      {[] { return new Capsule(0.2, 1); }, [] { return new Capsule(0.2, 1); }, Vec3(0, 0, 0.35),
       Quat(PI / 2, Vec3(0, 0, 1)), 0.05, Vec3(0, 0, -1)},
      {[] { return new Box(0.5, 0.5, 0.5); }, [] { return new Sphere(0.3); }, Vec3(0.65, 0.65, 0), Quat(),
       0.3 - std::hypot(0.15, 0.15), Vec3(-1, -1, 0).normal()},
      {[] { return new Box(0.5, 0.5, 0.5); }, [] { return new Capsule(0.1, 1); }, Vec3(0.55, 0, 0.55), Quat(),
       0.1 - std::hypot(0.05, 0.05), Vec3(-1, 0, -1).normal()},
      {[] { return new Cylinder(0.5, 1); }, [] { return new Sphere(0.3); }, Vec3(0.6, 0, 0.35), Quat(),
       0.8 - std::hypot(0.6, 0.35), Vec3(-0.6, 0, -0.35).normal()},
      {[] { return new Sphere(0.5); }, [] { return new Sphere(0.3); }, Vec3(0.1, 0, 0), Quat(), 0.7,
       Vec3(-1, 0, 0)},
  };
  for (const Case& c : cases) {
    Pair pair(c.first(), c.second());
    const auto points = pair.pointsAt(c.position, c.rotation);
    ASSERT_FALSE(points.empty()) << c.position.x();
    EXPECT_NEAR(points[0].depth(), c.depth, 2e-3 * 0.3) << c.position.x(); // edges are rounded that much
    EXPECT_LT(Vec3(points[0].normal()).distance(c.normal), 1e-2) << c.position.x();
  }
}

TEST(Collision, StackedBoxesOfOneSizeShareTheirFourCorners)
{
  Pair pair(new Box(0.5, 0.5, 0.5), new Box(0.5, 0.5, 0.5));
  const auto points = pair.pointsAt(Vec3(0, 0, 0.999));
  ASSERT_EQ(points.size(), 4u);
  Vec3 sum;
  for (const ContactPoint& point : points) {
    EXPECT_NEAR(std::fabs(point.point().x()), 0.5, 1e-9);
    EXPECT_NEAR(std::fabs(point.point().y()), 0.5, 1e-9);
    sum += point.point();
  }
  EXPECT_NEAR(std::hypot(sum.x(), sum.y()), 0, 1e-9);
  // Sides that run across each other by less than rounding matters do not cross far away.
  for (const Real yaw : {2e-10, -2e-10})
    for (const ContactPoint& point : pair.pointsAt(Vec3(1e-9, 1e-9, 0.999), Quat(yaw, Vec3(0, 0, 1))))
      EXPECT_LT(std::max(std::fabs(point.point().x()), std::fabs(point.point().y())), 0.5 + 1e-6);
}

TEST(Collision, EdgesOfBoxesCrossInOnePoint)
{
  Pair pair(new Box(0.5, 2, 0.5), new Box(2, 0.5, 0.5));
  pair.still->setRotation(Quat(PI / 4, Vec3(0, 1, 0)));
  const Real touching = 2 * 0.5 * std::sqrt(2.0);
  const auto points = pair.pointsAt(Vec3(0.1, 0.1, touching - 0.005), Quat(PI / 4, Vec3(1, 0, 0)));
  ASSERT_GE(points.size(), 1u);
  const auto deepest = std::max_element(points.begin(), points.end(),
                                        [](const auto& a, const auto& b) { return a.depth() < b.depth(); });
  EXPECT_NEAR(deepest->depth(), 0.005, 1e-6);
  EXPECT_NEAR(deepest->point().x(), 0, 1e-3);
  EXPECT_NEAR(deepest->point().y(), 0.1, 1e-3);
}

TEST(Collision, DepthDoesNotDependOnThePlace)
{
  const Vec3 far(1e5, -2e5, 3e4);
  Pair pair(new Box(0.5, 0.5, 0.5), new Cylinder(0.3, 1));
  pair.still->setPosition(far);
  const auto points = pair.pointsAt(far + Vec3(0.1, 0.1, 0.799));
  ASSERT_EQ(points.size(), 2u);
  EXPECT_NEAR(points[0].depth(), 1e-3, 1e-9);
}

TEST(Collision, GroupsAndTheFilterAreAskedInEachUpdate)
{
  Pair pair(new Plane, new Sphere(0.5));
  const auto touches = [&] { return !pair.pointsAt(Vec3(0, 0, 0.4)).empty(); };
  Geometry& ball = *pair.body->getGeometries()[0];
  CollisionGroupManager& groups = *pair.space->getCollisionGroupManager();
  EXPECT_TRUE(touches());
  ball.addGroup("balls");
  pair.still->addGroup(7);
  groups.setEnablePair(groups.groupOf(7), groups.groupOf("balls"), false);
  EXPECT_FALSE(touches());
  EXPECT_FALSE(groups.getEnablePair(groups.groupOf("balls"), groups.groupOf(7)));
  EXPECT_TRUE(Space::canCollide(&ball, pair.still.get(), nullptr));
  ball.removeGroup("balls");
  EXPECT_FALSE(ball.hasGroup("balls"));
  EXPECT_TRUE(touches());
  ball.addGroup("balls");
  EXPECT_FALSE(touches());
  groups.setEnablePair(groups.groupOf("balls"), groups.groupOf(7), true);
  EXPECT_TRUE(touches());
  int asked = 0;
  pair.space->setFilter([&](const Geometry&, const Geometry&) { return ++asked % 2 == 0; });
  EXPECT_FALSE(touches());
  EXPECT_TRUE(touches());
  EXPECT_EQ(asked, 2);
  EXPECT_NE(groups.getUniqueGroupID(), groups.getUniqueGroupID());
}

TEST(Collision, ReachOfZeroLeavesContactsThatTouchAlone)
{
  Pair pair(new Plane, new Sphere(0.5));
  EXPECT_EQ(pair.pointsAt(Vec3(0, 0, 0.505)).size(), 1u);
  pair.space->setContactReach(0);
  EXPECT_TRUE(pair.pointsAt(Vec3(0, 0, 0.505)).empty());
  EXPECT_EQ(pair.pointsAt(Vec3(0, 0, 0.4999)).size(), 1u);
}

} // namespace
