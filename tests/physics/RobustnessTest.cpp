#include "Scene.h"
#include "kel/BallJoint.h"
#include "kel/DistanceJoint.h"
#include "kel/Hinge.h"
#include "kel/IterativeProjectedConeFriction.h"
#include "kel/LockJoint.h"
#include "kel/Range1D.h"
#include "kelCollide/Capsule.h"
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace kel;
using kelCollide::Box;

/// A hanging chain whose links have masses in turn, light and heavy.
struct Chain
{
  Scene scene;
  std::vector<RigidBody*> links;
  std::vector<Constraint*> joints;

  Chain(Real timeStep, Real ratio, UInt32 solveType) : scene(timeStep)
  {
    for (int i = 0; i < 6; ++i) {
      RigidBody* link = scene.addBody(new Box(0.5, 0.1, 0.1), Vec3(0.5 + i, 0, 0), i % 2 ? ratio : 1);
      link->getGeometries()[0]->setSensor(true);
      joints.push_back(
          new kel::Hinge(kel::HingeFrame(Vec3(i, 0, 0), Vec3(0, 1, 0)), link, i ? links.back() : nullptr));
      joints.back()->setSolveType(solveType);
      scene.simulation->add(joints.back());
      links.push_back(link);
    }
  }
  /// Energy against that at the start, over what the fall to the lowest place gives.
  Real energy() const
  {
    Real fall = 0;
    for (std::size_t i = 0; i < links.size(); ++i)
      fall += links[i]->getMassProperties()->getMass() * Scene::G * (0.5 + static_cast<Real>(i));
    return scene.simulation->getDynamicsSystem()->getTotalEnergy() / fall;
  }
};

class Extremes : public testing::TestWithParam<std::tuple<Real, Real>>
{};

TEST_P(Extremes, ChainsGainNoEnergy)
{
  const auto& [timeStep, ratio] = GetParam();
  for (const UInt32 solveType :
       {Constraint::DIRECT, Constraint::ITERATIVE, Constraint::DIRECT_AND_ITERATIVE}) {
    Chain chain(timeStep, ratio, solveType);
    for (int i = 0; i < 500; ++i) {
      chain.scene.step(1);
      ASSERT_LE(chain.energy(), 0.02) << solveType << ' ' << i;
      // Sweeps let heavy links sink, a direct solution does not.
      if (solveType == Constraint::DIRECT) {
        ASSERT_GT(chain.energy(), -1.05) << i;
      }
    }
  }
}

std::string nameOf(const testing::TestParamInfo<Extremes::ParamType>& test)
{
  const auto& [timeStep, ratio] = test.param;
  std::string name =
      std::to_string(std::lround(1 / timeStep)) + "Hz_1e" + std::to_string(std::lround(std::log10(ratio)));
  std::replace(name.begin(), name.end(), '-', 'm');
  return name;
}

INSTANTIATE_TEST_SUITE_P(StepsAndRatios, Extremes,
                         testing::Combine(testing::Values(1e-5, 1e-3, 1.0 / 60, 0.1),
                                          testing::Values(1e-6, 1e-3, 1.0, 1e3, 1e6)),
                         nameOf);

TEST(Robustness, AnyComplianceAndDampingStayFinite)
{
  for (const Real compliance : {0.0, 1e-30, 1e-3, 1e10, 1e300, std::numeric_limits<Real>::infinity()})
    for (const Real damping : {0.0, 1e-12, 1.0, 1e12}) {
      Chain chain(1.0 / 60, 100, Constraint::DIRECT);
      for (Constraint* joint : chain.joints) {
        joint->setCompliance(compliance);
        joint->setDamping(damping);
      }
      for (int i = 0; i < 300; ++i) {
        chain.scene.step(1);
        ASSERT_LT(chain.energy(), 0.05) << compliance << ' ' << damping << ' ' << i;
      }
    }
}

TEST(Robustness, BodiesInOnePlaceStayFinite)
{
  Scene scene;
  scene.addGeometry(new kelCollide::Plane);
  std::vector<RigidBody*> bodies;
  for (const bool jointed : {false, true})
    for (int i = 0; i < 5; ++i) {
      bodies.push_back(scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(10 * jointed, 0, 0.5), 1));
      bodies.back()->getGeometries()[0]->setSensor(jointed);
    }
  scene.simulation->add(new kel::BallJoint(bodies[5], Vec3(), bodies[6]));
  scene.simulation->add(new kel::DistanceJoint(bodies[6], Vec3(), bodies[7], Vec3()));
  scene.simulation->add(new kel::LockJoint(bodies[7], bodies[8]));
  scene.simulation->add(new kel::LockJoint(bodies[8], bodies[7]));
  for (int i = 0; i < 600; ++i) {
    scene.step(1);
    for (const RigidBody* body : bodies) ASSERT_LT(body->getVelocity().length(), 12 + Scene::G * i / 60) << i;
  }
}

// The joint wants the boxes where the contact does not.
TEST(Robustness, JointsHoldBodiesThatOverlap)
{
  for (const Real timeStep : {1.0 / 60, 1.0 / 240})
    for (const char kind : {'b', 'l', 'd'}) {
      Scene scene(timeStep);
      scene.addGeometry(new kelCollide::Plane);
      RigidBody* body1 = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5), 1);
      RigidBody* body2 = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0.3, 0.2, 0.6), 1);
      if (kind == 'l')
        scene.simulation->add(new kel::LockJoint(body1, body2));
      else if (kind == 'b')
        scene.simulation->add(new kel::BallJoint(body1, Vec3(), body2));
      else
        scene.simulation->add(new kel::DistanceJoint(body1, Vec3(0.3, 0.2, 0.1), body2, Vec3()));
      for (Real time = 0; time < 5; time += timeStep) {
        scene.step(1);
        ASSERT_LT(body1->getVelocity().length() + body2->getVelocity().length(), 1) << kind << ' ' << time;
      }
    }
}

// Where a chain is straight, its links touch along the line in which their joint holds them.
TEST(Robustness, LinksThatTouchTheirNeighboursStayCalm)
{
  for (const Real ratio : {1e-3, 1.0, 100.0, 1e3}) {
    Scene scene;
    scene.addGeometry(new kelCollide::Plane);
    std::vector<RigidBody*> links;
    for (int chain = 0; chain < 4; ++chain) {
      const Vec3 start(0.3 * (chain % 2), 0.2 * chain, 1 + 0.5 * chain);
      for (int i = 0; i < 6; ++i) {
        RigidBody* link =
            scene.addBody(new kelCollide::Capsule(0.1, 0.3), start + Vec3(0, 0.5 * i, 0), i % 2 ? ratio : 1);
        if (i)
          scene.simulation->add(new kel::BallJoint(kel::BallJointFrame(start + Vec3(0, 0.5 * i - 0.25, 0)),
                                                   link, links.back()));
        links.push_back(link);
      }
    }
    const Real fastest = 3 * std::sqrt(2 * Scene::G * 2.5);
    for (int i = 0; i < 600; ++i) {
      scene.step(1);
      for (const RigidBody* link : links)
        ASSERT_LT(link->getVelocity().length(), fastest) << ratio << ' ' << i;
    }
  }
}

// Walls that are nearer than the boxes between them are wide: nothing can meet all contacts.
TEST(Robustness, WedgedBodiesStayCalm)
{
  for (const auto type : {FrictionModel::SPLIT, FrictionModel::DIRECT, FrictionModel::ITERATIVE})
    for (const Real gap : {0.99, 0.6})
      for (const Real timeStep : {1.0 / 60, 1e-3}) {
        Ground ground(timeStep);
        ground.contact->setFrictionModel(new IterativeProjectedConeFriction(type));
        ground.addGeometry(new kelCollide::Plane(Vec3(1, 0, 0), gap / 2));
        ground.addGeometry(new kelCollide::Plane(Vec3(-1, 0, 0), gap / 2));
        std::vector<RigidBody*> boxes;
        for (int i = 0; i < 5; ++i)
          boxes.push_back(ground.addBody(new Box(0.5, 0.5, 0.5), Vec3(0.03 * i, 0.02 * i, 0.5 + 0.9 * i), 1,
                                         Quat(0.1 * i, Vec3(1, 2, 3).normal())));
        for (int i = 0; i < 300; ++i) {
          ground.step(1);
          for (const RigidBody* box : boxes) ASSERT_LT(box->getVelocity().length(), 10) << type << ' ' << gap;
        }
      }
}

TEST(Robustness, JointsFetchBodiesThatWereCarriedOff)
{
  for (const Real timeStep : {1e-4, 1e-3, 1.0 / 60}) {
    Scene scene(timeStep);
    scene.simulation->setUniformGravity(Vec3());
    RigidBody* body = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(), 1);
    scene.simulation->add(new kel::LockJoint(body));
    body->setPosition(3, 0, 0);
    for (Real time = 0; time < 1; time += timeStep) {
      scene.step(1);
      ASSERT_LT(body->getVelocity().length(), 126) << timeStep << ' ' << time;
    }
    EXPECT_LT(body->getPosition().length() + body->getVelocity().length(), 1e-3) << timeStep;
  }
}

TEST(Robustness, RangesAndGroundsAheadDoNotSlowWhatIsFast)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* rotor = scene.addBody(new kelCollide::Sphere(0.5), Vec3(), 1);
  auto* hinge = new kel::Hinge(kel::HingeFrame(Vec3(), Vec3(0, 0, 1)), rotor);
  hinge->getRange1D()->setRange(RangeReal(-1000, 1000));
  hinge->getRange1D()->setEnable(true);
  scene.simulation->add(hinge);
  rotor->setAngularVelocity(0, 0, 150);
  scene.step(30);
  EXPECT_NEAR(rotor->getAngularVelocity().z(), 150, 1e-6);

  Ground ground(1e-4);
  RigidBody* bullet = ground.addBody(new kelCollide::Sphere(1), Vec3(0, 0, 1.019), 1);
  bullet->setVelocity(0, 0, -150);
  ground.step(1);
  EXPECT_NEAR(bullet->getVelocity().z(), -150, 1e-2);
}

// A door on four hinges: three of them say nothing new.
TEST(Robustness, RedundantHingesShareTheLoad)
{
  Scene scene;
  RigidBody* door = scene.addBody(new Box(0.5, 0.02, 1), Vec3(0.5, 0, 0), 20);
  std::vector<kel::Hinge*> hinges;
  for (int i = 0; i < 4; ++i) {
    hinges.push_back(new kel::Hinge(kel::HingeFrame(Vec3(0, 0, -0.9 + 0.6 * i), Vec3(0, 0, 1)), door));
    hinges.back()->setCompliance(0);
    scene.simulation->add(hinges.back());
  }
  door->setVelocity(0, 0.05, 0);
  door->setAngularVelocity(0, 0, 0.1);
  scene.step(600);
  Real sum = 0;
  for (const kel::Hinge* hinge : hinges) sum += hinge->getCurrentForce(kel::Hinge::TRANSLATIONAL_3);
  EXPECT_NEAR(sum, 20 * Scene::G, 1e-3 * 20 * Scene::G);
  EXPECT_NEAR(door->getAngularVelocity().z(), 0.1, 1e-3);
  EXPECT_NEAR(door->getPosition().z(), 0, 1e-6);
  EXPECT_EQ(scene.simulation->getSolver()->getNumFallbacks(), 0u);
}

} // namespace
