#include "kelData/EntityStorage.h"
#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace {

using kel::ref_ptr;
using namespace kelData;

struct Ball
{
  ref_ptr<EntityModel> model = new EntityModel("Ball");
  Attribute* mass = Attribute::create<double>("mass", 2.5);
  Attribute* flags = Attribute::create<std::uint8_t>("flags", 7);
  ref_ptr<EntityStorage> storage;

  explicit Ball(EntityStorage::Rows rows = EntityStorage::Rows::FREE)
  {
    model->addAttribute(mass);
    model->addAttribute(flags);
    storage = new EntityStorage(model.get(), rows);
  }
  double& massOf(EntityPtr ball) const { return storage->data<double>(mass)[ball.calculateIndex()]; }
};

TEST(EntityStorage, RowsNeverMoveWhileItGrows)
{
  Ball ball;
  const EntityPtr first = ball.storage->createInstance();
  double* value = ball.storage->data<double>(ball.mass) + first.calculateIndex();
  *value = 42;
  for (int i = 0; i < 100000; ++i) ball.storage->createInstance();
  EXPECT_EQ(value, ball.storage->data<double>(ball.mass) + first.calculateIndex());
  EXPECT_EQ(*value, 42);
  EXPECT_EQ(ball.storage->data<double>(ball.mass)[100000], 2.5);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(ball.storage->data<std::uint8_t>(ball.flags)) % 16, 0u);
}

TEST(EntityStorage, HolesOfHeldRowsAreReusedWithDefaultsAndNewIds)
{
  Ball ball(EntityStorage::Rows::HELD);
  EntityPtr a = ball.storage->createInstance();
  const EntityPtr b = ball.storage->createInstance();
  const kel::Index hole = a.calculateIndex();
  ball.storage->data<double>(ball.mass)[hole] = 99;
  a.destroy();
  EXPECT_FALSE(a.isValid());
  EXPECT_EQ(ball.storage->indexToId(hole), EntityPtr::NO_ID);
  EXPECT_EQ(ball.storage->size(), 1u);
  EXPECT_TRUE(b.isValid());

  const EntityPtr c = ball.storage->createInstance();
  EXPECT_EQ(c.calculateIndex(), hole);
  EXPECT_NE(c.getId(), a.getId());
  EXPECT_FALSE(a.isValid());
  EXPECT_EQ(ball.storage->data<double>(ball.mass)[hole], 2.5);
  a.destroy();
  EXPECT_TRUE(c.isValid());
  ball.storage->verifyConsistency();
}

TEST(EntityStorage, ManyInstancesLieInOneRange)
{
  Ball ball;
  ball.storage->sizeParameter = new kelData::ValueT<kel::UInt>();
  ball.storage->createInstance();
  const kelData::EntityRange range = ball.storage->createInstances(5);
  EXPECT_EQ(range.begin, 1u);
  EXPECT_EQ(range.size(), 5u);
  EXPECT_EQ(range.at(4).calculateIndex(), 5u);
  EXPECT_THROW(range.at(5), std::out_of_range);
  EXPECT_EQ(ball.storage->sizeParameter->get(), 6u);
  ball.storage->resize(2);
  EXPECT_THROW(range.at(1), std::out_of_range);
  EXPECT_EQ(ball.storage->size(), 2u);
  ball.storage->resize(9, false);
  EXPECT_EQ(ball.storage->getInstances().size(), 9u);
  EXPECT_EQ(ball.storage->sizeParameter->get(), 9u);
  EXPECT_THROW(ball.storage->createInstances(std::size_t(1) << 40), std::length_error);
  EXPECT_EQ(ball.storage->size(), 9u);
  EXPECT_GE(ball.storage->presize(1000, 500), 1500u);
  EXPECT_EQ(ball.storage->presize(10, 5000), ball.storage->capacity());
  EXPECT_EQ(ball.storage->getNumBytes(), ball.storage->capacity() * 9);
  ball.storage->verifyConsistency();
}

TEST(EntityStorage, InstancesGoToStoragesWithOtherAttributes)
{
  Ball ball;
  ref_ptr<EntityModel> model = new EntityModel("Heavy");
  Attribute* mass = Attribute::create<double>("mass", 1.0);
  Attribute* age = Attribute::create<double>("age", 3.0);
  model->addAttribute(age);
  model->addAttribute(mass);
  model->addAttribute(Attribute::create<float>("flags", 4.0F)); // another type under a known name
  const ref_ptr<EntityStorage> heavy = new EntityStorage(model.get());
  EntityPtr one = ball.storage->createInstance();
  ball.massOf(one) = 77;
  const EntityPtr old = one, copy = one.copy(*heavy);
  one.transfer(*heavy);
  EXPECT_FALSE(old.isValid());
  EXPECT_TRUE(ball.storage->empty());
  for (const EntityPtr& there : {one, copy}) {
    EXPECT_EQ(there.getStorage(), heavy.get());
    EXPECT_EQ(heavy->data<double>(mass)[there.calculateIndex()], 77);
    EXPECT_EQ(heavy->data<double>(age)[there.calculateIndex()], 3);
    EXPECT_EQ(heavy->data<float>(heavy->getAttribute("flags"))[there.calculateIndex()], 4);
  }
  heavy->data<double>(mass)[copy.calculateIndex()] = 5;
  EntityPtr(one).copyAttributes(copy);
  EXPECT_EQ(heavy->data<double>(mass)[one.calculateIndex()], 5);
  EXPECT_EQ(heavy->copyInstance(copy.getId()).calculateIndex(), 2u);
  EXPECT_THROW(heavy->copyInstance(old), std::logic_error);
  EXPECT_THROW(heavy->transferInstance(old), std::logic_error);
}

TEST(EntityStorage, TextsLiveAndEndWithTheirRows)
{
  const kel::String text = "long enough to need memory of its own, of course";
  ref_ptr<EntityModel> model = new EntityModel("Named");
  auto* label = new kelData::ScalarAttribute("label", kelData::getType("String"));
  model->addAttribute(label);
  for (const auto rows : {EntityStorage::Rows::FREE, EntityStorage::Rows::HELD}) {
    const ref_ptr<EntityStorage> storage = new EntityStorage(model.get(), rows);
    storage->createInstances(3);
    kel::String* labels = storage->data<kel::String>(label);
    labels[2] = text;
    storage->destroyInstance(storage->indexToId(0));
    EXPECT_EQ(labels[rows == EntityStorage::Rows::FREE ? 0 : 2], text);
    storage->createInstance();
    EXPECT_EQ(labels[rows == EntityStorage::Rows::FREE ? 2 : 0], "");
    EXPECT_EQ(storage->getInstances().at(0).copy().isValid(), true);
  }
}

TEST(EntityStorage, CustomAttributesJoinRowsThatExist)
{
  Ball ball;
  ball.storage->createInstances(2);
  const ref_ptr<kelData::ValueT<kel::UInt>> three = new kelData::ValueT<kel::UInt>(3);
  const ref_ptr<kelData::ValueT<float>> half = new kelData::ValueT<float>(0.5F);
  const ref_ptr<Attribute> triple =
      new kelData::ScalarAttribute("triple", kelData::getType("Real"), nullptr, three.get(), half.get());
  ball.storage->addCustomAttribute(triple.get());
  EXPECT_THROW(ball.storage->addCustomAttribute(triple.get()), std::logic_error);
  EXPECT_THROW(ball.storage->addCustomAttribute(Attribute::create<int>("mass")), std::logic_error);
  ball.storage->createInstance();
  EXPECT_EQ(triple->getElementSize(), 24u);
  for (int i = 0; i < 9; ++i) EXPECT_EQ(ball.storage->data<double>(triple.get())[i], 0.5);
  EXPECT_EQ(ball.storage->getBuffer("triple")->getElementArraySize(), 3u);
  EXPECT_EQ(ball.model->getAttribute("triple"), nullptr);
  ball.storage->verifyConsistency();
}

TEST(EntityStorage, ThreadsMayShareStorages)
{
  constexpr int ROUNDS = 2000;
  Ball first, second;
  EntityModel::setThreadSafe(true);
  const auto work = [](EntityStorage& from, EntityStorage& to) {
    for (int i = 0; i < ROUNDS; ++i) {
      EntityPtr one = from.createInstance();
      one.transfer(to);
      one.copy(from).destroy();
      if (i % 2) one.destroy();
    }
  };
  std::thread there([&] { work(*first.storage, *second.storage); });
  work(*second.storage, *first.storage);
  there.join();
  EntityModel::setThreadSafe(false);
  for (EntityStorage* storage : {first.storage.get(), second.storage.get()}) {
    storage->verifyConsistency();
    EXPECT_EQ(storage->size(), std::size_t(ROUNDS / 2));
  }
}

TEST(EntityStorage, FaultsAreFound)
{
  Ball ball;
  ball.storage->createInstances(3);
  auto& second = const_cast<EntityPtr&>(ball.storage->getInstances().at(1));
  const EntityPtr right = second;
  for (const EntityPtr& wrong : {EntityPtr(), EntityPtr(ball.storage.get(), 0), EntityPtr(nullptr, 1)}) {
    second = wrong;
    EXPECT_THROW(ball.storage->verifyConsistency(), std::logic_error);
  }
  second = right;
  ball.storage->verifyConsistency();
}

TEST(EntityStorage, ClearInvalidatesEveryId)
{
  for (const bool table : {true, false}) {
    Ball ball;
    ball.storage->setUseInstanceTable(table);
    const EntityPtr a = ball.storage->createInstance();
    ball.storage->clear();
    EXPECT_FALSE(a.isValid());
    EXPECT_TRUE(ball.storage->empty());
    EXPECT_EQ(ball.storage->createInstance().calculateIndex(), 0u);
    EXPECT_THROW(ball.storage->setUseInstanceTable(!table), std::logic_error);
  }
}

} // namespace
