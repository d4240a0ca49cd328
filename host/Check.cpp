#include "Check.h"
#include "Luacheck.h"
#include "kelLua/traceback.h"
#include <algorithm>
#include <cstdio>
#include <lua.hpp>

namespace {

/// The part of Lua's message from the line on; it may have shortened the file's name in front of that.
std::string fromLine(const std::string& error)
{
  for (std::size_t colon = error.find(':'); colon != std::string::npos; colon = error.find(':', colon + 1)) {
    const std::size_t end = error.find_first_not_of("0123456789", colon + 1);
    if (end != std::string::npos && end > colon + 1 && error[end] == ':') return error.substr(colon + 1);
  }
  return "1: " + error;
}

/// Lua gives no column, so the finding stands at the beginning of its line.
bool hasSyntax(lua_State* L, const std::string& file)
{
  const int status = luaL_loadfile(L, file.c_str());
  const std::string error = status == 0 ? "" : kelLua::errorText(L, -1);
  lua_pop(L, 1);
  if (status == LUA_ERRSYNTAX) {
    std::string text = fromLine(error);
    text.insert(text.find(':'), ":1");
    std::printf("%s:%s\n", file.c_str(), text.c_str());
  } else if (status != 0)
    std::fprintf(stderr, "kel: %s\n", error.c_str());
  return status == 0;
}

} // namespace

int checkScripts(lua_State* L, const std::vector<std::string>& files)
{
  std::vector<std::string> sound;
  std::copy_if(files.begin(), files.end(), std::back_inserter(sound),
               [L](const std::string& file) { return hasSyntax(L, file); });
  std::fflush(stdout);
  const bool clean = sound.empty() || findUnknownNames(L, sound) == 0;
  return clean && sound.size() == files.size() ? 0 : 1;
}
