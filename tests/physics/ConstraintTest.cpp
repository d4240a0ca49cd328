#include "Scene.h"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using kel::Constraint;
using kel::ConstraintRow;
using kel::ElementaryConstraint;
using kel::Real;
using kel::RigidBody;
using kel::UInt32;
using kel::Vec3;
using kelCollide::Box;

/// Holds a point of a body at a place of the world.
class Pin : public ElementaryConstraint
{
public:
  Pin(RigidBody& body, const Vec3& localPoint) : m_body(body), m_point(localPoint), m_place(worldPoint()) {}

  UInt32 getNumRows() const override { return 3; }
  void rows(Real, std::vector<ConstraintRow>& buffer) override
  {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      ConstraintRow row = prototype;
      row.bodies[0] = &m_body;
      row.linear[0][axis] = 1;
      row.angular[0] = cross(worldPoint() - m_body.getCmPosition(), row.linear[0]);
      row.target = worldPoint()[axis] - m_place[axis];
      row.force = &force[axis];
      buffer.push_back(row);
    }
  }
  Vec3 worldPoint() const { return m_body.getTransform().transformPoint(m_point); }
  Vec3 violation() const { return worldPoint() - m_place; }

  ConstraintRow prototype;
  Vec3 force;

private:
  RigidBody& m_body;
  Vec3 m_point;
  Vec3 m_place;
};

/// Drives a body along x against another one, or the world.
class Motor : public ElementaryConstraint
{
public:
  Motor(RigidBody& body, RigidBody* other, Real speed, Real bound) : m_body(body), m_other(other)
  {
    m_row.form = ConstraintRow::NON_HOLONOMIC;
    m_row.target = speed;
    m_row.lowerForce = -bound;
    m_row.upperForce = bound;
  }

  UInt32 getNumRows() const override { return 1; }
  void rows(Real, std::vector<ConstraintRow>& buffer) override
  {
    ConstraintRow row = m_row;
    row.bodies[0] = &m_body;
    row.bodies[1] = m_other;
    row.linear[0] = Vec3(1, 0, 0);
    row.linear[1] = Vec3(-1, 0, 0);
    row.force = &force;
    buffer.push_back(row);
  }

  Real force = 0;

private:
  RigidBody& m_body;
  RigidBody* m_other;
  ConstraintRow m_row;
};

class Bond : public Constraint
{
public:
  Bond(ElementaryConstraint* elementary, RigidBody* body1, RigidBody* body2 = nullptr)
      : Constraint(body1, body2)
  {
    addElementaryConstraint("only", elementary);
  }
};

class PinForms : public testing::TestWithParam<ConstraintRow::Form>
{};

TEST_P(PinForms, CarriesTheWeightWithTheGivenCompliance)
{
  Scene scene;
  RigidBody* body = scene.addBody(new Box(0.1, 0.1, 0.1), Vec3(0, 0, 0), 2);
  auto* pin = new Pin(*body, Vec3(0, 0, 0));
  pin->prototype.form = GetParam();
  pin->prototype.compliance = 1e-3;
  scene.simulation->add(new Bond(pin, body));
  EXPECT_EQ(body->getNumConstraints(), 1u);
  scene.step(600);
  const Real weight = 2 * Scene::G;
  EXPECT_NEAR(pin->force.z(), weight, 1e-4 * weight);
  EXPECT_NEAR(-pin->violation().z(), weight * 1e-3, 1e-3 * weight * 1e-3);
}

INSTANTIATE_TEST_SUITE_P(Forms, PinForms, testing::Values(ConstraintRow::AVERAGED, ConstraintRow::BACKWARD));

TEST(Constraint, MotorReachesItsSpeedOrItsForce)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* first = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  RigidBody* second = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 5, 0), 1);
  kel::ref_ptr<Motor> strong = new Motor(*first, second, 4, 1e6);
  kel::ref_ptr<Constraint> bond = new Bond(strong.get(), first, second);
  scene.simulation->add(bond.get());
  scene.step(1);
  EXPECT_NEAR(first->getVelocity().x(), 1, 1e-6);
  EXPECT_NEAR(second->getVelocity().x(), -3, 1e-6);
  EXPECT_NEAR(strong->force, 3 * 1 * 60, 1e-4 * 180);
  EXPECT_TRUE(scene.simulation->remove(bond.get()));
  EXPECT_FALSE(first->hasConstraints());

  kel::ref_ptr<Motor> weak = new Motor(*first, nullptr, 100, 6);
  scene.simulation->add(new Bond(weak.get(), first));
  const Real before = first->getVelocity().x();
  scene.step(60);
  EXPECT_NEAR(first->getVelocity().x(), before + 6.0 / 3, 1e-12);
  EXPECT_NEAR(weak->force, 6, 1e-9);
  weak->setEnable(false);
  scene.step(60);
  EXPECT_NEAR(first->getVelocity().x(), before + 6.0 / 3, 1e-12);
}

TEST(Constraint, MovesWithAKinematicBody)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* train = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  train->setMotionControl(RigidBody::KINEMATICS);
  train->setVelocity(2, 0, 0);
  RigidBody* wagon = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 5, 0), 1);
  scene.simulation->add(new Bond(new Motor(*wagon, train, 0, 1e6), wagon, train));
  scene.step(2);
  EXPECT_NEAR(wagon->getVelocity().x(), 2, 1e-6);
}

} // namespace
