// Whatever allocation of Lua fails, a script ends with a clean error, nothing is lost and the process goes
// on.
#include "kel/Logger.h"
#include "kelLua/ScriptManager.h"
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <lua.hpp>
#include <string>

namespace {

/// Memory for a state, of which one request fails: the one with the number `failing`, counted from 1 once it
/// is armed.
struct Memory
{
  std::size_t failing = 0;
  std::size_t requests = 0;
  std::size_t blocks = 0; ///< That the state holds. Not bytes: LuaJIT gives wrong old sizes after a failure.
  bool armed = false;

  bool hasFailed() const { return requests >= failing; }

  static void* allocate(void* self, void* block, std::size_t oldSize, std::size_t size)
  {
    auto& memory = *static_cast<Memory*>(self);
    if (!block) oldSize = 0; // some Luas give another meaning to it
    if (size > oldSize && memory.armed && ++memory.requests == memory.failing) return nullptr;
    if (size == 0) {
      memory.blocks -= block != nullptr;
      std::free(block);
      return nullptr;
    }
    memory.blocks += block == nullptr;
    return std::realloc(block, size);
  }
};

int printNothing(lua_State*) { return 0; }

void runScript(lua_State* L, const char* path)
{
  if (luaL_loadfile(L, path)) lua_error(L);
  lua_call(L, 0, 0);
}

/// The life of a state in the order of the host, with a small heap of bodies. The light userdata is the
/// manager.
int live(lua_State* L)
{
  auto* manager = static_cast<kelLua::ScriptManager*>(lua_touserdata(L, 1));
  lua_register(L, "print", printNothing);
  manager->setState(L);
  if (!manager->requestScriptPlugin("kel"))
    return luaL_error(L, "no plug-in: %s", manager->getLastPluginError().c_str());
  if (luaL_dostring(L, "arg = {'5', '4'}")) lua_error(L);
  for (const char* path :
       {"tests/torture/memory.lua", "examples/02_step_listener.lua", "examples/04_many_boxes.lua"})
    runScript(L, path);
  return 0;
}

[[noreturn]] int panic(lua_State* L)
{
  std::fprintf(stderr, "an error outside of protected calls: %s\n", lua_tostring(L, -1));
  std::abort();
}

/// The error of such a life, "" for none.
std::string failureOf(Memory& memory)
{
  auto* manager = kelLua::ScriptManager::instance(true);
  lua_State* L = lua_newstate(Memory::allocate, &memory);
  lua_atpanic(L, panic);
  luaL_openlibs(L);
  // LuaJIT's compiler does not survive failing memory: a loop of plain Lua crashes, too.
  luaL_dostring(L, "if jit then jit.off() end");
  memory.armed = true; // the libraries of Lua itself close the standard files when their memory fails
  std::string failure;
  if (lua_cpcall(L, live, manager)) {
    const char* text = lua_tostring(L, -1);
    failure = text ? text : "an error without text";
  }
  manager->closeState();
  lua_close(L);
  return failure;
}

/// `KEL_ALLOCATION_FIRST` is the first allocation that fails, 1 for all; `KEL_ALLOCATION_STRIDE` the distance
/// to the next.
std::size_t environment(const char* name, std::size_t otherwise)
{
  const char* text = std::getenv(name);
  return text ? std::strtoul(text, nullptr, 10) : otherwise;
}

} // namespace

TEST(Allocation, ThatFailsIsACleanErrorAndLosesNothing)
{
  kel::Logger::instance().setLevel(kel::Notify::NOTIFY_ERROR);
  const auto* manager = kelLua::ScriptManager::instance(true);
  const std::size_t stride = environment("KEL_ALLOCATION_STRIDE", 1);
  for (std::size_t failing = environment("KEL_ALLOCATION_FIRST", 1);; failing += stride) {
    Memory memory{.failing = failing};
    const std::string failure = failureOf(memory);
    SCOPED_TRACE("allocation " + std::to_string(failing) + ": " + failure);
    EXPECT_EQ(memory.blocks, 0U);
    EXPECT_EQ(manager->getNumLuaEntries(), 0U);
    EXPECT_EQ(manager->getState(), nullptr);
    if (!memory.hasFailed()) {
      EXPECT_EQ(failure, "");
      return;
    }
    const bool isClean = failure.empty() || failure.find("not enough memory") != std::string::npos;
    EXPECT_TRUE(isClean);
  }
}
