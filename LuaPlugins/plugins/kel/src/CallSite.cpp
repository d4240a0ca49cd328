#include "CallSite.h"
#include "kel/Notify.h"
#include "kelLua/ScriptManager.h"
#include <emmintrin.h>
#include <tolua++.h>

namespace kelLua {

long long CallSite::truncated(double number)
{
  // The conversion of the processor: a plain cast is undefined for what does not fit.
  return _mm_cvttsd_si64(_mm_set_sd(number));
}

bool CallSite::popResult(lua_State* L, bool asBool, double& value) const
{
  if (lua_gettop(L) == 0) {
    kel::Notify::writeLine(kel::Notify::NOTIFY_WARNING, kel::String(m_signature) + " should return a value");
    return false;
  }
  value = asBool ? tolua_toboolean(L, -1, 0) : tolua_tonumber(L, -1, 0);
  lua_settop(L, -2);
  return true;
}

void CallSite::reportFailure(const std::string& text)
{
  ScriptManager* manager = ScriptManager::instance(false);
  if (manager->getScriptErrorsAsErrors()) return kel::Notify::writeLine(kel::Notify::NOTIFY_ERROR, text);
  kel::Notify::writeLine(kel::Notify::NOTIFY_WARNING, text);
  manager->setLastScriptError(text);
}

} // namespace kelLua
