#include "kel/Component.h"
#include "kelData/typedData.h"
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <numbers>

namespace {

using kel::ref_ptr;
using namespace kelData;

template <class Call> std::string failure(Call call)
{
  try {
    call();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing thrown";
}

/// "wheel" with its radius "r" and "hub", in which lies a value that follows.
struct Wheel : testing::Test
{
  Wheel()
  {
    wheel->addObject(r.get());
    wheel->addObject(hub.get());
    hub->addObject(length.get());
  }
  ref_ptr<kel::Component> wheel = new kel::Component("wheel");
  ref_ptr<kel::Component> hub = new kel::Component("hub");
  ref_ptr<kel::RealValue> r = new kel::RealValue("r", 2);
  ref_ptr<kel::RealValue> length = new kel::RealValue("length");
};

TEST(Value, TakesTheFormatOfItsFirstElement)
{
  const ref_ptr<Value> value = new Value("v", getType("Vec3"));
  EXPECT_EQ(value->getFormat(), nullptr);
  EXPECT_FALSE(value->isValid());
  EXPECT_EQ(value->toString(), "");
  const ref_ptr<kel::Vec3fValue> narrow = new kel::Vec3fValue(kel::Vec3f(1, 2, 3));
  value->set(narrow.get());
  EXPECT_EQ(value->getFormat(), getFormat<kel::Vec3f>());
  value->setFormat(getFormat<kel::Vec3>());
  EXPECT_EQ(value->toString(), "1 2 3");
  const ref_ptr<kel::RealValue> number = new kel::RealValue(1);
  EXPECT_EQ(failure([&] { value->set(number.get()); }),
            "Value 'v' of type Vec3 cannot take one of type Real.");
  EXPECT_EQ(failure([&] { value->setFormat(getFormat<int>()); }),
            "Value 'v' is of type Vec3 and cannot have a format of type Int.");
  EXPECT_EQ(value->toString(), "1 2 3");
  value->setDefaultValue();
  EXPECT_EQ(value->toString(), "0 0 0");
  const ref_ptr<Value> nothing = new Value(static_cast<const Format*>(nullptr));
  nothing->setDefaultValue();
  value->set(nothing.get());
  EXPECT_EQ(failure([&] { nothing->setExpression("1"); }),
            "Value '' is no number and follows no expression.");
}

TEST_F(Wheel, ExpressionsFollowWhatTheyName)
{
  length->setExpression("2*pi*r");
  EXPECT_DOUBLE_EQ(length->get(), 4 * std::numbers::pi);
  r->set(3);
  EXPECT_DOUBLE_EQ(length->get(), 6 * std::numbers::pi);
  const ref_ptr<kel::Vec3iValue> counts = new kel::Vec3iValue("counts");
  wheel->addObject(counts.get());
  counts->setExpression("r, hub.length, 1e300");
  r->set(1);
  EXPECT_EQ(counts->toString(), "1 6 9223372036854775807");
  length->set(5); // ends the formula
  r->set(2);
  EXPECT_EQ(length->get(), 5);
  EXPECT_EQ(counts->toString(), "2 5 9223372036854775807");
}

TEST_F(Wheel, FormulasNameTextsAsNoNumbersAndAreNone)
{
  length->setExpression("2*r");
  EXPECT_EQ(failure([&] { length->setFormat(length->getType()->getFormat("ascii")); }),
            "Value 'length' follows an expression and cannot become a text.");
  r->setFormat(r->getType()->getFormat("ascii"));
  Value::copy(*r, *ref_ptr<kel::RealValue>(new kel::RealValue(3)));
  EXPECT_EQ(r->toString(), "3");
  EXPECT_EQ(length->toString(), "nan");
}

TEST_F(Wheel, BadExpressionsTellThePlace)
{
  length->setExpression("r");
  const std::pair<const char*, const char*> bad[] = {
      {"2*pi*", "at character 6: something is missing"},
      {"2*pi*q", "at character 6: 'q' is no number that is known here"},
      {"hub", "at character 1: 'hub' is no number that is known here"},
      {"", "at character 1: it is empty"},
      {"1, 2", "at character 5: it gives 2 numbers in place of 1"},
      {"2**r", "at character 3: '*' does not fit here"},
      {"(r", "at character 3: something is missing"},
  };
  for (const auto& [text, place] : bad)
    EXPECT_EQ(failure([&, t = text] { length->setExpression(t); }),
              std::string("Value 'length' bad expression '") + text + "' " + place + ".");
  r->set(7);
  EXPECT_EQ(length->get(), 7);
}

TEST_F(Wheel, CirclesAreRefused)
{
  length->setExpression("r");
  EXPECT_EQ(failure([&] { r->setExpression("hub.length"); }),
            "Value 'r' cannot follow 'length', which follows it.");
  EXPECT_EQ(failure([&] { r->bind(*length); }), "Value 'r' cannot follow 'length', which follows it.");
  EXPECT_EQ(failure([&] { r->bind(*r); }), "Value 'r' cannot follow 'r', which follows it.");
  EXPECT_EQ(failure([&] { r->setExpression("r"); }), "Value 'r' cannot follow 'r', which follows it.");
}

TEST_F(Wheel, BoundValuesAreSetTogether)
{
  ref_ptr<kel::Real32Value> far = new kel::Real32Value("far");
  length->bind(kel::Path("r"));
  far->bind(*length);
  EXPECT_EQ(far->get(), 2.0F);
  EXPECT_EQ(far->getBinding(), length.get());
  EXPECT_EQ(far->getRootBinding(), r.get());
  EXPECT_EQ(length->getBindPath(), kel::Path("r"));
  far->set(0.5F);
  EXPECT_EQ(r->get(), 0.5);
  EXPECT_EQ(length->get(), 0.5);
  length->unbind();
  r->set(9);
  EXPECT_EQ(far->get(), 0.5F);
  far->unbind(false);
  EXPECT_EQ(far->get(), 0.0F);
  EXPECT_EQ(length->getReferenceCount(), 2u); // this test and its hub
  kelJson::Value node;
  length->bind(*r);
  length->buildNavigationTree(node);
  EXPECT_EQ(node["binding"], "wheel.r");
  EXPECT_EQ(node["value"], "9");
  EXPECT_EQ(node["type"], "Real");
}

TEST_F(Wheel, BindingsWaitForTheirValue)
{
  length->bind(kel::Path("spoke.size"));
  EXPECT_FALSE(length->isValid());
  EXPECT_EQ(length->getBinding(), nullptr);
  const ref_ptr<kel::Component> spoke = new kel::Component("spoke");
  const ref_ptr<kel::RealValue> size = new kel::RealValue("size", 4);
  spoke->addObject(size.get());
  wheel->addObject(spoke.get());
  length->rebind();
  EXPECT_TRUE(length->isValid());
  EXPECT_EQ(length->get(), 4);
  const ref_ptr<Value> copy = length->clone();
  size->set(5);
  EXPECT_EQ(copy->toString(), "4");
  EXPECT_EQ(copy->getName(), "length");
  const ref_ptr<kel::IntValue> whole = new kel::IntValue("whole");
  EXPECT_EQ(failure([&] { whole->bind(*size); }),
            "Value 'whole' of type Int cannot follow one of type Real.");
}

} // namespace
