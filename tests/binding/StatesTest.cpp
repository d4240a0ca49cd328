// Several Lua states with the same packages, and a plug-in with the binding library's own wrappers in the
// same state.
#include "Guest.h"
#include "kelLua/ScriptManager.h"
#include <array>
#include <gtest/gtest.h>
#include <lua.hpp>
#include <memory>

int tolua_test_Vector_open(lua_State* L);
int tolua_test_Body_open(lua_State* L);
int tolua_test_Family_open(lua_State* L);
int tolua_test_Guest_open(lua_State* L);

namespace {

using Open = int (*)(lua_State*);

/// A state that a script manager does not know.
class State
{
public:
  explicit State(const std::vector<Open>& packages) : m_state(luaL_newstate(), lua_close)
  {
    luaL_openlibs(get());
    for (Open open : packages) open(get());
    run("function collect() for _ = 1, 3 do collectgarbage() end end");
  }

  lua_State* get() { return m_state.get(); }

  /// Runs a script, which tests by `assert`.
  void run(const std::string& script)
  {
    EXPECT_EQ(luaL_dostring(get(), script.c_str()), 0) << script << "\n" << lua_tostring(get(), -1);
    lua_settop(get(), 0);
  }

private:
  std::unique_ptr<lua_State, void (*)(lua_State*)> m_state;
};

const std::vector<Open> OURS = {tolua_test_Vector_open, tolua_test_Body_open, tolua_test_Family_open};
const std::vector<Open> OURS_BACKWARDS(OURS.rbegin(), OURS.rend());

/// Everything that a state remembers between calls, used once.
const char* const WORK =
    "local v, d, s, t = test.Vector(3, 0, 4), test.Device(), test.Servo(), test.Text('t') "
    "assert(v:length() == 5 and (v + v).x == 6 and v[2] == 4 and v == test.Vector(3, 0, 4)) "
    "assert(s:base() == 'base of servo' and s.power == 1 and s.angle == 30 and s.HIGH == 20 and s.nothing == "
    "nil) "
    "s.other = d assert(s.other == d and rawequal(test.asDevice(s), s)) s.mine = 4 assert(s.mine == 4) "
    "assert(test.Chooser():pick(s) == 'servo' and test.Chooser():pick('x') == 'string x') "
    "assert(t:append('u'):copy():get() == 'tu') "
    "for _, wrong in ipairs {d, io.stdout, test.Vector, t} do assert(not pcall(v.length, wrong)) end ";

class States : public testing::Test
{
protected:
  ~States() override { EXPECT_EQ(test::texts(), 0); }
};

} // namespace

TEST_F(States, HaveClassesOfTheirOwn)
{
  State one(OURS), two(OURS);
  const char* const look = "s = s or test.Servo() seen = s.added return seen";
  for (State* state : {&one, &two}) state->run(look);
  one.run("test.Device.added = 'first'");
  for (State* state : {&one, &two}) state->run(look);
  one.run("assert(seen == 'first')");
  two.run("assert(seen == nil) test.Servo.added = 'second'");
  for (State* state : {&one, &two}) state->run(look);
  one.run("assert(seen == 'first' and s:level() == 3) function test.Servo:level() return 'mine' end");
  two.run("assert(seen == 'second' and s:level() == 3)");
  one.run("assert(s:level() == 'mine')");
}

TEST_F(States, ShareObjectsAndNotTheirFields)
{
  State one(OURS), two(OURS);
  one.run("b = test.Body('shared') b.mine = 1 test.keep(b)");
  two.run("b = test.keptBody() assert(b:getName() == 'shared' and b.mine == nil) b.mine = 2");
  one.run("assert(b.mine == 1 and b:getReferenceCount() == 2) b = nil collect()");
  two.run("assert(b.mine == 2 and b:getReferenceCount() == 1)");
  one.run("b = test.keptBody() assert(b:getName() == 'shared' and b.mine == nil)");
  two.run("test.keep(nil)");
  for (State* state : {&one, &two}) {
    state->run(
        "local ok, text = pcall(b.getName, b) assert(text:find(\"invalid 'self' in function 'getName'\"))");
    state->run("collect() b = test.Body('new') assert(b:getName() == 'new')");
  }
}

TEST_F(States, EndBeforeAnObjectThatTheyShow)
{
  const int before = test::bodies();
  State last(OURS);
  last.run("b = test.Body('long') test.keep(b)");
  for (int i = 0; i < 3; ++i) {
    State brief(i % 2 ? OURS : OURS_BACKWARDS);
    brief.run("b = test.keptBody() b.mine = {b} assert(b:getName() == 'long')");
    brief.run(WORK);
  }
  last.run("assert(b:getName() == 'long' and b:getReferenceCount() == 2) b = nil collect() test.keep(nil)");
  EXPECT_EQ(test::bodies(), before);
}

TEST_F(States, ComeAndGo)
{
  const int devices = test::devices();
  auto stays = std::make_unique<State>(OURS);
  for (int i = 0; i < 20; ++i) {
    State brief(i % 3 ? OURS : OURS_BACKWARDS);
    for (int filler = 0; filler < i; ++filler) lua_newuserdata(brief.get(), 40); // classes lie elsewhere
    brief.run(WORK);
    stays->run(WORK);
    brief.run("list = {} for i = 1, 20 do list[i] = test.Servo() list[i].text = test.Text('x') end");
    if (i % 5 == 0) stays = std::make_unique<State>(OURS);
  }
  stays.reset();
  EXPECT_EQ(test::devices(), devices);
}

TEST_F(States, CloseWithTheManagersOneReopened)
{
  auto* manager = kelLua::ScriptManager::instance(true);
  State other(OURS);
  for (int i = 0; i < 3; ++i) {
    lua_State* L = manager->openState();
    for (Open open : OURS) open(L);
    EXPECT_EQ(luaL_dostring(L, WORK), 0) << lua_tostring(L, -1);
    EXPECT_EQ(luaL_dostring(L, "test.keep(test.Body('of the manager'))"), 0);
    other.run("b = test.keptBody() assert(b:getName() == 'of the manager')");
    manager->closeState();
    other.run("assert(b:getName() == 'of the manager')");
    other.run(WORK);
  }
  test::keep(nullptr);
}

/// Values of a guest that came later have no finaliser.
extern "C" const char* __lsan_default_suppressions();
const char* __lsan_default_suppressions() { return "leak:guest_sum"; }

namespace {

/// The packages in the order of their letters: guest, vector, family.
std::vector<Open> packages(const std::string& letters)
{
  std::vector<Open> list;
  for (char letter : letters)
    list.push_back(letter == 'g'   ? tolua_test_Guest_open
                   : letter == 'v' ? tolua_test_Vector_open
                                   : tolua_test_Family_open);
  return list;
}

/// Our packages and the guest's in one state.
class Guests : public testing::TestWithParam<const char*>
{
protected:
  Guests() : m_opaque(test::countOpaque()), m_devices(test::devices()), m_texts(test::texts())
  {
    m_state = std::make_unique<State>(packages(GetParam()));
  }
  /// Every object goes once.
  ~Guests() override
  {
    m_state.reset();
    EXPECT_EQ(test::countOpaque(), m_opaque);
    EXPECT_EQ(test::devices(), m_devices);
    EXPECT_EQ(test::texts(), m_texts);
  }
  void run(const std::string& script) { m_state->run(script); }

private:
  int m_opaque, m_devices, m_texts;
  std::unique_ptr<State> m_state;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Orders, Guests, testing::Values("fvg", "gfv", "vgf"),
                         [](const auto& test) { return std::string(test.param); });

TEST_P(Guests, TakeOurValuesAndGiveThem)
{
  run("local v = test.Vector(3, 0, 4) assert(guest.length(v) == 5 and guest.length(v * 2) == 10)");
  run("local s = guest.sum(test.Vector(1), test.Vector(2) + test.Vector(3)) "
      "assert(s.x == 6 and s[1] == 6 and (s + s).x == 12 and s:length() > 10 and tolua.type(s) == "
      "'test::Vector')");
  run("local s = guest.sum(test.Vector(1), test.Vector(2)) s:set(1, 2, 3) assert(s == test.Vector(1, 2, 3))");
  run("for i = 1, 200 do local s = guest.sum(test.Vector(i), test.Vector(i)) + test.Vector(1) s.mine = i end "
      "collect()");
  run("assert(not pcall(guest.length, test.Text('x')) and not pcall(guest.length) and not "
      "pcall(guest.length, nil))");
}

TEST_P(Guests, HaveTheirValuesFinalisedWhereTheyWereFirst)
{
  const bool isFirst = std::string(GetParam()).front() == 'g';
  run(std::string(
          "local v = guest.sum(test.Vector(1), test.Vector(2)) assert((getmetatable(v).__gc ~= nil) == ") +
      (isFirst ? "true)" : "false)"));
}

TEST_P(Guests, TakeOurObjectsAndGiveThem)
{
  run("local s = test.Servo() s.mine = 1 local e = guest.echo(s) "
      "assert(rawequal(e, s) and e.mine == 1 and e:level() == 3 and tolua.type(e) == 'test::Servo')");
  run("local d = test.Device() assert(guest.echo(nil) == nil and "
      "tolua.type(guest.look(d)):match('test::Device$'))");
  run("local d = test.Device() guest.spot(d):set(4, 5) assert(d.spot.x == 4 and guest.spot(d).y == 5)");
  run("local d = test.Device() local view = d.spot assert(rawequal(guest.spot(d), view))");
  run("local d = test.Device() d:reference() guest.echo(d) d:unreference() d = nil collect()");
}

TEST_P(Guests, GiveValuesThatAreCollectedOnce)
{
  run("for i = 1, 100 do local t = guest.text('a') + test.Text('b') assert(t:get() == 'ab') end collect()");
  run("local t = guest.text('a') assert(rawequal(guest.append(t, 'b'), t) and t:get() == 'ab')");
  run("local t = test.Text('a') assert(rawequal(guest.append(t, 'b'), t) and t:append('c'):get() == 'abc')");
  run("assert(guest.append(test.Text('a'):copy(), 'x'):get() == 'ax') collect()");
  run("local t = guest.text('x') tolua.takeownership(t) t = nil collect()");
}

TEST_P(Guests, DeriveFromOurClasses)
{
  run("local g = guest.Gadget() assert(g:gears() == 5 and g:kind() == 'gadget' and g:level() == 1)");
  run("local g = guest.Gadget() g.power = 4 g.mine = 5 assert(g.power == 4 and g.mine == 5 and g.HIGH == 2)");
  run("function test.Device:added() return 'added ' .. self:kind() end");
  run("assert(guest.Gadget():added() == 'added gadget')");
  run("local g = guest.Gadget() assert(test.Chooser():downward(g) == 'device' and not pcall(test.asDrive, "
      "g))");
  // A handle of its own where the guest came first, since its class knew no base of our class then.
  run("local g = guest.Gadget() assert(test.asDevice(g):level() == 1 and test.Chooser():pick(g) == "
      "'gadget')");
  run("local g, d = guest.Gadget(), test.Device() d.other = g assert(d.other:kind() == 'gadget')");
}

TEST_P(Guests, LeaveOurClassesAsTheyAre)
{
  run("local v = test.Vector(1, 2, 3) assert((-v).x == -1 and tostring(v) == 'Vector(1, 2, 3)')");
  run("local v = test.Vector(1, 2, 3) assert(v == v * 1 and v * 1 == v and v[1] == 2 and not rawequal(v, v * "
      "1))");
  run("test.Servo.added = 5 assert(test.Servo().added == 5 and test.Device().added == nil and "
      "test.Servo.base)");
  run("test.Servo():connect(test.Device()) assert(test.Device.HIGH == 2 and test.Servo.LOW == 1)");
  run("assert(tolua.cast(test.Vector(1), 'no::Type') == nil)");
}

TEST_P(Guests, LeaveValuesToTheirHandles)
{
  run("local v = test.Vector(1) tolua.takeownership(v) v = nil collect()");
}

TEST_P(Guests, GiveOpaqueValues)
{
  run("for i = 1, 20 do local o = guest.opaque(i) assert(tolua.type(o) == 'test::Opaque') end collect()");
  run("local o = test.makeOpaque(4) assert(test.readOpaque(o) == 4) assert(test.readOpaque(guest.opaque(5)) "
      "== 5)");
}
