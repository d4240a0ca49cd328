#include "LuaPluginKel.h"
#include "OpenOrder.h"
#include "kel/Logger.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <lua.hpp>
#include <set>
#include <sstream>
#include <tolua++.h>

namespace {

using kelLua::ScriptManager;

/// Every path of the Lua tree with the type of its value, "kel.Vec3.length function" and the like.
const char* const dumpTree = R"(
  local paths, seen = {}, {}
  local function walk(path, value)
    paths[#paths + 1] = path .. ' ' .. type(value)
    if type(value) ~= 'table' or seen[value] then return end
    seen[value] = true
    for key, member in pairs(value) do walk(path .. '.' .. tostring(key):gsub('0x%x+', '?'), member) end
  end
  for name, value in pairs(_G) do
    if name:match('^kel') then walk(name, value) end
  end
  table.sort(paths)
  return table.concat(paths, '\n')
)";

class Plugin : public testing::Test
{
protected:
  Plugin() : manager(ScriptManager::instance(true)), L(manager->openState())
  {
    kel::Logger::instance().setSink([this](auto, const std::string& text) { log += text; });
  }
  ~Plugin() override
  {
    manager->setRequiredPluginVersion("1.0");
    manager->closeState();
    kel::Logger::instance().setSink({});
  }

  std::string evaluate(const char* chunk)
  {
    EXPECT_EQ(luaL_dostring(L, chunk), 0);
    const std::string text = lua_tostring(L, -1);
    lua_settop(L, 0);
    return text;
  }

  ScriptManager* manager;
  lua_State* L;
  std::string log;
};

} // namespace

TEST_F(Plugin, OpensSilentlyAndEntersItself)
{
  initPlugin(nullptr);
  EXPECT_TRUE(manager->getScriptPlugins().empty());
  initPlugin(manager);
  EXPECT_EQ(log, "");
  ASSERT_EQ(manager->getScriptPlugins().size(), 2U);
  EXPECT_EQ(manager->getScriptPlugins()[0]->getName(), "kelEntities");
  EXPECT_EQ(manager->getScriptPlugins()[1].get(), g_luakel_kel_plugin.get());
  EXPECT_EQ(g_luakel_kel_plugin->getName(), "kel");
  EXPECT_EQ(evaluate("return type(kel.Vec3)"), "table");
}

TEST_F(Plugin, AnotherRequiredVersionIsLoggedAndStopsNothing)
{
  for (const char* version : {"1.00", ""}) {
    log.clear();
    manager->setRequiredPluginVersion(version);
    initPlugin(manager);
    EXPECT_EQ(log,
              std::string("error: Plugin version (1.0) does not match required version (") + version + ")\n");
    EXPECT_EQ(evaluate("return type(kel.Vec3)"), "table");
  }
}

TEST_F(Plugin, SecondEntryLeavesTheSameTree)
{
  initPlugin(manager);
  const auto* first = g_luakel_kel_plugin.get();
  evaluate("kel.Vec3.ofAScript = 1 return ''");
  const std::string tree = evaluate(dumpTree);
  initPlugin(manager);
  EXPECT_NE(g_luakel_kel_plugin.get(), first);
  EXPECT_EQ(evaluate(dumpTree), tree);
  EXPECT_EQ(manager->getScriptPlugins().size(), 2U);

  auto* plugin = static_cast<LuaPluginKel*>(g_luakel_kel_plugin.get());
  plugin->close();
  plugin->addGlobals();
  EXPECT_EQ(lua_gettop(L), 0);
  EXPECT_EQ(evaluate(dumpTree), tree);
}

TEST_F(Plugin, EveryDeclaredPackageOpensAloneInAFreshState)
{
  std::set<std::string> declared, all;
  for (const kelLua::plugin::Package& package : kelLua::plugin::openOrder()) {
    all.insert(package.name);
    if (!package.open) continue;
    declared.insert(package.name);
    lua_State* fresh = manager->openState();
    EXPECT_EQ(package.open(fresh), 1) << package.name;
    EXPECT_EQ(package.open(fresh), 1) << package.name;
  }
  EXPECT_FALSE(all.contains("kel_OrthoMatrix3x3")) << "for native callers only";
  std::cout << declared.size() << " of " << all.size() << " packages are declared\n";
  EXPECT_EQ(all.size() + 1, kelLua::plugin::openOrder().size()) << "only kel_types stands twice";
  std::istringstream complete(
      "kel_version kel_kel kel_Vec2 kel_Vec3 kel_Vec3f kel_Vec4 kel_Vec4f kel_Math kel_TimeStamp "
      "kel_Logger kel_Quat kel_EulerAngles kel_Matrix3x3 kel_Frame kel_SPDMatrix3x3 kel_EulerConvention "
      "kel_Bound kel_Interval kel_Plane kel_AffineMatrix4x4 kel_RangeReal kel_Random kel_Uuid "
      "kel_ObserverFrame kel_Timer kel_Clock kelSDK_Simulation kel_HighAccuracyTimer "
      "kelSDK_EventListener kelSDK_StepEventListener kelData_Type kelData_Attribute kelData_EntityModel "
      "kelData_EntityStorage kelData_EntityPtr");
  for (std::string name; complete >> name;) EXPECT_TRUE(declared.contains(name)) << name;
}
