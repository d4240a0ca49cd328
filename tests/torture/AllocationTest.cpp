// Whatever allocation of Lua fails, a script ends with a clean error, nothing is lost and the process goes
// on.
#include "kel/Logger.h"
#include "kelLua/ScriptManager.h"
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <lua.hpp>
#include <string>

namespace {

/// Memory for a state, of which one request fails: the one with the number `failing`, counted from 1.
struct Memory
{
  std::size_t failing = 0;
  std::size_t requests = 0;
  std::size_t bytes = 0;

  bool hasFailed() const { return requests >= failing; }

  static void* allocate(void* self, void* block, std::size_t oldSize, std::size_t size)
  {
    auto& memory = *static_cast<Memory*>(self);
    if (!block) oldSize = 0; // some Luas give another meaning to it
    if (size > oldSize && ++memory.requests == memory.failing) return nullptr;
    void* result = nullptr;
    if (size == 0)
      std::free(block);
    else
      result = std::realloc(block, size);
    memory.bytes += size - oldSize;
    return result;
  }
};

int printNothing(lua_State*) { return 0; }

void runExample(lua_State* L, const char* name)
{
  const std::string path = std::string(KEL_EXAMPLES "/") + name;
  if (luaL_loadfile(L, path.c_str())) lua_error(L);
  lua_call(L, 0, 0);
}

/// The life of a state in the order of the host, with a small heap of bodies. The light userdata is the
/// manager.
int live(lua_State* L)
{
  auto* manager = static_cast<kelLua::ScriptManager*>(lua_touserdata(L, 1));
  luaL_openlibs(L);
  lua_register(L, "print", printNothing);
  manager->setState(L);
  if (!manager->requestScriptPlugin("kel"))
    return luaL_error(L, "no plug-in: %s", manager->getLastPluginError().c_str());
  luaL_dostring(L, "arg = {'5', '4'}");
  for (const char* name : {"02_step_listener.lua", "03_vectors.lua", "04_many_boxes.lua"})
    runExample(L, name);
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
  if (!L) return "not enough memory";
  lua_atpanic(L, panic);
  std::string failure;
  if (lua_cpcall(L, live, manager)) {
    const char* text = lua_tostring(L, -1);
    failure = text ? text : "an error without text";
  }
  manager->closeState();
  lua_close(L);
  return failure;
}

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
    if (failing % 97 == 0) std::fprintf(stderr, "%zu\n", failing);
    const std::string failure = failureOf(memory);
    SCOPED_TRACE("allocation " + std::to_string(failing) + ": " + failure);
    EXPECT_EQ(memory.bytes, 0U);
    EXPECT_EQ(manager->getNumLuaEntries(), 0U);
    EXPECT_EQ(manager->getState(), nullptr);
    if (!memory.hasFailed()) {
      EXPECT_EQ(failure, "");
      return;
    }
    if (!failure.empty()) EXPECT_NE(failure.find("not enough memory"), std::string::npos);
  }
}
