#include "kel/Uuid.h"
#include "kelData/EntityStorage.h"
#include <gtest/gtest.h>
#include <sstream>
#include <stdexcept>

namespace {

using kel::ref_ptr;
using namespace kelData;

TEST(EntityModel, InheritsAttributesFirst)
{
  ref_ptr<EntityModel> base = new EntityModel("Base"), derived = new EntityModel("Derived");
  Attribute* mass = Attribute::create<double>("mass", 2.5);
  base->addAttribute(mass);
  derived->setBaseEntity(base.get());
  Attribute* bounce = Attribute::create<float>("bounce", 0.5F);
  derived->addAttribute(bounce);
  EXPECT_EQ(derived->getAttributes().front().get(), mass);
  EXPECT_EQ(derived->getAttributes().back().get(), bounce);
  EXPECT_TRUE(derived->isDerivedFrom(base.get()));
  EXPECT_FALSE(base->isDerivedFrom(derived.get()));
  EXPECT_EQ(derived->getNumBytes(), 12u);
  EXPECT_EQ(mass->getEntity(), base.get());

  ref_ptr<EntityStorage> storage = new EntityStorage(derived.get());
  storage->createInstance();
  EXPECT_EQ(storage->data<double>(mass)[0], 2.5);
  EXPECT_EQ(storage->data<float>(bounce)[0], 0.5F);
  EXPECT_THROW(storage->data<int>(bounce), std::logic_error);
  EXPECT_THROW(storage->data<float>(nullptr), std::logic_error);
  const ref_ptr<Attribute> late = Attribute::create<int>("late");
  for (EntityModel* model : {base.get(), derived.get()})
    EXPECT_THROW(model->addAttribute(late.get()), std::logic_error);
  for (EntityModel* wrong : {base.get(), derived.get(), static_cast<EntityModel*>(nullptr)})
    EXPECT_THROW(derived->setBaseEntity(wrong), std::logic_error);
  EXPECT_EQ(base->createData(*storage)->columns.size(), 2u);
  const ref_ptr<EntityStorage> other = new EntityStorage(base.get());
  EXPECT_THROW(derived->createData(*other), std::logic_error);
}

TEST(EntityModel, LivesInATree)
{
  EXPECT_FALSE(kelData::hasEntity("Zoo.Cats.Lion"));
  {
    const ref_ptr<EntityModel> lion = new EntityModel("Zoo.Cats.Lion");
    const ref_ptr<Attribute> mane = Attribute::create<double>("mane");
    lion->addAttribute(mane.get());
    EXPECT_EQ(lion->getName(), "Lion");
    EXPECT_EQ(mane->fullName(), "Zoo.Cats.Lion.mane");
    EXPECT_EQ(lion->getRootContext(), EntityModel::getRootModel());
    EXPECT_EQ(kelData::getEntity("Zoo.Cats.Lion"), lion.get());
    EXPECT_EQ(kelData::getEntity("Lion"), nullptr);
    const ref_ptr<EntityModel> later = new EntityModel("Zoo.Cats.Lion");
    EXPECT_EQ(kelData::getEntity("Zoo.Cats.Lion"), later.get());
  }
  EXPECT_FALSE(kelData::hasEntity("Zoo.Cats.Lion"));
}

TEST(EntityModel, AttributesOutliveIt)
{
  ref_ptr<EntityModel> model = new EntityModel("Brief");
  const ref_ptr<Attribute> attribute = Attribute::create<double>("kept");
  model->addAttribute(attribute.get());
  const ref_ptr<EntityModel> other = new EntityModel("Other");
  EXPECT_THROW(other->addAttribute(attribute.get()), std::logic_error);
  EXPECT_THROW(other->addAttribute(nullptr), std::logic_error);
  model = nullptr;
  EXPECT_EQ(attribute->getEntity(), nullptr);
  EXPECT_EQ(attribute->fullName(), "kept");
  other->addAttribute(attribute.get());
}

TEST(EntityModel, LoadersFinishInstances)
{
  struct Counter : EntityModel::Loader
  {
    Attribute* number = Attribute::create<int>("number");
    int next = 1;
    int looked = 0;
    void initAttributeAccessors() override { ++looked; }
    void construct(EntityPtr instance) override
    {
      instance.getStorage()->data<int>(number)[instance.calculateIndex()] = next++;
    }
  };
  const ref_ptr<EntityModel> model = new EntityModel("Counted");
  EXPECT_FALSE(model->hasConstructor());
  ref_ptr<Counter> counter = new Counter;
  model->addAttribute(counter->number);
  model->setSource(counter.get());
  EXPECT_EQ(model->getSource(), counter.get());
  EXPECT_EQ(counter->looked, 1);
  EntityStorage* storage = model->getDefaultStorage();
  EXPECT_EQ(model->getDefaultStorage(), storage);
  storage->createInstance();
  storage->createInstances(2);
  storage->resize(4);
  const int* numbers = storage->data<int>(counter->number);
  EXPECT_EQ(numbers[0] + numbers[1] * 10 + numbers[2] * 100 + numbers[3] * 1000, 4321);
  model->setHasConstructor(false);
  storage->createInstance();
  EXPECT_EQ(numbers[4], 0);
}

TEST(EntityModel, SaysWhatStoragesUse)
{
  const ref_ptr<EntityModel> model = new EntityModel("Plain");
  model->setUseInstanceTable(false);
  const ref_ptr<EntityStorage> storage = new EntityStorage(model.get());
  EXPECT_FALSE(storage->useInstanceTable());
  EntityModel::setThreadSafe(true);
  EXPECT_TRUE(EntityModel::getThreadSafe());
  storage->createInstance().copy().destroy();
  EntityModel::setThreadSafe(false);
  EXPECT_EQ(storage->size(), 1u);
}

TEST(EntityAttribute, HasFormatNumberAndDefault)
{
  kelData::Type* real = kelData::getType("Real");
  const ref_ptr<kelData::ValueT<int>> two = new kelData::ValueT<int>(2);
  const ref_ptr<kelData::ValueT<double>> half = new kelData::ValueT<double>(0.5);
  const ref_ptr<Attribute> attribute =
      new Attribute("a", real, kelData::getFormat("Real32"), two.get(), half.get());
  EXPECT_EQ(attribute->getElementSize(), 8u);
  EXPECT_EQ(attribute->getDefaultValue()->toString(), "0.5");
  EXPECT_EQ(attribute->getNumElements()->toString(), "2");
  attribute->setDefaultFormat(kelData::getFormat("Real64"));
  EXPECT_EQ(attribute->getElementSize(), 16u);
  EXPECT_THROW(attribute->setDefaultFormat(kelData::getFormat("Vec3d")), std::logic_error);
  EXPECT_THROW(attribute->setDefaultFormat(nullptr), std::logic_error);

  const ref_ptr<EntityModel> model = new EntityModel("A");
  model->addAttribute(attribute.get());
  EXPECT_THROW(attribute->setDefaultFormat(kelData::getFormat("Real32")), std::logic_error);
  const ref_ptr<EntityStorage> storage = new EntityStorage(model.get());
  storage->createInstance();
  half->set(0.25);
  attribute->setDefaultValue(*half);
  storage->createInstance();
  const double* values = storage->data<double>(attribute.get());
  EXPECT_EQ(values[1], 0.5);
  EXPECT_EQ(values[3], 0.25);
}

TEST(EntityAttribute, RefusesWhatDoesNotFit)
{
  kelData::Type* real = kelData::getType("Real");
  const ref_ptr<kelData::ValueT<double>> none = new kelData::ValueT<double>(0),
                                         many = new kelData::ValueT<double>(1e9);
  const ref_ptr<kelData::ValueT<kel::Uuid>> id = new kelData::ValueT<kel::Uuid>;
  for (const kelData::Value* count :
       std::initializer_list<const kelData::Value*>{none.get(), many.get(), id.get()})
    EXPECT_THROW(new Attribute("a", real, nullptr, count), std::logic_error);
  EXPECT_THROW(new Attribute("a", nullptr), std::logic_error);
  EXPECT_THROW(new Attribute("a", real, kelData::getFormat("Vec3d")), std::logic_error);
  EXPECT_THROW(new Attribute("a", real, nullptr, nullptr, id.get()), std::runtime_error);
  EXPECT_THROW(new kelData::PointerAttribute("a", real), std::logic_error);
  EXPECT_THROW(new kelData::SharedAttribute("a", nullptr, "1"), std::logic_error);
  const ref_ptr<Attribute> fixed = Attribute::create<double>("a", 1.0);
  EXPECT_THROW(fixed->setDefaultValue(*none), std::logic_error);
}

TEST(EntityAttribute, PointersAreNullAtFirst)
{
  const ref_ptr<EntityModel> model = new EntityModel("Linked");
  auto* next = new kelData::PointerAttribute("next", kelData::getType("EntityPtr"));
  model->addAttribute(next);
  const ref_ptr<EntityStorage> storage = new EntityStorage(model.get());
  const EntityPtr a = storage->createInstance(), b = storage->createInstance();
  EXPECT_EQ(storage->data<EntityPtr>(next)[0], EntityPtr());
  storage->data<EntityPtr>(next)[0] = b;
  std::ostringstream text;
  a.print(text);
  EXPECT_EQ(text.str(), "Linked#0\n  next: Linked#1\n");
  EXPECT_EQ(EntityPtr::TransformToAscii(EntityPtr::NO_ID), "none");
}

TEST(EntityAttribute, SharedOnesFollowTheContextOfTheStorage)
{
  const ref_ptr<EntityModel> model = new EntityModel("Lit");
  auto* light = new kelData::SharedAttribute("light", kelData::getFormat("Real64"), "2*lamp");
  model->addAttribute(light);
  const ref_ptr<EntityStorage> storage = new EntityStorage(model.get());
  storage->createInstance();
  EXPECT_EQ(storage->getBuffer(light), nullptr);
  EXPECT_EQ(model->getNumBytes(), 0u);
  EXPECT_THROW(storage->getSharedValue(light), std::runtime_error);
  const ref_ptr<kel::Component> room = new kel::Component(kel::Name("room"));
  const ref_ptr<kelData::ValueT<double>> lamp = new kelData::ValueT<double>("lamp", 3.0);
  room->addObject(lamp.get());
  room->addObject(storage.get());
  EXPECT_EQ(storage->getSharedValue(light)->toString(), "6");
  lamp->set(5.0);
  EXPECT_EQ(storage->getSharedValue(light)->toString(), "10");
  storage->verifyConsistency();
}

} // namespace
