#include "Luacheck.h"
#include "kelLua/traceback.h"
#include "members.h"
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <lua.hpp>
#include <regex>
#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace {

namespace fs = std::filesystem;

constexpr int deepest = 8;            ///< Tables may contain each other.
constexpr int mostSevereFindings = 2; ///< luacheck's exit status; above are failures of its own.

/// A folder that goes with its files.
struct TemporaryFolder
{
  fs::path path;

  TemporaryFolder()
  {
    std::string name = fs::temp_directory_path() / "kel-check-XXXXXX";
    if (mkdtemp(name.data())) path = name;
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder()
  {
    std::error_code unimportant;
    if (!path.empty()) fs::remove_all(path, unimportant);
  }
};

/// The definition of the table on top of the stack in luacheck's terms.
std::string fieldsOf(lua_State* L, int depth)
{
  luaL_checkstack(L, LUA_MINSTACK, "tables in tables");
  std::string text = "{fields={";
  for (const auto& [name, kind] : membersOf(L, lua_gettop(L))) {
    if (kind == MemberKind::VALUE) {
      lua_getfield(L, -1, name.c_str());
      const bool isTable = lua_istable(L, -1) && depth < deepest;
      if (isTable) text += "[\"" + name + "\"]=" + fieldsOf(L, depth + 1) + ",";
      lua_pop(L, 1);
      if (isTable) continue;
    }
    text += "\"" + name + "\",";
  }
  return text + "}}";
}

/// -> a configuration for luacheck that has what lies beside the standard libraries in the state.
int configuration(lua_State* L)
{
  lua_getglobal(L, "package");
  lua_getfield(L, -1, "loaded");
  const int loaded = lua_gettop(L);
  lua_pushvalue(L, LUA_GLOBALSINDEX);
  std::string text = "stds.kel={read_globals={";
  bool jit = false;
  for (const auto& [name, kind] : membersOf(L, lua_gettop(L))) {
    lua_getfield(L, loaded, name.c_str());
    const bool isStandard = !lua_isnil(L, -1);
    jit = jit || (isStandard && name == "jit");
    lua_getfield(L, LUA_GLOBALSINDEX, name.c_str());
    if (!isStandard && lua_istable(L, -1)) text += "[\"" + name + "\"]=" + fieldsOf(L, 0) + ",";
    lua_pop(L, 2);
  }
  text += std::string("}}\nstd=\"") + (jit ? "luajit" : "lua51") + "+kel\"\n";
  text += "allow_defined=true\nonly={\"113\",\"142\",\"143\"}\n";
  lua_pushlstring(L, text.data(), text.size());
  return 1;
}

/// Runs a program with its output in a file; its exit status, -1 if it cannot be started.
int runProgram(std::vector<std::string> words, const fs::path& output)
{
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT, 0600);
  pid_t child = 0;
  const int failure = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  if (failure != 0 || waitpid(child, &status, 0) < 0) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// What a finding is about: `Vec3.mine' of global 'kel'`.
std::string fieldOf(const std::string& finding)
{
  const std::size_t begin = finding.find("field '");
  return begin == std::string::npos ? "" : finding.substr(begin + 7);
}

/// Whether one field is the other, or lies in it.
bool liesIn(const std::string& field, const std::string& other)
{
  const std::size_t end = other.find('\'');
  const bool sameGlobal = field.ends_with(other.substr(end));
  return sameGlobal && field.starts_with(other.substr(0, end)) && (field[end] == '\'' || field[end] == '.');
}

/// The findings but for fields that the scripts set themselves.
std::vector<std::string> unknownNames(const fs::path& output)
{
  static const std::regex FINDING(R"(^(.*:\d+:\d+: )\(([EW]\d+)\) (.*)$)");
  constexpr const char* SETS_FIELD = "W142";
  std::vector<std::string> findings, own;
  std::ifstream lines(output);
  std::smatch parts;
  for (std::string line; std::getline(lines, line);) {
    if (!std::regex_match(line, parts, FINDING)) continue;
    if (parts[2] == SETS_FIELD)
      own.push_back(fieldOf(line));
    else
      findings.push_back(parts[1].str() + parts[3].str());
  }
  std::erase_if(findings, [&own](const std::string& finding) {
    const std::string field = fieldOf(finding);
    return !field.empty() &&
           std::any_of(own.begin(), own.end(), [&](const std::string& set) { return liesIn(field, set); });
  });
  return findings;
}

} // namespace

std::size_t findUnknownNames(lua_State* L, const std::vector<std::string>& files)
{
  const TemporaryFolder folder;
  if (folder.path.empty()) {
    std::perror("kel: no temporary folder, so names were not checked");
    return 0;
  }
  lua_pushcfunction(L, configuration);
  if (lua_pcall(L, 0, 1, 0) != 0)
    std::fprintf(stderr, "kel: cannot describe the state: %s\n", kelLua::errorText(L, -1).c_str());
  else
    std::ofstream(folder.path / "config") << lua_tostring(L, -1);
  lua_pop(L, 1);

  std::vector<std::string> words = {"luacheck", "--no-cache",           "--no-color",
                                    "--codes",  "--formatter",          "plain",
                                    "--config", folder.path / "config", "--"};
  words.insert(words.end(), files.begin(), files.end());
  const int status = runProgram(words, folder.path / "findings");
  const std::vector<std::string> findings = unknownNames(folder.path / "findings");
  for (const std::string& finding : findings) std::printf("%s\n", finding.c_str());
  if (status < 0 || status > mostSevereFindings)
    std::fprintf(stderr,
                 "kel: luacheck (Debian package lua-check) does not run, so names were not checked\n");
  return findings.size();
}
