#pragma once
// What tolua++'s own emitter needs to follow the release rule.
#define Mtolua_delete(EXP)                                                                                   \
  if (EXP) kelLua::wrap::release(tolua_S, EXP)
#include "kelLua/Wrap.h"

namespace stock {

template <class T> void hold(T* object)
{
  if constexpr (kelLua::wrap::isCounted<T>) object->reference();
}

} // namespace stock
