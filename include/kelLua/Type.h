#pragma once
#include <cstddef>
#include <cstdint>

struct lua_State;

namespace kelLua::wrap {

/// A type string of the scripts, such as "kel::Vec3" or "const kel::Vec3"; one object a string and process.
///
/// It remembers which metatables the type accepts and which it refuses. A metatable is known by its address,
/// which no two living states share. All types forget when a state closes or learns of a class.
class Type
{
public:
  const char* const name;
  /// Keys of the type's metatable and of its table of handles in the registry of each state.
  const int metatableKey, handlesKey;

  /// Whether objects with this metatable are known to be of the type; false also says "not asked yet".
  bool accepts(const void* metatable) const { return isIn(m_accepted, metatable); }
  /// Whether objects with this metatable are known to be of another type.
  bool refuses(const void* metatable) const { return isIn(m_refused, metatable); }
  void remember(const void* metatable, bool accepted) const;

  Type(const char* typeString, int key) : name(typeString), metatableKey(key), handlesKey(key + 1) {}
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;

private:
  friend void forgetJudgements();
  static constexpr std::size_t numSlots = 8; ///< Pairs, so that two metatables of one slot do not fight.

  static std::size_t slot(const void* metatable)
  {
    return reinterpret_cast<std::uintptr_t>(metatable) * 0x9E3779B97F4A7C15u >> 61;
  }
  static bool isIn(const void* const* slots, const void* metatable)
  {
    const std::size_t i = slot(metatable);
    return slots[i] == metatable || slots[i ^ 1] == metatable;
  }

  mutable const void* m_accepted[numSlots] = {};
  mutable const void* m_refused[numSlots] = {};
};

/// The type of that string. What is asked for stays known until the process ends.
const Type& type(const char* name);

/// What types and overloads remember of metatables ends: a class joined the tree, or a state closed.
void forgetJudgements();

/// Pushes the type's metatable; nil in a state where no package has mentioned the type.
void pushMetatable(lua_State* L, const Type& type);

} // namespace kelLua::wrap
