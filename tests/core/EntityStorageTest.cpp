#include "kelData/EntityStorage.h"
#include <cstdint>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

using kel::ref_ptr;
using kelData::Attribute;
using kelData::EntityModel;
using kelData::EntityPtr;
using kelData::EntityStorage;

struct Ball
{
  ref_ptr<EntityModel> model = new EntityModel("Ball");
  Attribute* mass = Attribute::create<double>("mass", 2.5);
  Attribute* flags = Attribute::create<std::uint8_t>("flags", 7);
  ref_ptr<EntityStorage> storage;

  Ball()
  {
    model->addAttribute(mass);
    model->addAttribute(flags);
    storage = new EntityStorage(model.get());
  }
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

TEST(EntityStorage, HolesAreReusedWithDefaultsAndNewIds)
{
  Ball ball;
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

TEST(EntityStorage, ModelsInheritAttributes)
{
  Ball ball;
  ref_ptr<EntityModel> derived = new EntityModel("Bouncing");
  derived->setBaseEntity(ball.model.get());
  Attribute* bounce = Attribute::create<float>("bounce", 0.5F);
  derived->addAttribute(bounce);
  ref_ptr<EntityStorage> storage = new EntityStorage(derived.get());
  storage->createInstance();
  EXPECT_EQ(storage->data<double>(ball.mass)[0], 2.5);
  EXPECT_EQ(storage->data<float>(bounce)[0], 0.5F);
  EXPECT_TRUE(derived->isDerivedFrom(ball.model.get()));
  EXPECT_EQ(derived->getNumBytes(), 13u);
  EXPECT_THROW(ball.storage->data<float>(bounce), std::logic_error);
  EXPECT_THROW(storage->data<int>(bounce), std::logic_error);
  const ref_ptr<Attribute> late = Attribute::create<int>("late");
  EXPECT_THROW(derived->addAttribute(late.get()), std::logic_error);
}

} // namespace
