#include "kel/RigidBody.h"
#include "kelCollide/Box.h"
#include "kelCollide/ShapeGroup.h"
#include "kelCollide/Sphere.h"
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;
using kelCollide::Box;
using kelCollide::Geometry;

const Quat QUARTER_TURN(std::numbers::pi / 2, Vec3(0, 0, 1));

void expectNear(const Vec3& a, const Vec3& b) { EXPECT_LT((a - b).length(), 1e-9); }

void expectNear(const SPDMatrix3x3& a, const SPDMatrix3x3& b)
{
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) EXPECT_NEAR(a(i, j), b(i, j), 1e-9 * b(i, i) + 1e-9) << i << j;
}

TEST(RigidBody, MassFollowsTheGeometries)
{
  ref_ptr<RigidBody> body = new RigidBody(new Geometry(new Box(0.5, 0.5, 0.5)));
  const MassProperties& mass = *body->getMassProperties();
  EXPECT_NEAR(mass.getMass(), 1000, 1e-9);
  expectNear(mass.getPrincipalInertiae(), Vec3(1000.0 / 6));

  ref_ptr<Geometry> second = new Geometry(new Box(0.5, 0.5, 0.5));
  body->add(second.get(), AffineMatrix4x4::translate(2, 0, 0));
  EXPECT_NEAR(mass.getMass(), 2000, 1e-9);
  expectNear(body->getCmLocalTranslate(), Vec3(1, 0, 0));
  expectNear(mass.getPrincipalInertiae(), Vec3(2000.0 / 6, 2000.0 / 6 + 2000, 2000.0 / 6 + 2000));

  EXPECT_TRUE(body->getMassProperties()->setMass(20));
  expectNear(mass.getPrincipalInertiae(), Vec3(20.0 / 6, 20.0 / 6 + 20, 20.0 / 6 + 20));
  EXPECT_TRUE(body->remove(second.get()));
  EXPECT_EQ(mass.getMass(), 20);
  expectNear(mass.getPrincipalInertiae(), Vec3(20.0 / 6));
  EXPECT_FALSE(body->getMassProperties()->setMass(0));
  EXPECT_FALSE(body->getMassProperties()->setInertiaTensor(Vec3(1, -1, 1)));
}

TEST(RigidBody, GroupsWeighLikeTheirParts)
{
  // An L of two boxes, once as two geometries and once as two shapes of a turned geometry.
  const AffineMatrix4x4 place(Quat(0.3, Vec3(1, 2, 3)), Vec3(4, 5, 6));
  const AffineMatrix4x4 arm(QUARTER_TURN, Vec3(1, 0.5, 0.25));
  ref_ptr<RigidBody> two = new RigidBody;
  two->add(new Geometry(new Box(1, 0.2, 0.1)), place);
  two->add(new Geometry(new Box(0.5, 0.3, 0.2)), arm * place);
  ref_ptr<RigidBody> one = new RigidBody;
  ref_ptr<Geometry> geometry = new Geometry(new Box(1, 0.2, 0.1));
  EXPECT_TRUE(geometry->add(new Box(0.5, 0.3, 0.2), arm));
  one->add(geometry.get(), place);

  EXPECT_TRUE(geometry->getShape()->isGroup());
  EXPECT_NEAR(one->getMassProperties()->getMass(), two->getMassProperties()->getMass(), 1e-9);
  expectNear(one->getCmLocalTranslate(), two->getCmLocalTranslate());
  expectNear(one->getMassProperties()->getInertiaTensor(), two->getMassProperties()->getInertiaTensor());
  // The tensor of a turned box, checked against itself in its own axes.
  EXPECT_GT(std::abs(one->getMassProperties()->getInertiaTensor()(0, 1)), 1);
}

TEST(RigidBody, FramesMoveTogether)
{
  ref_ptr<Geometry> geometry = new Geometry(new Box(1, 1, 1));
  ref_ptr<RigidBody> body = new RigidBody;
  body->setCmLocalTranslate(Vec3(0, 1, 0));
  body->add(geometry.get(), AffineMatrix4x4::translate(3, 0, 0));
  body->setRotation(QUARTER_TURN);
  body->setPosition(0, 0, 2);
  expectNear(geometry->getPosition(), Vec3(0, 3, 2));
  expectNear(body->getCmPosition(), Vec3(-1, 0, 2));
  body->setCmPosition(Vec3(0, 0, 0));
  expectNear(body->getPosition(), Vec3(1, 0, 0));
  body->setCmPosition(body->getPosition(), false);
  expectNear(body->getPosition(), Vec3(1, 0, 0));
  expectNear(body->getCmLocalTranslate(), Vec3());

  EXPECT_FALSE(body->add(geometry.get()));
  EXPECT_TRUE(body->remove(geometry.get()));
  expectNear(geometry->getPosition(), Vec3(1, 3, 0));
  EXPECT_EQ(geometry->getRigidBody(), nullptr);
  body->setPosition(9, 9, 9);
  expectNear(geometry->getPosition(), Vec3(1, 3, 0));
}

TEST(RigidBody, ForcesAtPointsTurn)
{
  ref_ptr<RigidBody> body = new RigidBody;
  body->setPosition(1, 0, 0);
  body->addForceAtPosition(Vec3(0, 2, 0), Vec3(4, 0, 0));
  expectNear(body->getForce(), Vec3(0, 2, 0));
  expectNear(body->getTorque(), Vec3(0, 0, 6));
  body->setHandleAsParticle(true);
  body->addForceAtLocalPosition(Vec3(0, 2, 0), Vec3(3, 0, 0));
  expectNear(body->getForce(), Vec3(0, 4, 0));
  expectNear(body->getTorque(), Vec3(0, 0, 6));
}

TEST(RigidBody, StateBitsAreIndependent)
{
  ref_ptr<RigidBody> body = new RigidBody;
  EXPECT_EQ(body->getMotionControl(), RigidBody::DYNAMICS);
  EXPECT_TRUE(body->getEnable());
  body->setIsPowerlineBody(true);
  body->setHandleAsParticle(true);
  body->setMotionControl(RigidBody::STATIC);
  body->setIsPowerlineBody(false);
  EXPECT_EQ(body->getMotionControl(), RigidBody::STATIC);
  EXPECT_TRUE(body->getEnable());
  EXPECT_TRUE(body->getHandleAsParticle());
}

TEST(Shape, SurvivesItsGeometryAndTakesOneAtATime)
{
  ref_ptr<kelCollide::Shape> shape = new kelCollide::Sphere(1);
  ref_ptr<Geometry> first = new Geometry(shape.get());
  ref_ptr<Geometry> second = new Geometry;
  EXPECT_EQ(shape->getGeometry(), first.get());
  EXPECT_FALSE(second->add(shape.get()));
  first = nullptr;
  EXPECT_EQ(shape->getGeometry(), nullptr);
  EXPECT_TRUE(second->add(shape.get()));
  second->setPosition(1, 2, 3);
  second->updateBoundingVolume();
  expectNear(second->getBoundingVolume()->min(), Vec3(0, 1, 2));
  EXPECT_TRUE(second->remove(shape.get()));
  EXPECT_FALSE(second->remove(shape.get()));
}

} // namespace
