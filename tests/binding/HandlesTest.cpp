#include "kelLua/Handles.h"
#include "kel/Referenced.h"
#include "kelLua/LuaCall.h"
#include "kelLua/LuaCallback.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/push.h"
#include <gtest/gtest.h>
#include <thread>
#include <tolua++.h>

namespace {

namespace handles = kelLua::handles;

class Part
{
public:
  int value = 0;
};

class Whole : public kel::Referenced
{
public:
  Part part;
};

class Adapter : public kel::Referenced, public kelLua::LuaCallback
{
public:
  Adapter() : LuaCallback(this, "test::Adapter::Adapter()") {}
  static int alive() { return static_cast<int>(kelLua::ScriptManager::instance()->getNumLuaEntries()); }
};

int collectAdapter(lua_State* L)
{
  auto* adapter = static_cast<Adapter*>(tolua_tousertype(L, 1, nullptr));
  const bool livesOn = adapter->getReferenceCount() > 1;
  adapter->unreference();
  if (livesOn) handles::keepAdapter(L, adapter->object());
  return 0;
}

class Handles : public testing::Test
{
protected:
  Handles() : L(kelLua::ScriptManager::instance(true)->openState())
  {
    for (const char* type : {"test::Whole", "test::Part", "test::Adapter"}) tolua_usertype(L, type);
    tolua_module(L, nullptr, 0);
    tolua_beginmodule(L, nullptr);
    tolua_cclass(L, "Whole", "test::Whole", "", nullptr);
    tolua_cclass(L, "Part", "test::Part", "", nullptr);
    tolua_cclass(L, "Adapter", "test::Adapter", "", collectAdapter);
    tolua_endmodule(L);
  }
  ~Handles() override { kelLua::ScriptManager::instance()->closeState(); }

  /// Gives the value on top of the stack a global name.
  void name(const char* global) { lua_setglobal(L, global); }
  void* object(const char* global)
  {
    lua_getglobal(L, global);
    void* found = tolua_tousertype(L, -1, nullptr);
    lua_pop(L, 1);
    return found;
  }
  std::string run(const std::string& chunk)
  {
    if (luaL_dostring(L, chunk.c_str()) == 0) return "";
    std::string text = lua_tostring(L, -1);
    lua_pop(L, 1);
    return text;
  }
  void collect()
  {
    for (int i = 0; i < 3; ++i) lua_gc(L, LUA_GCCOLLECT, 0);
  }
  /// The handle that `new_local` makes: owned, and the home of the script's functions.
  Adapter* makeAdapter(const char* global)
  {
    auto* adapter = new Adapter;
    handles::pushCounted(L, adapter, adapter, kelLua::wrap::type("test::Adapter"));
    adapter->reference();
    handles::collectTop(L, sizeof(Adapter));
    handles::adapterTop(L, adapter->object(), true);
    name(global);
    return adapter;
  }
  bool callPost(Adapter* adapter, std::string* error = nullptr)
  {
    kelLua::LuaCall call(L, kelStream::ClassInformation("virtual void test::Adapter::post()"),
                         adapter->object());
    if (!call.m_valid) return false;
    const bool done = call.call(0);
    if (error) *error = call.getLastError();
    return done;
  }

  lua_State* L;
};

} // namespace

TEST_F(Handles, NewObjectAtAnOldAddressGetsItsOwnHandle)
{
  // The same memory twice, whatever the allocator does.
  alignas(Whole) unsigned char memory[sizeof(Whole)];
  struct Placed : Whole
  {
    static void destroy(Placed* placed) { placed->~Placed(); }
  };
  static_assert(sizeof(Placed) == sizeof(Whole));
  auto* first = new (memory) Placed;
  handles::pushCounted(L, first, first, kelLua::wrap::type("test::Whole"));
  name("first");
  Placed::destroy(first);
  auto* second = new (memory) Placed;
  handles::pushCounted(L, second, second, kelLua::wrap::type("test::Whole"));
  name("second");
  EXPECT_EQ(object("first"), nullptr);
  EXPECT_EQ(object("second"), second);
  Placed::destroy(second);
}

TEST_F(Handles, DeathOnAnotherThreadIsSeenAtTheNextPush)
{
  auto* whole = new Whole;
  whole->reference();
  handles::pushCounted(L, whole, whole, kelLua::wrap::type("test::Whole"));
  name("whole");
  std::thread([whole] { whole->unreference(); }).join();
  Part other;
  handles::push(L, &other, kelLua::wrap::type("test::Part"));
  EXPECT_EQ(object("whole"), nullptr);
}

TEST_F(Handles, AdapterThatTheEngineHoldsKeepsItsFunctions)
{
  Adapter* adapter = makeAdapter("l");
  EXPECT_EQ(run("calls = 0  function l:post() assert(tolua.type(self) == 'test::Adapter') calls = calls + 1 "
                "end  l = nil"),
            "");
  {
    const kel::ref_ptr<Adapter> engine(adapter);
    for (int i = 0; i < 3; ++i) {
      collect();
      EXPECT_TRUE(callPost(adapter));
    }
    EXPECT_EQ(adapter->getReferenceCount(), 1U);
    handles::pushCounted(L, adapter, adapter, kelLua::wrap::type("test::Adapter"));
    name("view");
    EXPECT_EQ(run("assert(calls == 3 and view.post)"), "");
    EXPECT_EQ(lua_gettop(L), 0);
  }
  EXPECT_EQ(Adapter::alive(), 0);
  EXPECT_EQ(object("view"), nullptr);
}

TEST_F(Handles, FunctionsGivenThroughAViewStay)
{
  const kel::ref_ptr<Adapter> engine(new Adapter);
  handles::pushCounted(L, engine.get(), engine.get(), kelLua::wrap::type("test::Adapter"));
  name("view");
  EXPECT_FALSE(callPost(engine.get()));
  EXPECT_EQ(run("function view:post() end  view = nil"), "");
  collect();
  EXPECT_TRUE(callPost(engine.get()));
}

TEST_F(Handles, CallReportsFailureAndLeavesTheStack)
{
  const kel::ref_ptr<Adapter> adapter(makeAdapter("l"));
  std::string error;
  run("function l:post() error('broken') end");
  EXPECT_FALSE(callPost(adapter.get(), &error));
  EXPECT_EQ(error, "[string \"function l:post() error('broken') end\"]:1: broken");
  run("l.post = function() error({}) end");
  EXPECT_FALSE(callPost(adapter.get(), &error));
  EXPECT_EQ(error, "(error object is a table value)");
  run("tolua.setpeer(l, setmetatable({}, {__index = {post = function() inherited = true end}}))");
  EXPECT_TRUE(callPost(adapter.get()));
  EXPECT_EQ(run("assert(inherited)"), "");
  run("tolua.setpeer(l, setmetatable({}, {__index = function() error('no') end}))");
  EXPECT_FALSE(callPost(adapter.get()));
  EXPECT_EQ(lua_gettop(L), 0);
}

TEST_F(Handles, AdapterOutlivesItsState)
{
  const kel::ref_ptr<Adapter> adapter(makeAdapter("l"));
  run("function l:post() end");
  kelLua::ScriptManager::instance()->closeState();
  kelLua::LuaCall call(adapter->luaState(), kelStream::ClassInformation("void test::Adapter::post()"),
                       adapter->object());
  EXPECT_FALSE(call.m_valid);
  EXPECT_EQ(adapter->getReferenceCount(), 1U);
}

TEST_F(Handles, DeletedOwnerClearsItsParts)
{
  auto* value = new Part[2];
  handles::push(L, value, kelLua::wrap::type("test::Part"));
  handles::pushMember(L, value + 1, kelLua::wrap::type("test::Part"), false);
  lua_insert(L, 1);
  handles::pushMember(L, &value[1].value, kelLua::wrap::type("test::Whole"), false);
  handles::clear(L, 2);
  for (int i = 1; i <= 3; ++i) EXPECT_EQ(tolua_tousertype(L, i, nullptr), nullptr);
  delete[] value;
}
