#pragma once
#include "kelData/Value.h"
#include <cstddef>
#include <type_traits>
#include <vector>

namespace kelData {

class EntityModel;

/// One named, typed field of an entity, with one value in each instance or some of them. Its format cannot
/// change any more once it belongs to a model or a storage; errors are `std::logic_error`s.
class Attribute : public kel::Object
{
public:
  /// Instances hold values of a type in a format, the type's first one from null. `numElements` is how many
  /// each has, a number that is read now, 1 from null. New instances start with `defaultValue`, the format's
  /// default from null.
  Attribute(const kel::Name& name, const Type* type, const Format* format = nullptr,
            const Value* numElements = nullptr, const Value* defaultValue = nullptr);
  /// A field of a C++ type, which may be one that no format describes. Instances start with `defaultValue`
  /// for good. T is trivially copyable, and its alignment divides 16.
  template <class T> static Attribute* create(const kel::Name& name, const T& defaultValue = T())
  {
    static_assert(std::is_trivially_copyable_v<T> && 16 % alignof(T) == 0);
    return new Attribute(name, typeid(T).name(), &defaultValue, sizeof(T));
  }

  /// The type and the format of the values, null where no format describes them. Not owned.
  Type* getType() { return m_format ? m_format->getType() : nullptr; }
  const Type* getType() const { return m_format ? m_format->getType() : nullptr; }
  Format* getDefaultFormat() { return m_format; }
  const Format* getDefaultFormat() const { return m_format; }
  /// Another format of the same type, before the attribute belongs to anything.
  void setDefaultFormat(const Format* format);
  /// How many values an instance has; changes to this value do not count. Not owned.
  Value* getNumElements();
  const Value* getNumElements() const { return const_cast<Attribute*>(this)->getNumElements(); }
  /// What each value of a new instance is at first; null where no format describes it. Not owned. Changes to
  /// it count, but for an attribute of a C++ type.
  Value* getDefaultValue() { return m_defaultValue.get(); }
  const Value* getDefaultValue() const { return m_defaultValue.get(); }
  /// Takes over the element of a value of the same type.
  void setDefaultValue(const Value& value);
  /// The model that declares this attribute, null before it is added to one. Not owned.
  EntityModel* getEntity() const { return m_entity; }
  /// Whether the engine alone writes the values, because others depend on them.
  bool isReadOnly() const { return m_isReadOnly; }
  void setReadOnly(bool readOnly) { m_isReadOnly = readOnly; }

  /// Bytes of the values of one instance.
  std::size_t getElementSize() const { return m_count * m_size; }
  /// The compiler's name of the C++ type of the values.
  const char* getImplementationTypeName() const { return m_typeName; }
  /// What storages do with the memory of one instance's values: fill new memory with the default, copy the
  /// values of another instance, and end them.
  void construct(std::byte* to) const;
  void assign(std::byte* to, const std::byte* from) const;
  void setDefaults(std::byte* to) const;
  void destroy(std::byte* values) const;

  /// The values as a text, with semicolons between them; empty where no format describes them.
  kel::String toString(const std::byte* values) const;

  /// Whether all instances of a storage share one value, so that they hold none.
  virtual bool isShared() const { return false; }
  /// Whether the values of both have the same name, format and number, so that one can be copied to the
  /// other.
  bool matches(const Attribute& other) const;
  kel::String getImplementationName() const override { return "Attribute"; }

protected:
  ~Attribute() override = default;
  [[noreturn]] void fail(const kel::String& text) const;

private:
  friend class EntityModel;
  friend class EntityStorage;
  Attribute(const kel::Name& name, const char* typeName, const void* defaultValue, std::size_t size);
  void takeFormat(const Format* format);
  const void* defaultElement() const;
  bool isPlain() const { return !m_format || m_format->getImplementation().isPlain; }

  const char* m_typeName = nullptr;
  Format* m_format = nullptr;
  std::size_t m_size = 0; // of one value, in bytes
  std::size_t m_count = 1;
  bool m_isReadOnly = false;
  bool m_isUsed = false; // by a model or a storage
  kel::ref_ptr<Value> m_numElements;
  kel::ref_ptr<Value> m_defaultValue;
  std::vector<std::byte> m_fixedDefault; // of a C++ type
  EntityModel* m_entity = nullptr;
  std::size_t m_column = 0; // in the model
};

/// An attribute whose instances have values of their own, which point at nothing.
class ScalarAttribute : public Attribute
{
public:
  using Attribute::Attribute;
  kel::String getImplementationName() const override { return "ScalarAttribute"; }
};

/// An attribute that names other instances; null pointers at first. Its type is that of entity pointers.
class PointerAttribute : public Attribute
{
public:
  PointerAttribute(const kel::Name& name, const Type* type, const Format* format = nullptr,
                   const Value* numElements = nullptr);
  kel::String getImplementationName() const override { return "PointerAttribute"; }
};

/// An attribute whose one value in each storage follows an expression of values that the storage's context
/// has.
class SharedAttribute : public Attribute
{
public:
  SharedAttribute(const kel::Name& name, const Format* format, const kel::String& expression);

  const kel::String& getExpression() const { return m_expression; }
  bool isShared() const override { return true; }
  kel::String getImplementationName() const override { return "SharedAttribute"; }

private:
  kel::String m_expression;
};

} // namespace kelData
