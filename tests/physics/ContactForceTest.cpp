#include "Scene.h"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;
using namespace kelCollide;

/// Highest points of a ball's centre after it has been let go at a height above its radius.
std::vector<Real> peaks(Ground& ground, Real height, std::size_t count)
{
  const RigidBody* ball = ground.addBody(new Sphere(0.1), Vec3(0, 0, 0.1 + height), 1);
  std::vector<Real> found;
  Real last = -1;
  while (found.size() < count) {
    ground.step(1);
    const Real speed = ball->getVelocity().z();
    if (last > 0 && speed <= 0) found.push_back(ball->getPosition().z() - 0.1);
    last = speed;
  }
  return found;
}

class Bounces : public testing::TestWithParam<Real>
{};

// The heights put the impact at all places within a step.
TEST_P(Bounces, RiseToTheSquareOfTheRestitutionEachTime)
{
  const Real square = GetParam() * GetParam();
  for (const Real height : {0.9, 0.95, 1.0, 1.013, 1.03, 1.1, 1.234}) {
    Ground ground(1.0 / 240);
    ground.contact->setRestitution(GetParam());
    Real expected = height;
    for (const Real peak : peaks(ground, height, 3)) {
      expected *= square;
      EXPECT_NEAR(peak, expected, 0.02 * expected) << height;
      expected = peak;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Restitutions, Bounces, testing::Values(0.5, 0.8, 1.0),
                         [](const auto& test) { return std::to_string(std::lround(100 * test.param)); });

TEST(Bounce, DefaultMaterialRisesToAQuarterAtTheUsualStep)
{
  for (const Real height : {0.9, 0.95, 1.0, 1.013, 1.03, 1.1, 1.234}) {
    Ground ground(1.0 / 60);
    EXPECT_NEAR(peaks(ground, height, 1)[0], height / 4, 0.02 * height / 4) << height;
  }
}

TEST(Bounce, ImpactComplianceSwallowsSpeed)
{
  Ground ground(1.0 / 240);
  ground.contact->setRestitution(1);
  ground.contact->setImpactCompliance(1); // 1/kg, as much as the ball has itself
  RigidBody* ball = ground.addBody(new Sphere(0.1), Vec3(0, 0, 0.1), 1);
  ball->setVelocity(0, 0, -3);
  ground.simulation->setUniformGravity(Vec3());
  ground.step(1);
  EXPECT_NEAR(ball->getVelocity().z(), 0, 1e-9); // 2 * 3 N s were wanted, half of them went
}

TEST(Compliance, LetsABallSinkByItsWeight)
{
  Ground ground(1.0 / 60);
  ground.contact->setYoungsModulus(1e5);
  const RigidBody* ball = ground.addBody(new Sphere(0.1), Vec3(0, 0, 0.1), 20);
  ground.step(600);
  const Real depth = 20 * Scene::G / 1e5;
  EXPECT_NEAR(0.1 - ball->getPosition().z(), depth, 1e-3 * depth);
}

TEST(Compliance, DampingIsATime)
{
  Ground ground(1.0 / 600);
  ground.contact->setYoungsModulus(1e12);
  ground.contact->setDamping(0.2);
  const RigidBody* ball = ground.addBody(new Sphere(0.1), Vec3(0, 0, 0.09), 1);
  ground.step(120);
  EXPECT_NEAR(0.1 - ball->getPosition().z(), 0.01 * std::exp(-1), 0.01 * 0.01);
}

TEST(Compliance, AreaSpreadsTheLoad)
{
  Ground ground(1.0 / 60);
  ground.contact->setYoungsModulus(1e6);
  ground.contact->setUseContactAreaApproach(true);
  ground.contact->setMinMaxElasticRestLength(0.01, 10);
  const RigidBody* box = ground.addBody(new Box(0.5, 0.25, 0.2), Vec3(0, 0, 0.2), 50);
  ground.step(900);
  const Real depth = 50 * Scene::G * 0.4 / (1e6 * 0.5); // weight times height by modulus and area
  EXPECT_NEAR(0.2 - box->getPosition().z(), depth, 0.01 * depth);
  const kelCollide::GeometryContact contact = ground.simulation->getSpace()->getGeometryContacts().at(0);
  EXPECT_NEAR(contact.getPoint(0).area() * static_cast<Real>(contact.getNumPoints()), 0.5, 1e-6);

  ground.contact->setMinMaxElasticRestLength(0.01, 0.1);
  ground.step(900);
  EXPECT_NEAR(0.2 - box->getPosition().z(), depth / 4, 0.01 * depth / 4);
}

TEST(Compliance, BallHasTheAreaOfItsSection)
{
  Ground ground(1.0 / 60);
  ground.contact->setYoungsModulus(1e6);
  ground.contact->setUseContactAreaApproach(true);
  const RigidBody* ball = ground.addBody(new Sphere(0.1), Vec3(0, 0, 0.1), 5);
  ground.step(1200);
  const Real depth = std::sqrt(5 * Scene::G / (std::numbers::pi * 1e6));
  EXPECT_NEAR(0.1 - ball->getPosition().z(), depth, 0.01 * depth);
}

TEST(Compliance, NonsenseDoesNotExplode)
{
  for (const Real modulus : {-1.0, 0.0, 1e300, std::nan("")}) {
    for (const Real damping : {-10.0, 0.0, 1e300, std::nan("")}) {
      Ground ground(1.0 / 60);
      ground.contact->setYoungsModulus(modulus);
      ground.contact->setDamping(damping);
      const RigidBody* box = ground.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.4), 1);
      ground.step(60);
      EXPECT_TRUE(std::isfinite(box->getPosition().z()));
      EXPECT_LT(box->getVelocity().length(), 1.01 * Scene::G);
    }
  }
}

TEST(Adhesion, HoldsABoxBelowTheCeilingUpToItsForce)
{
  const Real weight = 10 * Scene::G;
  for (const Real force : {0.98 * weight, 1.02 * weight}) {
    Ground ground(1.0 / 60, Vec3(0, 0, -1));
    ground.contact->setAdhesion(force, 0.01);
    RigidBody* box = ground.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, -0.49), 10);
    ground.step(600);
    if (force > weight) {
      EXPECT_NEAR(box->getPosition().z(), -0.49, 1e-4);
      Real sum = 0;
      const kelCollide::GeometryContact contact = ground.simulation->getSpace()->getGeometryContacts().at(0);
      for (std::size_t i = 0; i < contact.getNumPoints(); ++i)
        sum += contact.getPoint(i).localForce(ContactPoint::NORMAL_FORCE);
      EXPECT_NEAR(sum, -weight, 1e-4 * weight);
    } else {
      EXPECT_LT(box->getPosition().z(), -10);
    }
  }
}

TEST(Adhesion, PressesForFriction)
{
  // A wall: no weight on it.
  for (const Real part : {0.97, 1.03}) {
    Ground ground(1.0 / 60, Vec3(1, 0, 0));
    ground.contact->setFrictionCoefficient(0.5);
    ground.contact->setAdhesion(part * 10 * Scene::G / 0.5, 0.01);
    RigidBody* box = ground.addBody(new Box(0.05, 0.5, 0.5), Vec3(0.04, 0, 0), 10);
    ground.step(60);
    const Real before = box->getVelocity().z();
    ground.step(60);
    const Real acceleration = before - box->getVelocity().z();
    EXPECT_NEAR(acceleration, part < 1 ? 0.03 * Scene::G : 0, 0.01 * Scene::G * 0.03);
  }
}

} // namespace
