#include "Session.h"
#include "kelSDK/StepEventListener.h"
#include <cstdlib>
#include <ctime>
#include <lua.hpp>

namespace bench {

namespace {

constexpr const char* PREPARED = "preparedRow"; // a field of the registry

/// fire(listener, n): n events from C++. The binding is the upvalue.
template <class Event> int fire(lua_State* L, Event event)
{
  const auto* binding = static_cast<const Binding*>(lua_touserdata(L, lua_upvalueindex(1)));
  kelSDK::StepEventListener* listener = binding->toListener(L, 1);
  const long count = luaL_checklong(L, 2);
  for (long i = 0; i < count; ++i) event(*listener);
  return 0;
}

int firePost(lua_State* L)
{
  return fire(L, [](kelSDK::StepEventListener& listener) { listener.post(0.5); });
}

int fireAddNotification(lua_State* L)
{
  return fire(L, [](kelSDK::StepEventListener& listener) { listener.addNotification(); });
}

double threadTime()
{
  timespec now = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

std::string loop(const Row* row)
{
  const std::string head = std::string(LOCALS) + "local n = ... ";
  if (!row) return head + "for i = 1, n do end";
  const std::string code = row->code;
  if (row->kind == Row::EVENT) return head + code + "(listener, n)";
  return head + "for i = 1, n do " + (row->kind == Row::VALUE ? "local r = " : "") + code + " end";
}

/// What a value is to a script: what it makes of the axes, if it multiplies vectors. Bindings name their
/// userdata as they like.
constexpr const char* DESCRIBE = R"lua(
local axes = {kel.Vec3(1, 0, 0), kel.Vec3(0, 1, 0), kel.Vec3(0, 0, 1)}
local function multiply(a, b) return a * b end
function describe(r)
  if type(r) ~= "userdata" then return tostring(r) end
  local text = "value"
  for _, axis in ipairs(axes) do
    local defined, product = pcall(multiply, r, axis)
    if not defined then return "object" end
    text = text .. " " .. describe(product)
  end
  return text
end
)lua";

/// Classes as a binding has them: the cost of collecting a value grows with what else lives in the state.
constexpr const char* GROW = R"lua(
local kilobytes = ...
local ballast = {}
collectgarbage()
while collectgarbage("count") < kilobytes do
  local class = {}
  for i = 1, 20 do class["method" .. #ballast .. "_" .. i] = function() return class end end
  ballast[#ballast + 1] = class
end
return function() return ballast end
)lua";

} // namespace

Session::Session(const Binding& binding) : m_binding(binding), m_lua(binding.open())
{
  if (!m_lua) throw std::runtime_error(std::string("cannot open ") + binding.name);
  const luaL_Reg functions[] = {{"firePost", firePost}, {"fireAddNotification", fireAddNotification}};
  for (const luaL_Reg& function : functions) {
    lua_pushlightuserdata(m_lua, const_cast<Binding*>(&binding));
    lua_pushcclosure(m_lua, function.func, 1);
    lua_setglobal(m_lua, function.name);
  }
  run(DESCRIBE);
}

Session::~Session() { m_binding.close(m_lua); }

void Session::check(int status)
{
  if (status == 0) return;
  throw std::runtime_error(std::string(m_binding.name) + ": " + lua_tostring(m_lua, -1));
}

void Session::run(const char* code) { check(luaL_dostring(m_lua, code)); }

std::string Session::result(const Row& row)
{
  if (row.kind != Row::VALUE) return "";
  std::srand(1); // the engine's random numbers are those of the C library
  run((std::string(LOCALS) + "return describe(" + row.code + ")").c_str());
  std::string text = lua_tostring(m_lua, -1);
  lua_pop(m_lua, 1);
  return text;
}

int Session::kilobytes() const
{
  lua_gc(m_lua, LUA_GCCOLLECT, 0);
  return lua_gc(m_lua, LUA_GCCOUNT, 0);
}

void Session::growTo(int kilobytes)
{
  check(luaL_loadstring(m_lua, GROW));
  lua_pushinteger(m_lua, kilobytes);
  check(lua_pcall(m_lua, 1, 1, 0));
  lua_setfield(m_lua, LUA_REGISTRYINDEX, "ballast");
}

void Session::prepare(const Row* row)
{
  lua_gc(m_lua, LUA_GCCOLLECT, 0);
  check(luaL_loadstring(m_lua, loop(row).c_str()));
  lua_setfield(m_lua, LUA_REGISTRYINDEX, PREPARED);
}

double Session::time(long count)
{
  lua_getfield(m_lua, LUA_REGISTRYINDEX, PREPARED);
  lua_pushnumber(m_lua, static_cast<double>(count));
  const double begin = threadTime();
  const int status = lua_pcall(m_lua, 1, 0, 0);
  const double end = threadTime();
  check(status);
  return end - begin;
}

} // namespace bench
