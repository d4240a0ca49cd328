#include "Scene.h"
#include "kel/LockJoint.h"
#include <cmath>
#include <gtest/gtest.h>

namespace {

using namespace kel;
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

class Bond : public Constraint
{
public:
  Bond(ElementaryConstraint* elementary, RigidBody* body) : Constraint(body)
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
  const kel::ref_ptr<Constraint> bond = new Bond(pin, body);
  scene.simulation->add(bond.get());
  EXPECT_EQ(body->getNumConstraints(), 1u);
  scene.step(600);
  const Real weight = 2 * Scene::G;
  EXPECT_NEAR(pin->force.z(), weight, 1e-4 * weight);
  EXPECT_NEAR(-pin->violation().z(), weight * 1e-3, 1e-3 * weight * 1e-3);
  EXPECT_TRUE(scene.simulation->remove(bond.get()));
  EXPECT_FALSE(body->hasConstraints());
}

INSTANTIATE_TEST_SUITE_P(Forms, PinForms, testing::Values(ConstraintRow::AVERAGED, ConstraintRow::BACKWARD),
                         [](const auto& test) {
                           return test.param == ConstraintRow::AVERAGED ? "Averaged" : "Backward";
                         });

TEST(Constraint, MovesWithAKinematicBody)
{
  Scene scene;
  scene.simulation->setUniformGravity(Vec3());
  RigidBody* train = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0), 3);
  train->setMotionControl(RigidBody::KINEMATICS);
  train->setVelocity(2, 0, 0);
  RigidBody* wagon = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 5, 0), 1);
  scene.simulation->add(new kel::LockJoint(wagon, train));
  scene.step(60);
  EXPECT_NEAR(wagon->getVelocity().x(), 2, 1e-6);
}

} // namespace
