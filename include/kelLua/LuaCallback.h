#pragma once

struct lua_State;

namespace kelLua {

/// Base of every script adapter: enters the adapter with the script manager for its whole life and binds it
/// to the Lua state that is current when it is made.
class LuaCallback
{
public:
  LuaCallback(const LuaCallback&) = delete;
  LuaCallback& operator=(const LuaCallback&) = delete;

  /// The adapter as its most derived part, the key of its entry.
  const void* object() const { return m_object; }
  /// The state that the adapter calls into; null when it was made without one.
  lua_State* luaState() const { return m_luaState; }

protected:
  /// `object` is the adapter's most derived part, `text` the signature of its constructor.
  LuaCallback(const void* object, const char* text);
  virtual ~LuaCallback();

private:
  const void* m_object;
  lua_State* m_luaState;
};

} // namespace kelLua
