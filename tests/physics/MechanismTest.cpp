#include "Scene.h"
#include "kel/BallJoint.h"
#include "kel/Hinge.h"
#include "kel/IterativeProjectedConeFriction.h"
#include "kel/Prismatic.h"
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;
using kelCollide::Box;

const Vec3 OUT(0, -1, 0); // mechanisms lie in the plane of x and z

/// A mechanism of bars in the plane of x and z.
struct Mechanism : Scene
{
  explicit Mechanism(Real timeStep) : Scene(timeStep) {}

  RigidBody* addBar(const Vec3& from, const Vec3& to, Real mass)
  {
    const Vec3 along = to - from;
    RigidBody* bar = addBody(new Box(along.length() / 2, 0.02, 0.02), (from + to) * 0.5, mass,
                             Quat(Vec3::X_AXIS(), along));
    bar->getGeometries()[0]->setSensor(true);
    return bar;
  }
  Hinge* addHinge(const Vec3& point, RigidBody* first, RigidBody* second = nullptr)
  {
    auto* hinge = new Hinge(HingeFrame(point, OUT), first, second);
    hinge->setDamping(simulation->getTimeStep());
    simulation->add(hinge);
    return hinge;
  }
  void run(Real time) { step(static_cast<int>(std::lround(time / simulation->getTimeStep()))); }
};

Real inertiaAbout(const RigidBody& bar, Real distance)
{
  const kel::MassProperties& mass = *bar.getMassProperties();
  return mass.getInertiaTensor()(1, 1) + mass.getMass() * distance * distance;
}

/// Runge and Kutta's rule of the fourth order with small steps.
template <std::size_t SIZE, class Derivative>
void integrate(std::array<Real, SIZE>& state, Real time, Derivative derivative)
{
  const int steps = 20000;
  const Real h = time / steps;
  const auto moved = [](std::array<Real, SIZE> s, const std::array<Real, SIZE>& d, Real factor) {
    for (std::size_t i = 0; i < SIZE; ++i) s[i] += factor * d[i];
    return s;
  };
  for (int i = 0; i < steps; ++i) {
    const auto k1 = derivative(state);
    const auto k2 = derivative(moved(state, k1, h / 2));
    const auto k3 = derivative(moved(state, k2, h / 2));
    const auto k4 = derivative(moved(state, k3, h));
    for (std::size_t j = 0; j < SIZE; ++j) state[j] += h / 6 * (k1[j] + 2 * k2[j] + 2 * k3[j] + k4[j]);
  }
}

TEST(Mechanism, DoublePendulumConvergesToTheExactMotion)
{
  constexpr Real TIME = 1;
  constexpr Real MASS = 1;
  // Two bars of 1 m, level at first; angles from the level, down positive.
  Real i1 = 0;
  const auto errorAt = [&](Real timeStep, const std::array<Real, 4>* exact) {
    Mechanism scene(timeStep);
    RigidBody* upper = scene.addBar(Vec3(0, 0, 0), Vec3(1, 0, 0), MASS);
    RigidBody* lower = scene.addBar(Vec3(1, 0, 0), Vec3(2, 0, 0), MASS);
    scene.addHinge(Vec3(0, 0, 0), upper);
    scene.addHinge(Vec3(1, 0, 0), lower, upper);
    i1 = inertiaAbout(*upper, 0);
    if (!exact) return Real(0);
    scene.run(TIME);
    const auto& [a, b, va, vb] = *exact;
    const Vec3 elbow(std::cos(a), 0, -std::sin(a));
    return (lower->getPosition() - elbow - Vec3(std::cos(b), 0, -std::sin(b)) * 0.5).length();
  };
  errorAt(0.1, nullptr);
  std::array<Real, 4> state = {};
  integrate(state, TIME, [&](const std::array<Real, 4>& s) {
    const auto& [a, b, va, vb] = s;
    const Real m11 = i1 + MASS / 4 + MASS;
    const Real m22 = i1 + MASS / 4;
    const Real m12 = MASS / 2 * std::cos(a - b);
    const Real f1 = 1.5 * MASS * Scene::G * std::cos(a) - MASS / 2 * std::sin(a - b) * vb * vb;
    const Real f2 = 0.5 * MASS * Scene::G * std::cos(b) + MASS / 2 * std::sin(a - b) * va * va;
    const Real determinant = m11 * m22 - m12 * m12;
    return std::array<Real, 4>{va, vb, (m22 * f1 - m12 * f2) / determinant,
                               (m11 * f2 - m12 * f1) / determinant};
  });
  const Real coarse = errorAt(1.0 / 250, &state);
  const Real fine = errorAt(1.0 / 1000, &state);
  EXPECT_LT(fine, 0.01);
  EXPECT_LT(fine, 0.3 * coarse);
}

TEST(Mechanism, SliderCrankFollowsTheCrank)
{
  Mechanism scene(1.0 / 600);
  const Real r = 0.3;
  const Real l = 1;
  const Vec3 pin(r, 0, 0);
  const Vec3 wrist(r + l, 0, 0);
  RigidBody* crank = scene.addBar(Vec3(), pin, 1);
  RigidBody* rod = scene.addBar(pin, wrist, 1);
  RigidBody* slider = scene.addBar(wrist, wrist + Vec3(0.2, 0, 0), 1);
  Hinge* drive = scene.addHinge(Vec3(), crank);
  scene.addHinge(pin, rod, crank);
  scene.addHinge(wrist, slider, rod);
  auto* guide = new kel::Prismatic(kel::PrismaticFrame(wrist, Vec3(1, 0, 0)), slider);
  scene.simulation->add(guide); // the loop takes some freedoms twice
  drive->getMotor1D()->setEnable(true);
  drive->getMotor1D()->setSpeed(2);
  for (int i = 0; i < 200; ++i) {
    scene.step(10);
    const Real angle = drive->getAngle();
    const Real place = r * std::cos(angle) + std::sqrt(l * l - r * r * std::sin(angle) * std::sin(angle));
    EXPECT_NEAR(guide->getAngle(), place - r - l, 1e-4);
  }
  EXPECT_NEAR(drive->getAngle(), 2 * 2000.0 / 600, 0.01);
  EXPECT_EQ(scene.simulation->getSolver()->getNumFallbacks(), 0u);
}

// A parallelogram hangs as a pendulum does whose coupler only moves along: a loop of four hinges in space
// takes three freedoms twice.
TEST(Mechanism, ParallelogramSwingsAtItsFrequency)
{
  Mechanism scene(1.0 / 600);
  const Real length = 1;
  const Real start = 0.1; // from the vertical
  const Vec3 down(length * std::sin(start), 0, -length * std::cos(start));
  const Vec3 across(0.8, 0, 0);
  RigidBody* left = scene.addBar(Vec3(), down, 1);
  RigidBody* right = scene.addBar(across, across + down, 1);
  RigidBody* coupler = scene.addBar(down, across + down, 2);
  Hinge* hinge = scene.addHinge(Vec3(), left);
  scene.addHinge(across, right);
  scene.addHinge(down, coupler, left);
  scene.addHinge(across + down, coupler, right);
  std::vector<Real> crossings;
  Real before = 0;
  for (int i = 1; i <= 600 * 10; ++i) {
    scene.step(1);
    const Real angle = hinge->getAngle() + start; // 0 where it hangs straight
    if (i > 1 && before > 0 && angle <= 0) crossings.push_back((i - angle / (angle - before)) / 600);
    before = angle;
    EXPECT_LT(std::fabs(coupler->getAngularVelocity().y()), 1e-4);
  }
  ASSERT_GT(crossings.size(), 3u);
  const Real period = (crossings.back() - crossings.front()) / static_cast<Real>(crossings.size() - 1);
  const Real inertia = 2 * inertiaAbout(*left, length / 2) + 2 * length * length;
  const Real moment = (2 * 1 * length / 2 + 2 * length) * Scene::G;
  const Real exact = 2 * std::numbers::pi * std::sqrt(inertia / moment) * (1 + start * start / 16);
  EXPECT_NEAR(period, exact, 0.002 * exact);
  EXPECT_EQ(scene.simulation->getSolver()->getNumFallbacks(), 0u);
}

// A fast symmetric top with its axis level: the centre of mass goes round at m g d / (I w).
TEST(Mechanism, TopPrecesses)
{
  Scene scene(1.0 / 2000);
  const Real d = 0.5;
  RigidBody* top = scene.addBody(new Box(0.05, 0.4, 0.4), Vec3(d, 0, 0), 2);
  scene.simulation->add(new kel::BallJoint(kel::BallJointFrame(Vec3()), top));
  const kel::SPDMatrix3x3& inertia = top->getMassProperties()->getInertiaTensor();
  const Real spin = 200;
  const Real precession = 2 * Scene::G * d / (inertia(0, 0) * spin);
  top->setAngularVelocity(spin, 0, precession);
  top->setVelocity(0, precession * d, 0);
  const Real time = 2;
  Real angle = 0;
  for (int i = 0; i < std::lround(time * 2000); ++i) {
    scene.step(1);
    const Vec3 place = top->getCmPosition();
    angle += std::remainder(std::atan2(place.y(), place.x()) - angle, 2 * std::numbers::pi);
    EXPECT_NEAR(place.z(), 0, 0.005);
  }
  EXPECT_NEAR(angle / time, precession, 0.005 * precession);
}

TEST(Mechanism, MotorLiftsALoadOverAPrismaticJoint)
{
  Mechanism scene(1.0 / 60);
  RigidBody* cage = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(), 20);
  auto* rail = new kel::Prismatic(Vec3(0, 0, 1), cage);
  scene.simulation->add(rail);
  rail->getMotor1D()->setEnable(true);
  rail->getMotor1D()->setSpeed(0.5);
  rail->getMotor1D()->setForceRange(kel::RangeReal(-300, 300));
  rail->getRange1D()->setEnable(true);
  rail->getRange1D()->setRange(-1, 2);
  scene.run(2);
  const Real weight = 20 * Scene::G;
  EXPECT_NEAR(rail->getMotor1D()->getCurrentForce(0), weight, 1e-4 * weight);
  EXPECT_NEAR(rail->getCurrentSpeed(), 0.5, 1e-5);
  scene.run(4);
  // At the end of its range the motor pulls with all it has.
  EXPECT_NEAR(rail->getAngle(), 2, 1e-6);
  EXPECT_NEAR(rail->getMotor1D()->getCurrentForce(0), 300, 1e-2);
  EXPECT_NEAR(rail->getRange1D()->getCurrentForce(0), weight - 300, 1e-4 * weight);
}

class ParkedCar : public testing::TestWithParam<std::pair<Real, kel::FrictionModel::SolveType>>
{};

// Friction has to hold what pulls at it through the joints.
TEST_P(ParkedCar, StaysOnASlope)
{
  const auto& [mass, solveType] = GetParam();
  const Real angle = 15 * std::numbers::pi / 180;
  Scene scene;
  kel::ref_ptr<kel::FrictionModel> model = new kel::IterativeProjectedConeFriction;
  model->setSolveType(solveType);
  kel::ref_ptr<kel::ContactMaterial> contact = new kel::ContactMaterial(*scene.material, *scene.material);
  contact->setFrictionCoefficient(1);
  contact->setFrictionModel(model.get());
  scene.simulation->add(contact.get());
  const Quat slope(angle, Vec3(0, 1, 0));
  scene.addGeometry(new kelCollide::Plane(slope * Vec3(0, 0, 1), Real(0)));
  RigidBody* car = scene.addBody(new Box(2, 0.8, 0.3), slope * Vec3(0, 0, 0.9), mass, slope);
  std::vector<Hinge*> axles;
  for (const Real x : {-1.5, 1.5})
    for (const Real y : {-1.3, 1.3}) {
      const Vec3 place = slope * Vec3(x, y, 0.4);
      RigidBody* wheel = scene.addBody(new kelCollide::Sphere(0.4), place, 20, slope);
      axles.push_back(new Hinge(HingeFrame(place, Vec3(0, 1, 0)), wheel, car));
      axles.back()->getLock1D()->setEnable(true);
      scene.simulation->add(axles.back());
    }
  scene.step(120);
  const Vec3 before = car->getPosition();
  scene.step(300);
  EXPECT_LT((car->getPosition() - before).length(), 1e-4);
  Real brakes = 0;
  for (const Hinge* axle : axles) brakes += axle->getLock1D()->getCurrentForce(0);
  const Real pull = (mass + 80) * Scene::G * std::sin(angle) * 0.4;
  EXPECT_NEAR(std::fabs(brakes), pull, 0.01 * pull);
  for (Hinge* axle : axles) axle->getLock1D()->setEnable(false);
  scene.step(60);
  EXPECT_GT((car->getPosition() - before).length(), 1);
}

INSTANTIATE_TEST_SUITE_P(Masses, ParkedCar,
                         testing::Values(std::pair(1000.0, kel::FrictionModel::SPLIT),
                                         std::pair(20000.0, kel::FrictionModel::DIRECT)));

} // namespace
