#include "kelStream/ClassInformation.h"
#include <gtest/gtest.h>

namespace {

void expectSplit(const char* text, const char* scope, const char* cls, const char* method)
{
  const kelStream::ClassInformation information(text);
  EXPECT_EQ(information.getNamespace(), scope) << text;
  EXPECT_EQ(information.getClassName(), cls) << text;
  EXPECT_EQ(information.getMethodName(), method) << text;
}

} // namespace

TEST(ClassInformation, SplitsEveryFormOfSignature)
{
  expectSplit("virtual void kelSDK::LuaStepEventListener::post(const TimeStamp&)", "kelSDK",
              "LuaStepEventListener", "post");
  expectSplit(
      "virtual kelSDK::ContactEventListener::KeepContactPolicy kelSDK::LuaContactEventListener::impact(const "
      "TimeStamp&, kelCollide::GeometryContact*)",
      "kelSDK", "LuaContactEventListener", "impact");
  expectSplit("virtual kel::Real kel::LuaBoxFrictionModel::calculateNormalForce(const kelCollide::Geometry*, "
              "size_t) const",
              "kel", "LuaBoxFrictionModel", "calculateNormalForce");
  expectSplit("kelSDK::LuaStepEventListener::LuaStepEventListener(int)", "kelSDK", "LuaStepEventListener",
              "LuaStepEventListener");
  expectSplit("const std::map<int, kel::Real>& a::b::C<std::pair<int, int> >::get()", "a::b",
              "C<std::pair<int, int> >", "get");
  expectSplit("void Global::run()", "", "Global", "run");
  expectSplit("int main()", "", "", "main");
  expectSplit("", "", "", "");
}
