#include "kel/Property.h"
#include "LogCapture.h"
#include "kel/ref_ptr.h"
#include <gtest/gtest.h>
#include <regex>
#include <stdexcept>

namespace {

using kel::PropertyContainer;
using kel::ref_ptr;

class Property : public testing::Test
{
protected:
  ref_ptr<PropertyContainer> properties = new PropertyContainer;
};

/// What a failing call throws and logs.
template <class Call> std::pair<std::string, std::string> failure(Call call)
{
  const LogCapture capture(kel::Notify::NOTIFY_WARNING);
  try {
    call();
  } catch (const std::runtime_error& error) {
    return {error.what(), capture.lines.size() == 1 ? capture.lines[0] : "not one line"};
  }
  return {"nothing thrown", ""};
}

#define EXPECT_FAILURE(call, text, signature)                                                                \
  do {                                                                                                       \
    const auto [thrown, logged] = failure([&] { call; });                                                    \
    EXPECT_EQ(thrown, text);                                                                                 \
    const std::string shape = std::regex_replace(logged, std::regex(":[0-9]+ "), ":LINE ");                  \
    EXPECT_EQ(shape,                                                                                         \
              std::string("warning: [include/kel/Property:LINE (") + signature + ")] " + text + "\n");       \
  } while (false)

TEST_F(Property, ValuesStayWhereTheyAre)
{
  kel::Vec3& first = properties->addPropertyVec3("first", kel::Vec3(1, 2, 3));
  for (int i = 0; i < 10000; ++i) properties->addPropertyVec3(std::to_string(i), kel::Vec3(i));
  first.x() = 5;
  EXPECT_EQ(properties->getPropertyVec3("first"), kel::Vec3(5, 2, 3));
  properties->clear();
  EXPECT_FALSE(properties->hasPropertyVec3("first"));
  first.x() = 6; // the memory stays
  for (int i = 0; i < 10001; ++i) properties->addPropertyVec3(std::to_string(i), kel::Vec3(i));
  for (int i = 0; i < 10001; ++i) ASSERT_EQ(properties->getPropertyVec3(std::to_string(i)), kel::Vec3(i));
  EXPECT_EQ(first, kel::Vec3(first.x()));
}

TEST_F(Property, WhatIsMissingIsThrownWithItsPlace)
{
  const PropertyContainer& constant = *properties;
#define EXPECT_MISSING(Word, value, name, unscoped)                                                          \
  EXPECT_FAILURE(properties->setProperty##Word("p", value), "Property named p is missing",                   \
                 name "& kel::PropertyContainer::setProperty" #Word "(const string&, " name ")");            \
  EXPECT_FALSE(properties->hasProperty##Word("p"));                                                          \
  EXPECT_FAILURE(properties->getProperty##Word("p"), "Property p of type " #Word " is missing!",             \
                 name "& kel::PropertyContainer::getProperty" #Word "(const string&)");                      \
  EXPECT_FAILURE(constant.getProperty##Word("p"), "Property p of type " #Word " is missing!",                \
                 "const " unscoped "& kel::PropertyContainer::getProperty" #Word "(const string&) const")

  EXPECT_MISSING(Long, 1, "int64_t", "int64_t");
  EXPECT_MISSING(Int, 1, "int", "int");
  EXPECT_MISSING(Float, 1, "float", "float");
  EXPECT_MISSING(Double, 1, "double", "double");
  EXPECT_MISSING(Real, 1, "kel::Real", "Real");
  EXPECT_MISSING(Bool, true, "bool", "bool");
  EXPECT_MISSING(String, "x", "std::string", "string");
  EXPECT_MISSING(Vec2, kel::Vec2(1), "kel::Vec2", "Vec2");
  EXPECT_MISSING(Vec3, kel::Vec3(1), "kel::Vec3", "Vec3");
}

} // namespace
