#include "Scene.h"
#include "kel/BoxFrictionModel.h"
#include "kel/IterativeProjectedConeFriction.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>

namespace {

using namespace kel;
using kelCollide::Box;
using kelCollide::Plane;
using kelCollide::Sphere;

RigidBody* addSlider(Ground& ground, const Vec3& velocity)
{
  RigidBody* box = ground.addBody(new Box(0.5, 0.5, 0.1), Vec3(0, 0, 0.1), 2);
  ground.step(60);
  box->setVelocity(velocity);
  return box;
}

/// Velocity that a body loses in some steps by the second, m/s2.
Vec3 deceleration(Ground& ground, RigidBody* body, int steps = 60)
{
  const Vec3 before = body->getVelocity();
  ground.step(steps);
  return (before - body->getVelocity()) / (steps * ground.simulation->getTimeStep());
}

const Vec3 DIAGONAL(std::sqrt(0.5), std::sqrt(0.5), 0);

class EveryModel : public testing::TestWithParam<FrictionModel::SolveType>
{};

TEST_P(EveryModel, BoundsTheForceInItsOwnShape)
{
  const Real weight = 0.3 * Scene::G; // a kilogram
  for (const int shape : {0, 1, 2, 3}) {
    Ground ground;
    ground.contact->setFrictionCoefficient(0.3);
    if (shape == 0)
      ground.contact->setFrictionModel(new kel::BoxFrictionModel(GetParam()));
    else if (shape == 1)
      ground.contact->setFrictionModel(new kel::ScaleBoxFrictionModel(GetParam()));
    else if (shape == 2)
      ground.contact->setFrictionModel(new kel::IterativeProjectedConeFriction(GetParam()));
    const Vec3 lost = deceleration(ground, addSlider(ground, DIAGONAL * 5));
    const Real expected = shape >= 2 ? weight : weight * std::sqrt(2.0); // a cone, as without a model
    EXPECT_NEAR(lost * DIAGONAL, expected, 0.01 * expected) << shape;
    EXPECT_LT(cross(lost, DIAGONAL).length(), 0.01 * expected) << shape;
  }
}

INSTANTIATE_TEST_SUITE_P(SolveTypes, EveryModel,
                         testing::Values(FrictionModel::DIRECT, FrictionModel::ITERATIVE,
                                         FrictionModel::SPLIT, FrictionModel::DIRECT_AND_ITERATIVE),
                         testing::PrintToStringParamName());

/// Turns the plane of friction and answers with a force of its own.
class OwnModel : public kel::BoxFrictionModel
{
public:
  OwnModel(const Vec3& primary, Real force) : m_primary(primary), m_force(force) {}

  void calculateTangentPlane(const kelCollide::Geometry*, const kelCollide::Geometry*, const Vec3&,
                             const Vec3& normal, Real, Vec3& u, Vec3& v) const override
  {
    u = m_primary;
    v = cross(normal, u);
  }
  Real calculateNormalForce(const kelCollide::Geometry* geometry1, const kelCollide::Geometry* geometry2,
                            const Vec3&, const Vec3&, Real, Real, std::size_t numPoints) const override
  {
    EXPECT_NE(geometry1, geometry2);
    return m_force / static_cast<Real>(numPoints);
  }

private:
  Vec3 m_primary;
  Real m_force;
};

TEST(Friction, TakesTheBoundOfACallback)
{
  Ground ground;
  ground.contact->setFrictionCoefficient(0.5);
  ground.contact->setFrictionModel(new OwnModel(Vec3(1, 0, 0), 8));
  RigidBody* box = addSlider(ground, Vec3(5, 0, 0));
  EXPECT_NEAR(deceleration(ground, box).x(), 0.5 * 8 / 2, 1e-3 * 2);
  Real force = 0;
  const kelCollide::GeometryContact contact = ground.simulation->getSpace()->getGeometryContacts().at(0);
  for (std::size_t i = 0; i < contact.getNumPoints(); ++i)
    force += contact.getPoint(i).localForce(kelCollide::ContactPoint::TANGENTIAL_FORCE_U);
  EXPECT_NEAR(force, 4, 4e-3); // on the plane
}

TEST(Friction, HasAPrimaryAndASecondaryDirection)
{
  for (const bool isCone : {false, true}) {
    Ground ground;
    ground.contact->setFrictionCoefficient(0.4, ContactMaterial::PRIMARY_DIRECTION);
    ground.contact->setFrictionCoefficient(0.1, ContactMaterial::SECONDARY_DIRECTION);
    if (!isCone) ground.contact->setFrictionModel(new kel::ScaleBoxFrictionModel);
    RigidBody* box = addSlider(ground, Vec3());
    const kelCollide::GeometryContact contact = ground.simulation->getSpace()->getGeometryContacts().at(0);
    const Vec3 u(contact.getPoint(0).tangentU());
    const Vec3 v(contact.getPoint(0).tangentV());
    box->setVelocity(u * 5);
    EXPECT_NEAR(deceleration(ground, box) * u, 0.4 * Scene::G, 4e-3 * Scene::G);
    box->setVelocity(v * 5);
    EXPECT_NEAR(deceleration(ground, box) * v, 0.1 * Scene::G, 1e-3 * Scene::G);
  }
}

TEST(Friction, OwnPlaneDecidesWhatIsPrimary)
{
  Ground ground;
  ground.contact->setFrictionCoefficient(0.5, ContactMaterial::PRIMARY_DIRECTION);
  ground.contact->setFrictionCoefficient(0, ContactMaterial::SECONDARY_DIRECTION);
  ground.contact->setFrictionModel(new OwnModel(DIAGONAL, 2 * Scene::G));
  RigidBody* box = addSlider(ground, Vec3(4, 0, 0));
  const Vec3 lost = deceleration(ground, box, 30);
  EXPECT_NEAR(lost * DIAGONAL, 0.5 * Scene::G, 5e-3 * Scene::G);
  EXPECT_NEAR(lost * cross(Vec3(0, 0, 1), DIAGONAL), 0, 1e-3);
}

TEST(Friction, ModelsMayAnswerNonsense)
{
  const Real nan = std::nan("");
  for (const Vec3& primary : {Vec3(), Vec3(0, 0, 1), Vec3(nan, 0, 0), Vec3(1e300, 1e300, 0)}) {
    for (const Real force : {nan, -5.0}) {
      Ground ground;
      ground.contact->setFrictionModel(new OwnModel(primary, force));
      RigidBody* box = addSlider(ground, Vec3(1, 0, 0));
      ground.step(30);
      EXPECT_NEAR(box->getVelocity().x(), 1, 1e-6);
      EXPECT_NEAR(box->getPosition().z(), 0.1, 1e-4);
    }
  }
}

TEST(Friction, MayBeWithoutBounds)
{
  for (const bool isBox : {false, true}) {
    Ground ground;
    const Real infinity = std::numeric_limits<Real>::infinity();
    ground.contact->setFrictionCoefficient(infinity);
    ground.contact->setRollingResistanceCoefficient(infinity);
    ground.contact->setAdhesion(infinity, 0);
    if (isBox) ground.contact->setFrictionModel(new OwnModel(Vec3(1, 0, 0), infinity));
    RigidBody* box = addSlider(ground, Vec3(5, 0, 0));
    ground.step(60);
    EXPECT_LT(box->getVelocity().length(), 1e-6);
  }
}

TEST(Friction, ViscousSurfacesSlideByTheForce)
{
  Ground ground;
  ground.contact->setFrictionCoefficient(10);
  ground.contact->setSurfaceViscosity(0.02); // of each of the four points
  RigidBody* box = addSlider(ground, Vec3());
  for (int i = 0; i < 480; ++i) {
    box->addForce(Vec3(8, 0, 0));
    ground.step(1);
  }
  EXPECT_NEAR(box->getVelocity().x(), 0.02 * 8 / 4, 1e-3 * 0.04);
}

TEST(Friction, CanBeSwitchedOff)
{
  Ground ground;
  ground.contact->setEnableSurfaceFriction(false);
  RigidBody* box = addSlider(ground, Vec3(3, 0, 0));
  ground.step(60);
  EXPECT_NEAR(box->getVelocity().x(), 3, 1e-9);
}

TEST(Friction, BeltCarriesABoxAtItsSpeed)
{
  Ground ground;
  ground.plane->setSurfaceVelocity(kel::Vec3f(0, -1.5F, 0));
  const RigidBody* box = addSlider(ground, Vec3());
  ground.step(240);
  EXPECT_NEAR(box->getVelocity().y(), -1.5, 1e-3 * 1.5);
}

TEST(Resistance, SlowsARollingBall)
{
  Ground ground;
  const Real radius = 0.2;
  const Real arm = 0.004;
  ground.contact->setFrictionCoefficient(1);
  ground.contact->setRollingResistanceCoefficient(arm);
  RigidBody* ball = ground.addBody(new Sphere(radius), Vec3(0, 0, radius), 3);
  ground.step(120);
  EXPECT_LT(ball->getVelocity().length(), 1e-6);
  ball->setVelocity(2, 0, 0);
  ball->setAngularVelocity(0, 2 / radius, 0);
  ground.step(10);
  const Real exact = 5.0 / 7 * arm * Scene::G / radius;
  EXPECT_NEAR(deceleration(ground, ball, 240).x(), exact, 0.01 * exact);
}

TEST(Resistance, SlowsASpinningBall)
{
  Ground ground;
  const Real radius = 0.2;
  ground.contact->setTwistingResistanceCoefficient(0.002);
  RigidBody* ball = ground.addBody(new Sphere(radius), Vec3(0, 0, radius), 3);
  ground.step(120);
  ball->setAngularVelocity(0, 0, 20);
  ground.step(120);
  const Real exact = 20 - 0.5 * 0.002 * Scene::G / (0.4 * radius * radius);
  EXPECT_NEAR(ball->getAngularVelocity().z(), exact, 0.01 * (20 - exact));
  ground.contact->setTwistingResistanceCoefficient(0);
  const Real before = ball->getAngularVelocity().z();
  ground.step(120);
  EXPECT_NEAR(ball->getAngularVelocity().z(), before, 1e-9);
}

} // namespace
