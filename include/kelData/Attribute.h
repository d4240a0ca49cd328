#pragma once
#include "kel/Object.h"
#include <cstddef>
#include <type_traits>
#include <typeindex>
#include <vector>

namespace kelData {

class EntityModel;

/// One named, typed field of an entity. Its values are plain memory: they are copied and dropped byte by
/// byte.
class Attribute : public kel::Object
{
public:
  /// A field of type T that new instances start with `defaultValue` in. T is trivially copyable, and its
  /// alignment divides 16.
  template <class T> static Attribute* create(const kel::Name& name, const T& defaultValue = T())
  {
    static_assert(std::is_trivially_copyable_v<T> && 16 % alignof(T) == 0);
    return new Attribute(name, typeid(T), &defaultValue, sizeof(T));
  }

  /// Bytes of one value.
  std::size_t getElementSize() const { return m_default.size(); }
  /// The C++ type of the values.
  std::type_index getElementType() const { return m_type; }
  /// The bytes of the value that new instances start with; a view.
  const std::byte* getDefaultBytes() const { return m_default.data(); }
  /// The model that declares this attribute, null before it is added to one. Not owned.
  const EntityModel* getEntity() const { return m_entity; }
  kel::String getImplementationName() const override { return "Attribute"; }

protected:
  ~Attribute() override = default;

private:
  friend class EntityModel;
  Attribute(const kel::Name& name, std::type_index type, const void* defaultValue, std::size_t size);

  std::type_index m_type;
  std::vector<std::byte> m_default;
  const EntityModel* m_entity = nullptr;
};

} // namespace kelData
