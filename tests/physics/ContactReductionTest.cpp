#include "Scene.h"
#include "kelCollide/ContactReducer.h"
#include "kelCollide/ShapeGroup.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <vector>

namespace {

using namespace kel;
using namespace kelCollide;

/// A table of 5 by 5 legs on the ground, in one geometry or in one each.
struct Table : Ground
{
  RigidBody* body;

  explicit Table(bool isOneGeometry) : Ground(1.0 / 60)
  {
    const kel::ref_ptr<RigidBody> table = new RigidBody;
    kel::ref_ptr<Geometry> geometry;
    for (int i = 0; i < 25; ++i) {
      const AffineMatrix4x4 place = AffineMatrix4x4::translate(i % 5 - 2, i / 5 - 2, 0);
      if (!geometry || !isOneGeometry) {
        geometry = new Geometry;
        geometry->setMaterial(material.get());
        table->add(geometry.get());
      }
      geometry->add(new Box(0.1, 0.1, 0.5), place);
    }
    table->getMassProperties()->setMass(100);
    table->setPosition(0, 0, 0.5);
    body = table.get();
    simulation->add(body);
  }

  std::vector<ContactPoint> enabledPoints() const
  {
    std::vector<ContactPoint> found;
    for (const GeometryContact& touching : simulation->getSpace()->getGeometryContacts())
      for (std::size_t i = 0; i < touching.getNumPoints(); ++i)
        if (touching.getPoint(i).enabled()) found.push_back(touching.getPoint(i));
    return found;
  }
};

TEST(ContactReduction, FollowsTheMode)
{
  for (const bool isOneGeometry : {true, false}) {
    Table table(isOneGeometry);
    table.contact->setContactReductionMode(ContactMaterial::REDUCE_NONE);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), 100U);
    table.contact->setContactReductionMode(ContactMaterial::REDUCE_GEOMETRY);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), isOneGeometry ? 9U : 100U);
    table.contact->setContactReductionMode(ContactMaterial::REDUCE_ALL);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), 9U);
    table.contact->setContactReductionBinResolution(2);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), 4U);
    table.simulation->getSpace()->setContactReductionThreshold(100);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), 100U);
    table.simulation->getSpace()->setContactReductionThreshold(99);
    table.simulation->getSpace()->setEnableContactReduction(false);
    table.step(1);
    EXPECT_EQ(table.enabledPoints().size(), 100U);
  }
}

TEST(ContactReduction, LeavesTheTableStandingOnItsCorners)
{
  Table table(true);
  table.body->addForceAtPosition(Vec3(0, 0, -50), Vec3(2, 2, 0.5));
  table.step(600);
  const std::vector<ContactPoint> points = table.enabledPoints();
  EXPECT_LE(points.size(), 9U);
  Real force = 0;
  Real reach = 10;
  for (const ContactPoint& point : points) force += point.getNormalForceMagnitude();
  for (const Vec3& corner :
       {Vec3(2.1, 2.1, 0), Vec3(2.1, -2.1, 0), Vec3(-2.1, 2.1, 0), Vec3(-2.1, -2.1, 0)}) {
    reach = 10;
    for (const ContactPoint& point : points) reach = std::min(reach, (point.point() - corner).length());
    EXPECT_LT(reach, 1e-3);
  }
  EXPECT_NEAR(force, 100 * Scene::G, 1e-4 * 100 * Scene::G);
  EXPECT_NEAR(table.body->getPosition().z(), 0.5, 1e-4);
  EXPECT_LT(table.body->getAngularVelocity().length(), 1e-6);
}

TEST(ContactReducer, LeavesTheDeepestOfEachBin)
{
  Table table(true);
  table.contact->setContactReductionMode(ContactMaterial::REDUCE_NONE);
  table.step(1);
  std::vector<ContactPoint> rows = table.enabledPoints();
  kel::Vector<ContactPoint*> points;
  for (ContactPoint& row : rows) points.push_back(&row);
  rows[33].depth() = 0.01;
  rows[34].normal() = kel::Vec3f(1, 0, 0);
  EXPECT_EQ(ContactReducer::reduce(points, 1), 98U);
  ASSERT_EQ(points.size(), 2U);
  EXPECT_EQ(points[0], &rows[33]);
  EXPECT_EQ(points[1], &rows[34]);
  EXPECT_EQ(ContactReducer::reduce(points, 4), 0U);
  points.resize(0);
  EXPECT_EQ(ContactReducer::reduce(points, 4), 0U);
}

} // namespace
