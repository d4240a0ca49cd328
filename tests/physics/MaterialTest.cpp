#include "Scene.h"
#include "kel/BoxFrictionModel.h"
#include "kel/IterativeProjectedConeFriction.h"
#include <gtest/gtest.h>

namespace {

using namespace kel;
using kelSDK::MaterialManager;

TEST(ContactMaterial, CombinesItsMaterials)
{
  const ref_ptr<Material> soft = new Material("soft", 0.9, 0.4);
  const ref_ptr<Material> hard = new Material("hard", 0.4, 0.9);
  soft->getBulkMaterial()->setYoungsModulus(1e7);
  hard->getBulkMaterial()->setYoungsModulus(3e7);
  soft->getBulkMaterial()->setDamping(0.3);
  soft->getSurfaceMaterial()->setAdhesion(5, 0.01);
  soft->getSurfaceMaterial()->setViscosity(0.2);
  hard->getSurfaceMaterial()->setViscosity(0.3);
  ref_ptr<ContactMaterial> both = new ContactMaterial(*soft, *hard);
  EXPECT_NEAR(both->getFrictionCoefficient(), 0.6, 1e-12);
  EXPECT_NEAR(both->getRestitution(), 0.6, 1e-12);
  EXPECT_NEAR(both->getYoungsModulus(), 0.75e7, 1);
  EXPECT_EQ(both->getDamping(), 0.3);
  EXPECT_EQ(both->getAdhesion(), 5);
  EXPECT_EQ(both->getAdhesiveOverlap(), 0.01);
  EXPECT_EQ(both->getSurfaceViscosity(1), 0.5);
  EXPECT_TRUE(both->getSurfaceFrictionEnabled());

  const ref_ptr<Material> copy = new Material("ice", soft.get());
  EXPECT_EQ(copy->getBulkMaterial()->getYoungsModulus(), 1e7);
  copy->getSurfaceMaterial()->setFrictionEnabled(false);
  EXPECT_TRUE(soft->getSurfaceMaterial()->getFrictionEnabled());
  both = new ContactMaterial(*copy, *hard);
  EXPECT_FALSE(both->getSurfaceFrictionEnabled());
}

TEST(MaterialManager, PrefersWhatWasAdded)
{
  const ref_ptr<MaterialManager> manager = new MaterialManager;
  const ref_ptr<Material> wood = new Material("wood");
  const ref_ptr<Material> steel = new Material("steel");
  EXPECT_TRUE(manager->add(steel.get()));
  EXPECT_FALSE(manager->add(steel.get()));
  EXPECT_EQ(manager->getMaterial("steel"), steel.get());
  EXPECT_EQ(manager->getContactMaterial(wood.get(), steel.get()), nullptr);
  const ref_ptr<ContactMaterial> added = new ContactMaterial(*steel, *wood);
  EXPECT_TRUE(manager->add(added.get()));
  EXPECT_EQ(manager->getContactMaterial(wood.get(), steel.get()), added.get());
  EXPECT_EQ(manager->getOrCreateContactMaterial(steel.get(), wood.get()), added.get());
  const ref_ptr<ContactMaterial> other = new ContactMaterial(*wood, *steel);
  EXPECT_FALSE(manager->add(other.get()));
  EXPECT_FALSE(manager->remove(other.get()));
  EXPECT_TRUE(manager->remove(added.get()));
  ContactMaterial* created = manager->getOrCreateContactMaterial(steel.get(), wood.get());
  EXPECT_NE(created, nullptr);
  EXPECT_FALSE(manager->add(other.get()));
  EXPECT_EQ(manager->getOrCreateContactMaterial(nullptr, wood.get()), nullptr);
}

ContactMaterial* materialOfOnlyContact(const Scene& scene)
{
  const auto& contacts = scene.simulation->getSpace()->getGeometryContacts();
  return contacts.size() == 1 ? contacts[0].getMaterial() : nullptr;
}

TEST(MaterialManager, FollowsMaterialsUnlessTold)
{
  Scene scene;
  scene.addGeometry(new kelCollide::Plane);
  scene.addBody(new kelCollide::Box(0.5, 0.5, 0.5), kel::Vec3(0, 0, 0.5), 1);
  scene.step(1);
  ref_ptr<ContactMaterial> implicit = materialOfOnlyContact(scene);
  ASSERT_NE(implicit, nullptr);
  EXPECT_TRUE(implicit->isImplicit());
  scene.setFriction(0.1);
  scene.step(1);
  EXPECT_EQ(materialOfOnlyContact(scene), implicit.get());
  EXPECT_NEAR(implicit->getFrictionCoefficient(), 0.1, 1e-12);

  ref_ptr<ContactMaterial> told = new ContactMaterial(*scene.material, *scene.material);
  told->setFrictionCoefficient(0.3);
  EXPECT_TRUE(scene.simulation->add(told.get()));
  scene.setFriction(0.2);
  scene.step(1);
  EXPECT_EQ(materialOfOnlyContact(scene), told.get());
  EXPECT_EQ(told->getFrictionCoefficient(), 0.3);
  // The contact keeps it until the next update, though nobody else does.
  ContactMaterial* last = told.get();
  EXPECT_TRUE(scene.simulation->remove(last));
  told = nullptr;
  EXPECT_EQ(materialOfOnlyContact(scene)->getFrictionCoefficient(), 0.3);
  scene.step(1);
  EXPECT_NEAR(materialOfOnlyContact(scene)->getFrictionCoefficient(), 0.2, 1e-12);
}

TEST(MaterialManager, LetsUnusedMaterialsGo)
{
  Scene scene;
  scene.addGeometry(new kelCollide::Plane);
  kel::RigidBody* box = scene.addBody(new kelCollide::Box(0.5, 0.5, 0.5), kel::Vec3(0, 0, 0.5), 1);
  const ref_ptr<Material> shortLived = new Material("short-lived");
  box->getGeometries()[0]->setMaterial(shortLived.get());
  scene.step(1);
  EXPECT_GT(shortLived->getReferenceCount(), 2U);
  box->getGeometries()[0]->setMaterial(nullptr);
  scene.step(1);
  EXPECT_EQ(shortLived->getReferenceCount(), 1U);
}

TEST(FrictionModel, TellsWhatItDoes)
{
  const ref_ptr<kel::BoxFrictionModel> box = new kel::BoxFrictionModel;
  EXPECT_EQ(box->getSolveType(), FrictionModel::SPLIT);
  EXPECT_EQ(box->getCallbackMask(), FrictionModel::INITIALIZE);
  const ref_ptr<kel::IterativeProjectedConeFriction> cone =
      new kel::IterativeProjectedConeFriction(FrictionModel::ITERATIVE);
  EXPECT_EQ(cone->getSolveType(), FrictionModel::ITERATIVE);
  EXPECT_EQ(cone->getCallbackMask(), FrictionModel::SCALE_BOUNDS | FrictionModel::ITERATIVE_PROJECTION);
  const kel::Vec3 normal = kel::Vec3(1, 2, 3).normal();
  kel::Vec3 u;
  kel::Vec3 v;
  box->calculateTangentPlane(nullptr, nullptr, kel::Vec3(), normal, 0, u, v);
  EXPECT_NEAR(cross(u, v) * normal, 1, 1e-12);
  EXPECT_NEAR(u * normal, 0, 1e-12);
}

} // namespace
