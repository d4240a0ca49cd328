#include "kelLua/exceptions.h"
#include "Report.h"
#include <string>
#include <utility>

namespace kelLua {

namespace {

bool s_asErrors = false;
std::string s_text;

} // namespace

void setExceptionsAsErrors(bool errors) { s_asErrors = errors; }

namespace wrap {

void keepException(const std::exception& exception)
{
  if (!s_asErrors) throw;
  s_text = exception.what();
}

void raiseException(lua_State* L)
{
  lua_settop(L, 0); // a wrapper may have failed on a full stack
  {
    // Pushing may run finalisers, which may fail in turn; the copy ends before the error leaves.
    const std::string text = std::exchange(s_text, {});
    lua_pushlstring(L, text.data(), text.size());
  }
  raise(L, lua_tostring(L, 1), nullptr, nullptr);
}

} // namespace wrap

} // namespace kelLua
