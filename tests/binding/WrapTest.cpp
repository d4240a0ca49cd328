#include "kelLua/Wrap.h"
#include "Fixture.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/error.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

int tolua_test_Vector_open(lua_State* L);
int tolua_test_Body_open(lua_State* L);
int tolua_test_Extra_open(lua_State* L);

namespace {

class Wrap : public testing::Test
{
protected:
  Wrap() : L(kelLua::ScriptManager::instance(true)->openState())
  {
    for (auto* open : {tolua_test_Vector_open, tolua_test_Body_open, tolua_test_Extra_open}) open(L);
    run("V, B = test.Vector, test.Body");
    run("function collect() for _ = 1, 3 do collectgarbage() end end");
    run("function fails(f, ...) local ok, text = pcall(f, ...) assert(not ok) return text end");
  }
  ~Wrap() override { kelLua::ScriptManager::instance()->closeState(); }

  /// Runs a script, which tests by `assert`.
  void run(const std::string& script)
  {
    if (luaL_loadbuffer(L, script.data(), script.size(), "=script") || lua_pcall(L, 0, 0, 0))
      ADD_FAILURE() << script << "\n" << lua_tostring(L, -1);
    lua_settop(L, 0);
  }

  /// The error that a script ends with.
  std::string failure(const std::string& script)
  {
    const bool failed = luaL_loadbuffer(L, script.data(), script.size(), "=script") || lua_pcall(L, 0, 0, 0);
    const std::string text = failed ? lua_tostring(L, -1) : "(none)";
    lua_settop(L, 0);
    return text;
  }

  lua_State* L;
};

} // namespace

TEST_F(Wrap, NumbersTruncateAndWrapAndAreNeverUndefined)
{
  using kelLua::wrap::toNumber;
  const double nan = std::nan(""), inf = std::numeric_limits<double>::infinity();
  for (double odd : {nan, inf, -inf, 1e300}) {
    EXPECT_EQ(toNumber<int>(odd), 0);
    EXPECT_EQ(toNumber<unsigned char>(odd), 0);
  }
  EXPECT_EQ(toNumber<long>(nan), std::numeric_limits<long>::min());
  EXPECT_EQ(toNumber<unsigned long>(std::ldexp(1.0, 63) + 4096), 0x8000000000001000UL);
  EXPECT_EQ(toNumber<unsigned long>(-1), ~0UL);
  EXPECT_EQ(toNumber<unsigned int>(-3.9), 0xFFFFFFFDU);
  EXPECT_EQ(toNumber<signed char>(300), 44);
  EXPECT_EQ(toNumber<test::Body::Mode>(2.9), test::Body::KINEMATIC);
  EXPECT_EQ(toNumber<float>(0.1), 0.1f);
}

TEST_F(Wrap, ReportsTheScriptTheArgumentTheValueAndTheSignatures)
{
  EXPECT_EQ(failure("local b = B()\nb:setPosition(1, 'x', 3)"),
            "script:2: error in function 'setPosition'.\n"
            "     argument #2 is 'number'; 'const test::Vector' expected.\n"
            "     given: 1\n"
            "     signatures:\n"
            "       setPosition(const test::Vector)\n"
            "       setPosition(number, number, number)");
  EXPECT_EQ(failure("B():log({})"), "script:1: error in function 'log'.\n"
                                    "     argument #2 is 'table'; 'string' expected.\n"
                                    "     signatures:\n"
                                    "       log(string)");
  EXPECT_EQ(failure("V().x = 'q'"), "script:1: invalid type in variable assignment.\n"
                                    "     value is 'string'; 'number' expected.\n"
                                    "     given: \"q\"\n");
  EXPECT_EQ(failure("\nreturn V() + true"), "script:2: error in function '.add'.\n"
                                            "     argument #2 is 'boolean'; 'const test::Vector' expected.\n"
                                            "     given: true\n"
                                            "     signatures:\n"
                                            "       const .add(const test::Vector) -> test::Vector");
  EXPECT_EQ(failure("V.length(nil)"), "script:1: invalid 'self' in function 'length'");
}

TEST_F(Wrap, ErrorKeepsItsContractForAnyText)
{
  lua_pushcfunction(L, [](lua_State* state) {
    kelLua::error(state, "100 %s", nullptr);
    return 0;
  });
  EXPECT_NE(lua_pcall(L, 0, 0, 0), 0);
  EXPECT_STREQ(lua_tostring(L, -1), "100 %s");
}

TEST_F(Wrap, StaticFunctionsAndConstructorsDoWithoutTheClassTable)
{
  run("assert(V.axis(1) == V:axis(1))");
  run("own = tolua.takeownership assert(own(V.new(1, 2, 3)) and own(V.new()))");
  run("assert(V.new_local({1, 2, 3}) == V(1, 2, 3))");
  run("assert(test.Wheel.SEPARATOR == '/')");
  EXPECT_NE(failure("V.axis('x')").find("argument #1 is 'string'; 'number' expected."), std::string::npos);
  EXPECT_NE(failure("V:axis('x')").find("argument #2 is 'string'; 'number' expected."), std::string::npos);
  EXPECT_NE(failure("V.new({}, 3)").find("argument #1 is 'table'; 'number' expected."), std::string::npos);
}

TEST_F(Wrap, ObjectsAtOptionalPositionsHaveDefaults)
{
  run("r = test.Neighbourhood() reach = test.Reach.reach");
  run("local r = tolua.cast(r, 'test::Reach') assert(r:reach() == 5 and r:reach(nil) == 5 and r:reach(nil, "
      "true) == 10)");
  run("local r = tolua.cast(r, 'test::Reach') assert(r:reach(V(2, 0, 0)) == 2 and r:reach(V(2, 0, 0), true) "
      "== 4)");
  run("assert(select('#', test.Reach.need(V(2, 0, 0), 'y')) == 2)");
  for (const char* script : {"test.Reach:need()", "test.Reach:need(nil, 'x')", "test.Reach.need()"})
    EXPECT_NE(failure(script).find("error in function 'need'.\n     argument #"), std::string::npos)
        << script;
}

TEST_F(Wrap, ClassTablesShowTheirBasesButNotHowToMakeThem)
{
  run("assert(test.Wheel.STATIC == 1 and test.Wheel.getName == B.getName and test.Wheel.limit == B.limit)");
  run("assert(test.SafeHolder.value and test.SafeHolder.two)");
  run("for _, own in ipairs{'new', 'new_local', 'delete', '.call', '.add'} do assert(test.SafeHolder[own] == "
      "nil) end");
  run("assert(not pcall(function() return test.SafeHolder() end))");
  run("test.Wheel.extra = 3 assert(test.Wheel().extra == 3 and B.extra == nil and B().extra == nil)");
  run("test.Wheel.limit = 21 assert(B.limit == 21 and rawget(test.Wheel, 'limit') == nil) B.limit = 10");
  run("B.shared = 5 assert(test.Wheel.shared == 5 and test.Wheel().shared == 5)");
  run("assert(tolua.cast(B(), 'no::Type') == nil and tolua.cast(B(), 'test::Wheel'))");
}

TEST_F(Wrap, MinusAndTextOfValues)
{
  run("local v = V(1, 2, 3) assert(-v == V(-1, -2, -3) and -(v * 2) == V(-2, -4, -6))");
  EXPECT_NE(failure("return -B()").find("attempt to perform arithmetic on a 'test::Body' value"),
            std::string::npos);
  run("assert(tostring(V(1, 2, 3)) == 'Vector(1, 2, 3)' and tostring(V(1) * 2) == 'Vector(2, 2, 2)')");
  run("assert(tostring(B()):match('^test::Body: 0x%x+$') and tostring(V) :match('Vector') == nil)");
}

TEST_F(Wrap, DeadHandlesNeverReachTheEngine)
{
  run("h = test.Holder:new() inner = h:inner() h:delete()");
  for (const char* script : {"h:value()", "h:delete()", "inner:length()", "return inner.x", "inner.x = 1"})
    EXPECT_NE(failure(script).find("invalid 'self' in "), std::string::npos) << script;
  EXPECT_NE(failure("test.cross(V(), inner)")
                .find("argument #2 is 'test::Vector'; 'const test::Vector' expected.\n"
                      "     given: a handle whose object is gone\n"),
            std::string::npos);
  EXPECT_NE(failure("V(inner)").find("error in function 'new'"), std::string::npos);
  EXPECT_NE(failure("B().velocity = inner").find("invalid type in variable assignment"), std::string::npos);
  run("local b = B:new() b:reference() b:unreference() assert(B():find(b) == 'no body')");
  run("assert(tostring(h):match('^test::Holder'))");
}

TEST_F(Wrap, EngineExceptionsPassThrough)
{
  run("body = B('x') fail = body.fail");
  lua_getglobal(L, "fail");
  const lua_CFunction fail = lua_tocfunction(L, -1);
  lua_settop(L, 0);
  lua_getglobal(L, "body");
  EXPECT_THROW(fail(L), std::runtime_error);
  lua_settop(L, 0);
}

TEST_F(Wrap, BodiesFamiliesModulesAndChunks)
{
  run("assert(testGlobal(1) == 2 and test.inner.twice(4) == 8)");
  run("for _, name in ipairs{'Slow', 'Fast'} do local c = test[name .. 'Counter'](5)"
      " assert(c:count() == 6 and c:count(4) == 10 and not c:fresh()) end");
  run("assert(test.SlowCounter():fresh())");
  run("assert(test.modeName(B.STATIC) == 'static' and test.modeName(B.DYNAMIC) == 'moving')");
  run("assert(test.Listener():describe('count') == 'count 1')");
}

TEST_F(Wrap, VariablesOfModules)
{
  run("assert(test.counter == 1 and test.VERSION == 'one' and test.inner.depth == 2)");
  run("test.counter = 5.9 test.inner.depth = 3 test.origin = V(1, 2, 3)");
  EXPECT_EQ(test::counter, 5);
  EXPECT_EQ(test::inner::depth, 3);
  EXPECT_EQ(test::origin.z, 3);
  run("test.origin:set(0, 0, 0) assert(test.origin == V())");
  EXPECT_EQ(test::origin.z, 0);
  EXPECT_NE(failure("test.counter = 'x'").find("invalid type in variable assignment"), std::string::npos);
  run("test.counter = 1 test.inner.depth = 2");
}

TEST_F(Wrap, SmartPointerMembersHoldReferences)
{
  run("local n, b = test.Neighbourhood(), B() n.body = b assert(b:getReferenceCount() == 2 and n.body == b)"
      " n.body = nil assert(b:getReferenceCount() == 1 and n.body == nil)");
}
