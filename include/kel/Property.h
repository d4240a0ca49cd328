#pragma once
#include "kel/HashTable.h"
#include "kel/Referenced.h"
#include "kel/String.h"
#include "kel/Types.h"
#include "kel/Vec3.h"
#include "kelStream/Serializable.h"
#include <array>
#include <deque>
#include <string_view>
#include <utility>

namespace kel {

/// How messages name a type of properties.
struct PropertyType
{
  const char* word;     ///< in the names of members
  const char* name;     ///< in C++
  const char* unscoped; ///< in C++, without its namespace

  /// Throw `std::runtime_error` for a property that is missing; the log gets the line and the signature, too.
  [[noreturn]] void failToSet(const String& property, unsigned line) const;
  [[noreturn]] void failToGet(const String& property, unsigned line, bool isConst) const;
};

/// The properties of a type, by name. A value stays where it is as long as the table lives, so that a
/// reference to one never dangles: names that are gone leave their places to later ones.
template <class T> class PropertyTable
{
public:
  explicit PropertyTable(PropertyType type) : m_type(type) {}

  /// Inserts or overwrites, and returns the stored value.
  T& add(const String& name, T value)
  {
    T*& place = m_places[name];
    if (!place)
      place = m_places.size() > m_values.size() ? &m_values.emplace_back() : &m_values[m_places.size() - 1];
    return *place = std::move(value);
  }
  /// Overwrites and returns the stored value; throws `std::runtime_error` if it is missing.
  T& set(const String& name, T value)
  {
    T* old = find(name);
    if (!old) m_type.failToSet(name, __LINE__);
    return *old = std::move(value);
  }
  /// The stored value, null if there is none of that name.
  T* find(const String& name) const
  {
    T* const* place = m_places.find(name);
    return place ? *place : nullptr;
  }
  /// The stored value; throws `std::runtime_error` if it is missing.
  T& get(const String& name)
  {
    T* found = find(name);
    if (!found) m_type.failToGet(name, __LINE__, false);
    return *found;
  }
  const T& get(const String& name) const
  {
    const T* found = find(name);
    if (!found) m_type.failToGet(name, __LINE__, true);
    return *found;
  }
  /// Drops all names and keeps the memory.
  void clear() { m_places.clear(); }

private:
  PropertyType m_type;
  HashTable<String, T*> m_places;
  std::deque<T> m_values;
};

/// A dictionary that applications attach to an object of the engine: values by name, of nine types. Each type
/// has names of its own, so that the same name may stand once for each.
///
/// For each type, `addProperty` inserts or overwrites, `setProperty` only overwrites, and both return the
/// stored value; `hasProperty` tells whether there is one. `getProperty` returns the stored value, or copies
/// it and tells whether there is one. References stay good as long as the container lives. What is missing
/// where it must not be throws `std::runtime_error`.
class PropertyContainer : public Referenced, public kelStream::Serializable
{
public:
  PropertyContainer() = default;
  PropertyContainer(const PropertyContainer&) = delete;
  PropertyContainer& operator=(const PropertyContainer&) = delete;

  /// Whether a word is the name of one of the types, such as "Int" or "Vec3".
  bool hasPropertyType(std::string_view word) const;
  /// The number of types, not of properties.
  std::uint32_t size() const { return TYPES.size(); }
  /// Drops all properties.
  void clear();

#define KEL_PROPERTY(Word, T, NAME, UNSCOPED)                                                                \
  T& addProperty##Word(const std::string& name, T value) { return m_##Word.add(name, std::move(value)); }    \
  T& setProperty##Word(const std::string& name, T value) { return m_##Word.set(name, std::move(value)); }    \
  bool hasProperty##Word(const std::string& name) const { return m_##Word.find(name) != nullptr; }           \
  T& getProperty##Word(const std::string& name) { return m_##Word.get(name); }                               \
  const T& getProperty##Word(const std::string& name) const { return m_##Word.get(name); }                   \
  bool getProperty##Word(const std::string& name, T& value) const                                            \
  {                                                                                                          \
    const T* found = m_##Word.find(name);                                                                    \
    if (found) value = *found;                                                                               \
    return found != nullptr;                                                                                 \
  }                                                                                                          \
                                                                                                             \
private:                                                                                                     \
  PropertyTable<T> m_##Word{{#Word, NAME, UNSCOPED}};                                                        \
                                                                                                             \
public:

  KEL_PROPERTY(Long, std::int64_t, "int64_t", "int64_t")
  KEL_PROPERTY(Int, int, "int", "int")
  KEL_PROPERTY(Float, float, "float", "float")
  KEL_PROPERTY(Double, double, "double", "double")
  KEL_PROPERTY(Real, kel::Real, "kel::Real", "Real")
  KEL_PROPERTY(Bool, bool, "bool", "bool")
  KEL_PROPERTY(String, std::string, "std::string", "string")
  KEL_PROPERTY(Vec2, kel::Vec2, "kel::Vec2", "Vec2")
  KEL_PROPERTY(Vec3, kel::Vec3, "kel::Vec3", "Vec3")
#undef KEL_PROPERTY

  kel::String getClassName() const override { return "PropertyContainer"; }

protected:
  ~PropertyContainer() override = default;

private:
  static constexpr std::array<std::string_view, 9> TYPES{"Int",    "Float", "Double", "Real", "Bool",
                                                         "String", "Long",  "Vec2",   "Vec3"};
};

} // namespace kel
