// The binding written by hand: one function for each member that the rows use, with all of its overloads.
#include "Bindings.h"
#include "LimitTypes.h"
#include "kel/Bound.h"
#include "kel/EulerAngles.h"
#include "kel/Random.h"
#include "kel/typedContainers.h"
#include "kelCollide/Box.h"
#include "kelSDK/Simulation.h"
#include "kelSDK/StepEventListener.h"

namespace bench {

namespace {

using namespace limit;
using kel::AffineMatrix4x4;
using kel::Bound3;
using kel::EulerAngles;
using kel::Quat;
using kel::RealVector;
using kel::RigidBody;
using kel::UniformRealGenerator;
using kel::Vec3;
using kel::Vec4;
using kelCollide::Box;
using kelCollide::Shape;
using kelSDK::EventListener;
using kelSDK::Simulation;

Vec3 vectorOfNumbers(lua_State* L, int first)
{
  return Vec3(luaL_checknumber(L, first), luaL_checknumber(L, first + 1), luaL_checknumber(L, first + 2));
}

/// A vector, or its three elements, behind self.
Vec3 vectorArgument(lua_State* L)
{
  if (lua_gettop(L) == 4) return vectorOfNumbers(L, 2);
  expectArguments(L, 2);
  return value<Vec3>(L, 2);
}

int newVec3(lua_State* L)
{
  switch (lua_gettop(L)) {
  case 1:
    return pushValue(L, Vec3());
  case 2:
    return pushValue(L, isValue<Vec3>(L, 2) ? value<Vec3>(L, 2) : Vec3(luaL_checknumber(L, 2)));
  default:
    expectArguments(L, 4);
    return pushValue(L, vectorOfNumbers(L, 2));
  }
}

int length(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushnumber(L, value<Vec3>(L, 1).length());
  return 1;
}

int x(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushnumber(L, value<Vec3>(L, 1).x());
  return 1;
}

int set(lua_State* L)
{
  Vec3& v = value<Vec3>(L, 1);
  if (lua_gettop(L) == 3) {
    const lua_Number index = luaL_checknumber(L, 3);
    luaL_argcheck(L, index >= 0 && index < 3, 3, "index out of range");
    v.set(luaL_checknumber(L, 2), static_cast<std::size_t>(index));
  } else {
    v = vectorArgument(L);
  }
  return 0;
}

int plus(lua_State* L) { return pushValue(L, value<Vec3>(L, 1) + value<Vec3>(L, 2)); }

int times(lua_State* L)
{
  const Vec3& v = value<Vec3>(L, 1);
  if (lua_type(L, 2) == LUA_TNUMBER) return pushValue(L, v * lua_tonumber(L, 2));
  lua_pushnumber(L, v * value<Vec3>(L, 2));
  return 1;
}

/// A vector inside a bound, which scripts can only read.
int timesView(lua_State* L)
{
  const Vec3& v = *object<const Vec3>(L, 1);
  if (lua_type(L, 2) == LUA_TNUMBER) return pushValue<Vec3>(L, v * lua_tonumber(L, 2));
  lua_pushnumber(L, v * value<Vec3>(L, 2));
  return 1;
}

int random(lua_State* L)
{
  expectArguments(L, 3);
  luaL_checktype(L, 1, LUA_TTABLE);
  return pushValue(L, Vec3::random(luaL_checknumber(L, 2), luaL_checknumber(L, 3)));
}

int newQuat(lua_State* L)
{
  if (lua_gettop(L) == 1) return pushValue(L, Quat());
  if (lua_gettop(L) == 3) return pushValue(L, Quat(luaL_checknumber(L, 2), value<Vec3>(L, 3)));
  expectArguments(L, 5);
  return pushValue(L, Quat(luaL_checknumber(L, 2), luaL_checknumber(L, 3), luaL_checknumber(L, 4),
                           luaL_checknumber(L, 5)));
}

int turn(lua_State* L)
{
  const Quat& q = value<Quat>(L, 1);
  if (lua_type(L, 2) == LUA_TNUMBER) return pushValue<Quat>(L, q * lua_tonumber(L, 2));
  if (isValue<Quat>(L, 2)) return pushValue<Quat>(L, q * value<Quat>(L, 2));
  return pushValue<Vec3>(L, q * value<Vec3>(L, 2));
}

int newMatrix(lua_State* L)
{
  if (lua_gettop(L) == 1) return pushValue(L, AffineMatrix4x4());
  if (lua_gettop(L) == 2) return pushValue(L, AffineMatrix4x4(value<Quat>(L, 2)));
  expectArguments(L, 3);
  return pushValue(L, AffineMatrix4x4(value<Quat>(L, 2), value<Vec3>(L, 3)));
}

int transform(lua_State* L)
{
  const AffineMatrix4x4& m = value<AffineMatrix4x4>(L, 1);
  if (isValue<Vec3>(L, 2)) return pushValue<Vec3>(L, m * value<Vec3>(L, 2));
  if (isValue<Vec4>(L, 2)) return pushValue<Vec4>(L, m * value<Vec4>(L, 2));
  return pushValue<AffineMatrix4x4>(L, m * value<AffineMatrix4x4>(L, 2));
}

int transformPoint(lua_State* L)
{
  expectArguments(L, 2);
  return pushValue<Vec3>(L, value<AffineMatrix4x4>(L, 1).transformPoint(value<Vec3>(L, 2)));
}

int getTranslate(lua_State* L)
{
  expectArguments(L, 1);
  return pushValue<Vec3>(L, value<AffineMatrix4x4>(L, 1).getTranslate());
}

int newEulerAngles(lua_State* L)
{
  const int convention = static_cast<int>(luaL_optinteger(L, 5, 0));
  return pushValue(
      L, EulerAngles(luaL_checknumber(L, 2), luaL_checknumber(L, 3), luaL_checknumber(L, 4), convention));
}

int getAngle(lua_State* L)
{
  const EulerAngles& angles = value<EulerAngles>(L, 1);
  const lua_Number index = luaL_checknumber(L, 2);
  luaL_argcheck(L, index >= 0 && index < 3, 2, "index out of range");
  lua_pushnumber(L, angles[static_cast<std::size_t>(index)]);
  return 1;
}

int newBound3(lua_State* L)
{
  if (lua_gettop(L) == 1) return pushValue(L, Bound3());
  expectArguments(L, 3);
  return pushValue(L, Bound3(value<Vec3>(L, 2), value<Vec3>(L, 3)));
}

int min(lua_State* L)
{
  expectArguments(L, 1);
  return pushMember<const Vec3>(L, &value<Bound3>(L, 1).min());
}

int newGenerator(lua_State* L)
{
  if (lua_gettop(L) == 1) return pushValue(L, UniformRealGenerator());
  if (lua_gettop(L) == 3)
    return pushValue(L, UniformRealGenerator(luaL_checknumber(L, 2), luaL_checknumber(L, 3)));
  expectArguments(L, 4);
  const auto seed = static_cast<kel::UInt32>(luaL_checkinteger(L, 2));
  return pushValue(L, UniformRealGenerator(seed, luaL_checknumber(L, 3), luaL_checknumber(L, 4)));
}

int rand(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushnumber(L, value<UniformRealGenerator>(L, 1).rand());
  return 1;
}

int newRealVector(lua_State* L)
{
  expectArguments(L, 1);
  new (lua_newuserdata(L, sizeof(RealVector))) RealVector;
  lua_rawgeti(L, LUA_REGISTRYINDEX, Class<RealVector>::reference);
  lua_setmetatable(L, -2);
  return 1;
}

int freeRealVector(lua_State* L)
{
  value<RealVector>(L, 1).~RealVector();
  return 0;
}

int pushBack(lua_State* L)
{
  expectArguments(L, 2);
  value<RealVector>(L, 1).push_back(luaL_checknumber(L, 2));
  return 0;
}

int size(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushnumber(L, static_cast<lua_Number>(value<RealVector>(L, 1).size()));
  return 1;
}

int clear(lua_State* L)
{
  expectArguments(L, 1);
  value<RealVector>(L, 1).clear();
  return 0;
}

int newRigidBody(lua_State* L)
{
  const char* name = luaL_optstring(L, 2, "");
  return pushObject<RigidBody>(L, new RigidBody(kel::Name(name)));
}

int getPosition(lua_State* L)
{
  expectArguments(L, 1);
  return pushValue<Vec3>(L, object<RigidBody>(L, 1)->getPosition());
}

int setPosition(lua_State* L)
{
  object<RigidBody>(L, 1)->setPosition(vectorArgument(L));
  return 0;
}

int setVelocity(lua_State* L)
{
  object<RigidBody>(L, 1)->setVelocity(vectorArgument(L));
  return 0;
}

int setName(lua_State* L)
{
  expectArguments(L, 2);
  object<RigidBody>(L, 1)->setName(kel::Name(luaL_checkstring(L, 2)));
  return 1;
}

int getFrame(lua_State* L)
{
  expectArguments(L, 1);
  return pushObject<kel::Frame>(L, object<RigidBody>(L, 1)->getFrame());
}

int getLocalTranslate(lua_State* L)
{
  expectArguments(L, 1);
  return pushValue<Vec3>(L, object<kel::Frame>(L, 1)->getLocalTranslate());
}

int getMassProperties(lua_State* L)
{
  expectArguments(L, 1);
  return pushMember(L, object<RigidBody>(L, 1)->getMassProperties());
}

int newBox(lua_State* L) { return pushObject<Box, Shape>(L, new Box(vectorArgument(L))); }

int getType(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushinteger(L, object<Shape, Box>(L, 1)->getType());
  return 1;
}

int lerp(lua_State* L)
{
  expectArguments(L, 3);
  lua_pushnumber(L, kel::lerp(luaL_checknumber(L, 1), luaL_checknumber(L, 2), luaL_checknumber(L, 3)));
  return 1;
}

/// A listener whose functions lie in its handle's own table.
class Listener : public kelSDK::StepEventListener
{
public:
  explicit Listener(lua_State* L) : m_lua(L) {}
  void post(const kel::TimeStamp& time) override
  {
    if (!pushFunction("post")) return;
    lua_pushnumber(m_lua, time);
    call(2);
  }
  void addNotification() override
  {
    if (pushFunction("addNotification")) call(1);
  }

private:
  /// Pushes the function and this object; nothing if there is no such function.
  bool pushFunction(const char* name)
  {
    luaL_checkstack(m_lua, LUA_MINSTACK, name);
    pushObject<Listener, EventListener>(m_lua, this);
    lua_getfenv(m_lua, -1);
    lua_pushstring(m_lua, name);
    lua_rawget(m_lua, -2);
    lua_replace(m_lua, -2);
    lua_insert(m_lua, -2);
    if (lua_isfunction(m_lua, -2)) return true;
    lua_pop(m_lua, 2);
    return false;
  }
  void call(int arguments)
  {
    if (lua_pcall(m_lua, arguments, 0, 0) != 0) lua_pop(m_lua, 1);
  }

  lua_State* m_lua;
};

int newListener(lua_State* L)
{
  pushObject<Listener, EventListener>(L, new Listener(L));
  lua_newtable(L);
  lua_setfenv(L, -2);
  return 1;
}

int getMask(lua_State* L)
{
  expectArguments(L, 1);
  lua_pushinteger(L, object<EventListener, Listener>(L, 1)->getMask());
  return 1;
}

/// A field of the listener's own, else the method in the table of methods, which is the upvalue.
int getListenerField(lua_State* L)
{
  object<EventListener, Listener>(L, 1);
  lua_getfenv(L, 1);
  lua_pushvalue(L, 2);
  lua_rawget(L, -2);
  if (!lua_isnil(L, -1)) return 1;
  lua_pushvalue(L, 2);
  lua_rawget(L, lua_upvalueindex(1));
  return 1;
}

int setListenerField(lua_State* L)
{
  object<EventListener, Listener>(L, 1);
  lua_getfenv(L, 1);
  lua_insert(L, 2);
  lua_rawset(L, 2);
  return 0;
}

int newSimulation(lua_State* L)
{
  expectArguments(L, 1);
  return pushObject<Simulation>(L, new Simulation);
}

/// Bodies and listeners stand for all that can be added.
int add(lua_State* L)
{
  Simulation* simulation = object<Simulation>(L, 1);
  const void* type = typeOf(L, 2);
  if (type && type == Class<Listener>::metatable) {
    const int priority = static_cast<int>(luaL_optinteger(L, 3, 50));
    lua_pushboolean(L, simulation->add(object<EventListener, Listener>(L, 2), priority));
  } else if (type && type == Class<RigidBody>::metatable) {
    const bool withGeometries = lua_isnoneornil(L, 3) || lua_toboolean(L, 3);
    lua_pushboolean(L, simulation->add(object<RigidBody>(L, 2), withGeometries));
  } else {
    luaL_typerror(L, 2, "body or listener");
  }
  return 1;
}

constexpr luaL_Reg NONE[] = {{nullptr, nullptr}};
constexpr luaL_Reg VEC3_EVENTS[] = {{"__add", plus}, {"__mul", times}, {nullptr, nullptr}};
constexpr luaL_Reg VEC3[] = {{"length", length}, {"x", x}, {"set", set}, {nullptr, nullptr}};
constexpr luaL_Reg VEC3_STATIC[] = {{"random", random}, {nullptr, nullptr}};
constexpr luaL_Reg QUAT_EVENTS[] = {{"__mul", turn}, {nullptr, nullptr}};
constexpr luaL_Reg VIEW_EVENTS[] = {{"__mul", timesView}, {nullptr, nullptr}};
constexpr luaL_Reg MATRIX_EVENTS[] = {{"__mul", transform}, {nullptr, nullptr}};
constexpr luaL_Reg MATRIX[] = {
    {"transformPoint", transformPoint}, {"getTranslate", getTranslate}, {nullptr, nullptr}};
constexpr luaL_Reg ANGLES_EVENTS[] = {{"__index", getAngle}, {nullptr, nullptr}};
constexpr luaL_Reg BOUND[] = {{"min", min}, {nullptr, nullptr}};
constexpr luaL_Reg NUMBERS_EVENTS[] = {{"__gc", freeRealVector}, {nullptr, nullptr}};
constexpr luaL_Reg NUMBERS[] = {
    {"push_back", pushBack}, {"size", size}, {"clear", clear}, {nullptr, nullptr}};
constexpr luaL_Reg GENERATOR[] = {{"rand", rand}, {nullptr, nullptr}};
constexpr luaL_Reg BODY_EVENTS[] = {{"__gc", release<RigidBody>}, {nullptr, nullptr}};
constexpr luaL_Reg BODY[] = {{"getPosition", getPosition},
                             {"setPosition", setPosition},
                             {"setVelocity", setVelocity},
                             {"setName", setName},
                             {"getFrame", getFrame},
                             {"getMassProperties", getMassProperties},
                             {nullptr, nullptr}};
constexpr luaL_Reg FRAME_EVENTS[] = {{"__gc", release<kel::Frame>}, {nullptr, nullptr}};
constexpr luaL_Reg FRAME[] = {{"getLocalTranslate", getLocalTranslate}, {nullptr, nullptr}};
constexpr luaL_Reg SHAPE_EVENTS[] = {{"__gc", release<Shape>}, {nullptr, nullptr}};
constexpr luaL_Reg SHAPE[] = {{"getType", getType}, {nullptr, nullptr}};
constexpr luaL_Reg LISTENER_EVENTS[] = {
    {"__gc", release<EventListener>}, {"__newindex", setListenerField}, {nullptr, nullptr}};
constexpr luaL_Reg LISTENER[] = {{"getMask", getMask}, {nullptr, nullptr}};
constexpr luaL_Reg SIMULATION_EVENTS[] = {{"__gc", release<Simulation>}, {nullptr, nullptr}};
constexpr luaL_Reg SIMULATION[] = {{"add", add}, {nullptr, nullptr}};
constexpr luaL_Reg FUNCTIONS[] = {{"lerp", lerp}, {nullptr, nullptr}};

void addHandles(lua_State* L)
{
  lua_newtable(L);
  lua_createtable(L, 0, 1);
  lua_pushliteral(L, "v");
  lua_setfield(L, -2, "__mode");
  lua_setmetatable(L, -2);
  s_handles = luaL_ref(L, LUA_REGISTRYINDEX);
}

void addClasses(lua_State* L)
{
  addClass<Vec3>(L, "kel.Vec3", VEC3_EVENTS, {VEC3});
  addClass<Quat>(L, "kel.Quat", QUAT_EVENTS, {});
  addClass<const Vec3>(L, "const kel.Vec3", VIEW_EVENTS, {});
  addClass<Vec4>(L, "kel.Vec4", NONE, {});
  addClass<AffineMatrix4x4>(L, "kel.AffineMatrix4x4", MATRIX_EVENTS, {MATRIX});
  addClass<EulerAngles>(L, "kel.EulerAngles", ANGLES_EVENTS, {});
  addClass<Bound3>(L, "kel.Bound3", NONE, {BOUND});
  addClass<UniformRealGenerator>(L, "kel.UniformRealGenerator", NONE, {GENERATOR});
  addClass<RealVector>(L, "kel.RealVector", NUMBERS_EVENTS, {NUMBERS});
  addClass<RigidBody>(L, "kel.RigidBody", BODY_EVENTS, {BODY});
  addClass<kel::Frame>(L, "kel.Frame", FRAME_EVENTS, {FRAME});
  addClass<kel::MassProperties>(L, "kel.MassProperties", NONE, {});
  addClass<Box>(L, "kelCollide.Box", SHAPE_EVENTS, {SHAPE});
  addClass<Simulation>(L, "kelSDK.Simulation", SIMULATION_EVENTS, {SIMULATION});

  addClass<Listener>(L, "kelSDK.LuaStepEventListener", LISTENER_EVENTS, {LISTENER});
  lua_rawgeti(L, LUA_REGISTRYINDEX, Class<Listener>::reference);
  lua_getfield(L, -1, "__index");
  lua_pushcclosure(L, getListenerField, 1);
  lua_setfield(L, -2, "__index");
  lua_pop(L, 1);
}

lua_State* openLimit()
{
  lua_State* L = luaL_newstate();
  if (!L) return nullptr;
  luaL_openlibs(L);
  addHandles(L);
  addClasses(L);

  luaL_register(L, "kel", FUNCTIONS);
  addConstructor(L, "Vec3", newVec3);
  luaL_register(L, nullptr, VEC3_STATIC);
  lua_pop(L, 1);
  constexpr luaL_Reg classes[] = {
      {"Quat", newQuat},          {"AffineMatrix4x4", newMatrix},         {"EulerAngles", newEulerAngles},
      {"Bound3", newBound3},      {"UniformRealGenerator", newGenerator}, {"RealVector", newRealVector},
      {"RigidBody", newRigidBody}};
  for (const luaL_Reg& c : classes) {
    addConstructor(L, c.name, c.func);
    lua_pop(L, 1);
  }
  luaL_register(L, "kelCollide", NONE);
  addConstructor(L, "Box", newBox);
  lua_pop(L, 1);
  lua_newtable(L);
  lua_pushinteger(L, Shape::BOX);
  lua_setfield(L, -2, "BOX");
  lua_setfield(L, -2, "Shape");
  luaL_register(L, "kelSDK", NONE);
  addConstructor(L, "Simulation", newSimulation);
  lua_pop(L, 1);
  addConstructor(L, "LuaStepEventListener", newListener);
  lua_settop(L, 0);
  return L;
}

} // namespace

const Binding LIMIT = {"C", openLimit, lua_close, [](lua_State* L, int index) {
                         return static_cast<kelSDK::StepEventListener*>(
                             static_cast<Listener*>(object<EventListener, Listener>(L, index)));
                       }};

} // namespace bench
