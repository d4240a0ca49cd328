#include "kelData/typedData.h"
#include "kel/Component.h"
#include "kelData/EntityStorage.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>
#include <random>

namespace {

using kel::ref_ptr;
using namespace kelData;

template <class T> std::string ascii(const T& element)
{
  std::string text;
  const Format* format = getFormat<T>();
  return transform(&text, format->getType()->getFormat("ascii"), &element, format, 1) ? text : "none";
}

TEST(TypedData, ATypeHasSeveralFormats)
{
  EXPECT_EQ(getFormat<float>()->getType(), getFormat<double>()->getType());
  EXPECT_NE(getFormat<float>(), getFormat<double>());
  EXPECT_EQ(getFormat<float>()->getType()->getName(), "Real");
  EXPECT_EQ(getFormat<kel::Vec3i32>()->getType()->getName(), "Vec3i");
  EXPECT_EQ(getFormat("Vec3f"), getFormat<kel::Vec3f>());
  EXPECT_EQ(getFormat("Real.ascii"), getType("Real")->getFormat("ascii"));
  for (const char* unknown : {"ascii", "Vec3x", "", ".", "Real.", "x.ascii"})
    EXPECT_EQ(getFormat(unknown), nullptr);
  EXPECT_EQ(getType("no type"), nullptr);
  Type* made = getOrCreateType("made by a test");
  EXPECT_EQ(getOrCreateType("made by a test"), made);
  EXPECT_TRUE(made->getFormats().empty());
}

TEST(TypedData, EveryFormatOfATypeReadsWhatItPrints)
{
  for (const char* name :
       {"Real",      "Bool",  "Int",  "UInt",  "String", "Vec2",      "Vec2i",     "Vec2u",           "Vec3",
        "Vec3i",     "Vec3u", "Vec4", "Vec4i", "Vec4u",  "Matrix3x3", "Matrix4x4", "AffineMatrix4x4", "Quat",
        "EntityPtr", "Uuid"}) {
    const Type* type = getType(name);
    ASSERT_NE(type, nullptr) << name;
    const Format* text = type->getFormat("ascii");
    ASSERT_NE(text, nullptr) << name;
    for (const auto& format : type->getFormats()) {
      const ref_ptr<Value> value = new Value(format.get());
      const std::string first = value->toString();
      std::string printed;
      EXPECT_TRUE(transform(&printed, text, value->ptr(), format.get(), 1));
      EXPECT_EQ(printed, first) << format->getName();
      EXPECT_TRUE(transform(value->ptr(), format.get(), &printed, text, 1)) << format->getName();
      EXPECT_EQ(value->toString(), first);
    }
  }
}

TEST(TypedData, TextKeepsEveryBit)
{
  std::mt19937_64 random(1);
  for (int i = 0; i < 10000; ++i) {
    const auto bits = random();
    double number;
    static_assert(sizeof number == sizeof bits);
    std::memcpy(&number, &bits, sizeof bits);
    if (std::isnan(number)) continue;
    const std::string text = ascii(number);
    double read = 0;
    ASSERT_TRUE(transform(&read, getFormat<double>(), &text, getFormat("Real.ascii"), 1)) << text;
    ASSERT_EQ(read, number) << text;
  }
  EXPECT_EQ(ascii(std::numeric_limits<kel::UInt>::max()), "18446744073709551615");
  EXPECT_EQ(ascii(std::numeric_limits<kel::Int>::min()), "-9223372036854775808");
  EXPECT_EQ(ascii(kel::Vec3(1, 0.1, -2)), "1 0.1 -2");
  EXPECT_EQ(ascii(kel::Quat()), "0 0 0 1");
  EXPECT_EQ(ascii(kel::Matrix3x3()), "1 0 0 0 1 0 0 0 1");
  EXPECT_EQ(ascii(true), "true");
}

TEST(TypedData, WhatIsNoValueChangesNothing)
{
  kel::Vec3 v(1, 2, 3);
  for (const std::string text : {"", "1 2", "1 2 3 4", "1 2 x", "1,2,3"})
    EXPECT_FALSE(transform(&v, getFormat<kel::Vec3>(), &text, getFormat("Vec3.ascii"), 1)) << text;
  EXPECT_EQ(v, kel::Vec3(1, 2, 3));
  const kel::Vec3f narrow(4, 5, 6);
  EXPECT_TRUE(transform(&v, getFormat<kel::Vec3>(), &narrow, getFormat<kel::Vec3f>(), 1));
  EXPECT_EQ(v, kel::Vec3(4, 5, 6));
  double number = 7;
  EXPECT_FALSE(transform(&number, getFormat<double>(), &v, getFormat<kel::Vec3>(), 1));
  EXPECT_FALSE(transform(&number, nullptr, &v, getFormat<kel::Vec3>(), 1));
  EXPECT_EQ(number, 7);
  const std::int64_t wide[] = {1, -1, 300};
  std::int8_t small[3];
  EXPECT_TRUE(transform(small, getFormat<std::int8_t>(), wide, getFormat<std::int64_t>(), 3));
  EXPECT_EQ(small[2], 44);
}

TEST(TypedData, ArraysTestTheirIndexes)
{
  static_assert(sizeof(Array<double>) == 24);
  const Array<double> none;
  EXPECT_EQ(none.size(), 0u);
  EXPECT_TRUE(none.empty());
  EXPECT_DEATH(none.at(0),
               "^\\[include/kelData/Buffer:[0-9]+\\] kelVerify failed: `index < m_range.size\\(\\)', "
               "Array index 0 is out of bounds, size is 0\n");
  const ref_ptr<kel::IntBuffer> buffer = new kel::IntBuffer("b");
  for (int i = 0; i < 3; ++i) buffer->push_back(i);
  EXPECT_EQ(buffer->at(2), 2);
  EXPECT_DEATH(buffer->at(3), "Array index 3 is out of bounds, size is 3\n");
  EXPECT_DEATH(buffer->at(~0U), "Array index 4294967295 is out of bounds, size is 3\n");
}

TEST(TypedData, BuffersGrowByTheirMultiplier)
{
  const ref_ptr<kel::StringBuffer> buffer = new kel::StringBuffer;
  std::size_t capacity = 0;
  for (int i = 0; i < 100; ++i) {
    if (buffer->size() == capacity)
      capacity = std::max<std::size_t>(4, static_cast<std::size_t>(i * Buffer::CAPACITY_MULTIPLIER));
    buffer->push_back(std::string(100, 'x') + std::to_string(i));
    ASSERT_EQ(buffer->capacity(), capacity);
  }
  const std::string* first = &buffer->at(0);
  buffer->resize(10000);
  EXPECT_EQ(&buffer->at(0), first);
  EXPECT_EQ(buffer->at(99), std::string(100, 'x') + "99");
  EXPECT_EQ(buffer->back(), "");
  buffer->resize(1);
  EXPECT_EQ(buffer->back(), *first);
  buffer->clear();
  EXPECT_TRUE(buffer->empty());
  EXPECT_EQ(buffer->capacity(), 10000u);
  EXPECT_THROW(buffer->reserve(Buffer::MAX_SIZE * 2), std::length_error);
  EXPECT_THROW(buffer->resize(~std::size_t(0)), std::length_error);
  EXPECT_TRUE(buffer->empty());
  const ref_ptr<kel::UInt8Buffer> bytes = new kel::UInt8Buffer;
  bytes->resize(Buffer::MAX_SIZE - 1, false);
  bytes->push_back(1);
  EXPECT_EQ(bytes->size(), Buffer::MAX_SIZE);
  EXPECT_THROW(bytes->push_back(1), std::length_error);
}

TEST(TypedData, BuffersTellTheirSizesAndChanges)
{
  const ref_ptr<kel::RealBuffer> buffer = new kel::RealBuffer("b");
  buffer->sizeParameter = new kel::UIntValue("size");
  buffer->capacityParameter = new kel::UIntValue("capacity");
  buffer->resize(10);
  EXPECT_EQ(buffer->sizeParameter->get(), 10u);
  buffer->clear();
  EXPECT_EQ(buffer->sizeParameter->get(), 0u);
  EXPECT_EQ(buffer->capacityParameter->get(), 10u);
  buffer->resize(10);
  EXPECT_TRUE(buffer->takeChanges().empty());
  buffer->commit(5);
  buffer->commit(kel::IndexRange32{7, 100});
  EXPECT_EQ(buffer->takeChanges(), (kel::IndexRange32{5, 10}));
  kel::Index indexes[] = {3, 2, 50, ~0U};
  buffer->commit(IndexArray(indexes, nullptr, {0, 4}));
  EXPECT_EQ(buffer->takeChanges(), (kel::IndexRange32{2, 4}));
  buffer->commit();
  EXPECT_EQ(buffer->takeChanges(), (kel::IndexRange32{0, 10}));
}

TEST(TypedData, ColumnsOfStoragesAreBuffers)
{
  const ref_ptr<EntityModel> model = new EntityModel("Ball");
  Attribute* mass = Attribute::create<double>("mass", 2.5);
  struct Own
  {
    int a = 1;
  };
  Attribute* own = Attribute::create<Own>("own");
  model->addAttribute(mass);
  model->addAttribute(own);
  ref_ptr<EntityStorage> storage = new EntityStorage(model.get());
  storage->createInstance();
  storage->createInstance();
  const ref_ptr<Buffer> buffer = storage->getBuffer(mass);
  EXPECT_EQ(buffer->getFormat(), getFormat<double>());
  EXPECT_EQ(storage->getBuffer(own)->getFormat(), nullptr);
  EXPECT_EQ(buffer->getStorage(), storage.get());
  EXPECT_EQ(buffer->size(), 2u);
  EXPECT_THROW(buffer->resize(5), std::logic_error);
  storage->clear();
  EXPECT_EQ(buffer->size(), 0u);
  storage = nullptr;
  EXPECT_EQ(buffer->getStorage(), nullptr);
}

} // namespace
