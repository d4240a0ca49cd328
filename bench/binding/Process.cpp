#include "Process.h"
#include "Session.h"
#include "kelLua/ScriptManager.h"
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <lua.hpp>
#include <malloc.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

double luaBytes(lua_State* L)
{
  for (int i = 0; i < 2; ++i) lua_gc(L, LUA_GCCOLLECT, 0); // what has a finaliser goes with the second
  return lua_gc(L, LUA_GCCOUNT, 0) * 1024.0 + lua_gc(L, LUA_GCCOUNTB, 0);
}

double residentBytes()
{
  malloc_trim(0);
  std::ifstream file("/proc/self/statm");
  double size = 0, resident = 0;
  file >> size >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

template <class Work> double milliseconds(Work work)
{
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

template <class Work> double medianTime(int repetitions, Work work)
{
  std::vector<double> times;
  times.reserve(static_cast<std::size_t>(repetitions));
  for (int i = 0; i < repetitions; ++i) times.push_back(work());
  return median(times);
}

/// Wall time of a program with arguments, in ms.
double spawned(std::vector<const char*> arguments)
{
  arguments.push_back(nullptr);
  return milliseconds([&] {
    pid_t child = 0;
    int status = 0;
    if (posix_spawn(&child, arguments[0], nullptr, nullptr, const_cast<char**>(arguments.data()), environ) !=
            0 ||
        waitpid(child, &status, 0) != child || status != 0)
      throw std::runtime_error(std::string("cannot run ") + arguments[0]);
  });
}

} // namespace

double median(std::vector<double> values)
{
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

KeptValue keptValue(Session& session, int count)
{
  const std::string size = std::to_string(count);
  session.run(("kept = {} for i = 1, " + size + " do kept[i] = false end").c_str());
  const double lua = luaBytes(session.state());
  const double resident = residentBytes();
  session.run(("for i = 1, " + size + " do kept[i] = kel.Vec3(1, 2, 3) end").c_str());
  const KeptValue value = {(luaBytes(session.state()) - lua) / count, (residentBytes() - resident) / count};
  session.run("kept = nil");
  return value;
}

double openingTime()
{
  lua_State* L = nullptr;
  const double time = milliseconds([&] { L = OURS.open(); });
  if (!L) throw std::runtime_error("cannot open the tree");
  OURS.close(L);
  return time;
}

void printOpening(double first, int repetitions)
{
  kelLua::ScriptManager* manager = kelLua::ScriptManager::instance(true);
  const double next = medianTime(repetitions, openingTime);
  const auto bare = [&] {
    manager->closeState();
    return milliseconds([&] { manager->openState(); });
  };
  const double alone = medianTime(repetitions, bare);
  const double libraries = luaBytes(manager->getState());
  OURS.open();
  const double opened = lua_gc(manager->getState(), LUA_GCCOUNT, 0) * 1024.0;
  const double collected = luaBytes(manager->getState());
  manager->closeState();
  std::printf(
      "new state with the tree: %.2f ms (median of %d), the first %.2f ms; without the tree %.2f ms\n", next,
      repetitions, first, alone);
  std::printf("Lua memory: %.0f kB after opening, %.0f kB collected; without the tree %.0f kB\n",
              opened / 1024, collected / 1024, libraries / 1024);
}

void printEmptyScript(int repetitions)
{
  const std::string host =
      std::filesystem::read_symlink("/proc/self/exe").replace_filename(BENCH_HOST).string();
  const double full = medianTime(repetitions, [&] { return spawned({host.c_str(), "-e", ""}); });
  const double bare = medianTime(repetitions, [&] {
    return spawned({host.c_str(), "--no-plugin", "-e", ""});
  });
  std::printf("process with an empty script: %.1f ms (median of %d); without the tree %.1f ms\n", full,
              repetitions, bare);
}

} // namespace bench
