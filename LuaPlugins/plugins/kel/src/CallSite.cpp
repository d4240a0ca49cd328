#include "CallSite.h"
#include "kel/Notify.h"
#include "kelLua/Guards.h"
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
    warn(" should return a value");
    return false;
  }
  value = asBool ? tolua_toboolean(L, -1, 0) : tolua_tonumber(L, -1, 0);
  lua_settop(L, -2);
  return true;
}

bool CallSite::popTwo(lua_State* L, const wrap::Type& type, const void* (&objects)[2]) const
{
  if (lua_gettop(L) == 0) {
    warn(" should return TWO values");
    return false;
  }
  if (lua_gettop(L) == 1) {
    lua_settop(L, -2);
    warn(" should return TWO values - got only one");
    return false;
  }
  tolua_Error failure;
  const int top = lua_gettop(L);
  const bool areObjects = wrap::isReference(L, top - 1, objects[0], type, &failure) &&
                          wrap::isReference(L, top, objects[1], type, &failure);
  lua_settop(L, -3);
  if (!areObjects) warn(" should return two objects of the right type");
  return areObjects;
}

void CallSite::warn(const char* text) const
{
  kel::Notify::writeLine(kel::Notify::NOTIFY_WARNING, kel::String(m_signature) + text);
}

void CallSite::reportFailure(const std::string& text)
{
  ScriptManager* manager = ScriptManager::instance(false);
  if (manager->getScriptErrorsAsErrors()) return kel::Notify::writeLine(kel::Notify::NOTIFY_ERROR, text);
  kel::Notify::writeLine(kel::Notify::NOTIFY_WARNING, text);
  manager->setLastScriptError(text);
}

} // namespace kelLua
