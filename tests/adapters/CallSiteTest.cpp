#include "CallSite.h"
#include "kel/Logger.h"
#include "kel/Referenced.h"
#include "kelLua/Handles.h"
#include "kelLua/ScriptManager.h"
#include <gtest/gtest.h>
#include <lua.hpp>
#include <stdexcept>
#include <tolua++.h>

namespace {

using kelLua::CallSite;
using kelLua::ScriptManager;

enum Policy
{
  KEEP,
  REMOVE,
  IGNORE
};

class Filter : public kel::Referenced, public kelLua::LuaCallback
{
public:
  Filter() : LuaCallback(this, "test::Filter::Filter()") {}

  Policy decide(double number, std::size_t count, bool flag, const std::string& text, Filter* object)
  {
    static const CallSite site(
        "virtual test::Policy test::Filter::decide(double, size_t, bool, const String&, Filter*) const");
    return site.callForResult(*this, IGNORE, number, count, flag, text,
                              kelLua::ObjectArgument{object, kelLua::wrap::type("test::Filter")});
  }
  bool accept()
  {
    static const CallSite site("virtual bool test::Filter::accept()");
    return site.callForResult(*this, true);
  }
};

class CallSites : public testing::Test
{
protected:
  CallSites() : manager(ScriptManager::instance(true)), L(manager->openState()), filter(new Filter)
  {
    tolua_usertype(L, "test::Filter");
    tolua_module(L, nullptr, 0);
    tolua_beginmodule(L, nullptr);
    tolua_cclass(L, "Filter", "test::Filter", "", nullptr);
    tolua_endmodule(L);
    kelLua::handles::pushCounted(L, filter.get(), filter.get(), kelLua::wrap::type("test::Filter"));
    lua_setglobal(L, "filter");
    manager->setLastScriptError("");
    kel::Logger::instance().setSink([this](auto, const std::string& text) { log += text; });
  }
  ~CallSites() override
  {
    manager->setScriptErrorsAsErrors(false);
    manager->closeState();
    kel::Logger::instance().setSink({});
  }
  void run(const char* chunk) { ASSERT_EQ(luaL_dostring(L, chunk), 0) << lua_tostring(L, -1); }

  ScriptManager* manager;
  lua_State* L;
  kel::ref_ptr<Filter> filter;
  std::string log;
};

} // namespace

TEST_F(CallSites, PassesEveryKindOfArgumentAndTruncatesTheResult)
{
  run("function filter:decide(...) got = {self == filter, select('#', ...), ...} return 1.9 end");
  EXPECT_EQ(filter->decide(2.5, 7, true, "text", filter.get()), REMOVE);
  run("assert(got[1] and got[2] == 5 and got[3] == 2.5 and got[4] == 7 and got[5] == true and got[6] == "
      "'text' and "
      "got[7] == filter)");
  EXPECT_EQ(log, "");
  EXPECT_EQ(lua_gettop(L), 0);
}

TEST_F(CallSites, MissingFunctionAndMissingValueGiveTheFallback)
{
  EXPECT_TRUE(filter->accept());
  EXPECT_EQ(log, "");
  run("function filter:accept() end");
  EXPECT_TRUE(filter->accept());
  EXPECT_EQ(log, "warning: virtual bool test::Filter::accept() should return a value\n");
  run("function filter:accept() return false, 1, 2 end");
  EXPECT_FALSE(filter->accept());
  EXPECT_EQ(lua_gettop(L), 0);
}

TEST_F(CallSites, ResultIsWhateverLiesOnTop)
{
  run("function filter:accept() end");
  lua_pushboolean(L, 0);
  EXPECT_FALSE(filter->accept());
  EXPECT_EQ(log, "");
  EXPECT_EQ(lua_gettop(L), 0);
}

TEST_F(CallSites, FailureIsAWarningOrAnError)
{
  run("function filter:accept() error('broken', 0) end");
  EXPECT_TRUE(filter->accept());
  EXPECT_EQ(log, "warning: broken\nwarning: virtual bool test::Filter::accept() should return a value\n");
  EXPECT_EQ(manager->getLastScriptError(), "broken");

  log.clear();
  manager->setLastScriptError("older");
  manager->setScriptErrorsAsErrors(true);
  lua_pushboolean(L, 0);
  EXPECT_FALSE(filter->accept()) << "the result step runs after a failure too";
  EXPECT_EQ(log, "error: broken\n");
  EXPECT_EQ(manager->getLastScriptError(), "older");
}
