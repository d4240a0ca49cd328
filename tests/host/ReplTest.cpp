#include "Repl.h"
#include "kelLua/ScriptManager.h"
#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <lua.hpp>
#include <sstream>

namespace {

class ReplTest : public testing::Test
{
protected:
  /// What the lines print; errors follow the values.
  std::string feed(std::initializer_list<const char*> lines)
  {
    m_out.str("");
    m_err.str("");
    for (const char* line : lines) m_repl.feed(line);
    EXPECT_EQ(0, lua_gettop(m_state));
    return m_out.str() + m_err.str();
  }

  static bool has(const std::vector<std::string>& words, const char* word)
  {
    return std::find(words.begin(), words.end(), word) != words.end();
  }

  /// The kel tree comes from the plug-in beside the tests.
  lua_State* open()
  {
    kelLua::ScriptManager* manager = kelLua::ScriptManager::instance(true);
    lua_State* L = manager->openState();
    EXPECT_TRUE(manager->requestScriptPlugin("kel")) << manager->getLastPluginError();
    return L;
  }

  lua_State* m_state = open();
  std::ostringstream m_out, m_err;
  Repl m_repl{m_state, m_out, m_err};
};

} // namespace

TEST_F(ReplTest, printsValuesReadably)
{
  EXPECT_EQ("3\n", feed({"1 + 2"}));
  EXPECT_EQ("3\n", feed({"= 1 + 2"}));
  EXPECT_EQ("", feed({"x = 'a'"}));
  EXPECT_EQ("4\n", feed({"return 4"}));
  EXPECT_EQ("2\n3\n", feed({"(function() return 2, 3 end)()"}));
  EXPECT_EQ("\"a\"\nnil\ntrue\n", feed({"x, nil, true"}));
  EXPECT_EQ("\"\\\"\\n\\000\\\\\"\n", feed({R"("\"\n\0\\")"}));
  EXPECT_EQ("{}\n", feed({"{}"}));
  EXPECT_EQ("{1, nil, {...}, [\"a b\"] = {}, [true] = 1.5, y = \"t\"}\n",
            feed({"{1, nil, {2}, y = 't', ['a b'] = {}, [true] = 1.5}"}));
  EXPECT_EQ("Vec3(1, 2, 3)\n", feed({"kel.Vec3(1, 2, 3)"}));
  EXPECT_EQ("shown\n", feed({"setmetatable({}, {__tostring = function() return 'shown' end})"}));
  const std::string wide = feed({"string"});
  EXPECT_EQ(0u, wide.find("{\n  byte = function"));
  EXPECT_NE(std::string::npos, feed({"t = {} for i = 1, 500 do t[i] = i end", "t"}).find("... 300 more"));
}

TEST_F(ReplTest, waitsForTheEndOfAChunk)
{
  EXPECT_EQ("", feed({"for i = 1, 2 do"}));
  EXPECT_TRUE(m_repl.isIncomplete());
  EXPECT_EQ("", feed({"  x = i"}));
  EXPECT_EQ("", feed({"end"}));
  EXPECT_FALSE(m_repl.isIncomplete());
  EXPECT_EQ("2\n", feed({"x"}));
  EXPECT_EQ("{1, 2}\n", feed({"{1,", "2}"}));
  EXPECT_EQ("\"a\\nb\"\n", feed({"= [[a", "b]]"}));
  feed({"function f("});
  m_repl.cancel();
  EXPECT_EQ("7\n", feed({"7"}));
  EXPECT_EQ("", feed({"", "-- nothing", ""}));
}

TEST_F(ReplTest, goesOnAfterErrors)
{
  EXPECT_EQ(0u, feed({"x = = 1"}).find("stdin:1: unexpected symbol near"));
  const std::string text = feed({"function inner() error('broken') end", "(function() inner() end)()"});
  EXPECT_EQ(0u, text.find("stdin:1: broken\nstack traceback:")) << text;
  EXPECT_NE(std::string::npos, text.find("inner"));
  EXPECT_EQ(0u, feed({"error()"}).find("(error object is a nil value)"));
  EXPECT_NE(std::string::npos, feed({"kel.Vec3():length(1)"}).find("error in function 'length'."));
  EXPECT_NE(std::string::npos,
            feed({"setmetatable({}, {__tostring = function() error('mute') end})"}).find("mute"));
  EXPECT_EQ("1\n", feed({"1"}));
}

TEST_F(ReplTest, isInterruptedOncePerPress)
{
  lua_register(m_state, "press", [](lua_State*) { return std::raise(SIGINT); });
  EXPECT_EQ(0u, feed({"x = 1 press() while true do pcall(print) end"}).find("interrupted"));
  EXPECT_EQ("1\n", feed({"x"}));
  EXPECT_EQ("100\n", feed({"n = 0 for i = 1, 100 do n = n + 1 end", "n"}));
}

TEST_F(ReplTest, completesOverTheTree)
{
  EXPECT_EQ((std::vector<std::string>{"kelCollide", "kelSDK"}), [this] {
    std::vector<std::string> words = m_repl.complete("kel");
    std::erase_if(words, [](const std::string& word) { return word != "kelCollide" && word != "kelSDK"; });
    return words;
  }());
  EXPECT_EQ((std::vector<std::string>{"kel.HighAccuracyTimer"}), m_repl.complete("kel.HighAcc"));
  const std::vector<std::string> members = m_repl.complete("kelCollide.Box.");
  EXPECT_TRUE(has(members, "kelCollide.Box.new"));
  EXPECT_TRUE(has(members, "kelCollide.Box.BOX")) << "inherited constant";
  EXPECT_FALSE(has(members, "kelCollide.Box.__index"));
  EXPECT_EQ((std::vector<std::string>{}), m_repl.complete("kelCollide.Nothing."));
  EXPECT_EQ((std::vector<std::string>{"string.format"}), m_repl.complete("string.fo"));
}

TEST_F(ReplTest, completesOverMembersOfObjects)
{
  feed({"sim = kelSDK.Simulation() t = {l = kelSDK.LuaStepEventListener()} t.body = kel.RigidBody() s = "
        "'text' io_out = io.stdout"});
  feed({"function t.l:post() end", "t.l.note = 1"});
  EXPECT_TRUE(has(m_repl.complete("sim:"), "sim:stepForward"));
  EXPECT_TRUE(has(m_repl.complete("t.body:get"), "t.body:getReferenceCount")) << "inherited";
  EXPECT_FALSE(has(m_repl.complete("sim:"), "sim:new"));
  EXPECT_TRUE(has(m_repl.complete("t.l:"), "t.l:post")) << "the script's own";
  EXPECT_TRUE(has(m_repl.complete("t.l."), "t.l.note"));
  EXPECT_FALSE(has(m_repl.complete("t.l:"), "t.l:note"));
  EXPECT_TRUE(has(m_repl.complete("s:"), "s:upper"));
  EXPECT_TRUE(has(m_repl.complete("io_out:"), "io_out:write"));
  feed({"bad = setmetatable({}, {__index = function() error('no') end})"});
  EXPECT_TRUE(m_repl.complete("bad.x.").empty());
  EXPECT_EQ(0, lua_gettop(m_state));
}
