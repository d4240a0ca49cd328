#pragma once
#include "kelData/Data.h"
#include "kelData/Type.h"
#include <memory>
#include <nlohmann/json_fwd.hpp>

namespace kelJson {
/// A node of a JSON document.
using Value = nlohmann::json;
} // namespace kelJson

namespace kelData {

class Expression;

/// One element of a type, in a format. It may follow another value, or an expression of others: then it
/// changes as they do, and holds references on them.
///
/// Errors are `std::runtime_error`s.
class Value : public kel::Object
{
public:
  /// A value of a type that takes its format with its first element; it has none until then.
  explicit Value(const Type* type) : Value(kel::Name(), type) {}
  Value(const kel::Name& name, const Type* type);
  /// A value that is the format's default; one without type and format from null.
  explicit Value(const Format* format) : Value(kel::Name(), format) {}
  Value(const kel::Name& name, const Format* format);
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;

  /// The type; null if the value has none yet. Not owned.
  Type* getType() { return m_type; }
  const Type* getType() const { return m_type; }
  /// The format; null if the value has none yet. Not owned.
  Format* getFormat() { return m_data.format; }
  const Format* getFormat() const { return m_data.format; }
  /// Stores the element in another format of the same type; null does nothing. Throws for another type, and
  /// for a text in place of a number that follows an expression.
  void setFormat(const Format* format);

  /// The element, good until the format changes; null without a format. What is written there, nobody
  /// follows.
  void* ptr() const { return m_data.elements; }
  /// Where the element lies; a view.
  virtual Data* getData() { return &m_data; }

  /// Copies an element of this value's format, which must not be null; the first of a value that is bound
  /// goes to what it is bound to. Ends an expression.
  void set(const void* element);
  /// Copies another value's element; a value without format takes the other one's. Throws for another type.
  /// Null does nothing.
  void set(const Value* other);
  /// Back to what the format's elements are at first.
  void setDefaultValue();
  static void copy(Value& target, const Value& source) { target.set(&source); }

  /// Follows a formula such as "2*pi*r" from now on. Names are those of values in this one's context or the
  /// contexts of that; a formula for several scalars has commas between theirs. Throws, with the place in the
  /// text, for what is no formula or names no number, and for a circle; the value then stays as it was.
  void setExpression(const kel::String& text);
  /// The formula that the value follows; empty if it follows none.
  const kel::String& getExpression() const;

  /// Follows the value at a path, which is searched in this one's context and then in the contexts of that.
  /// While there is none, the value stays as it is.
  void bind(const kel::Path& path);
  /// Follows another value: setting one sets both. Throws for another type and for a circle.
  void bind(Value& value);
  /// Follows no value any more; keeps the element, or goes back to the default.
  void unbind(bool keepElement = true);
  /// Searches anew what the value follows.
  void rebind();
  /// The value that this one is bound to, null for none. Not owned.
  Value* getBinding() { return m_binding.get(); }
  const Value* getBinding() const { return m_binding.get(); }
  /// The value at the end of the chain of bindings, null if this one has no binding. Not owned.
  Value* getRootBinding();
  const Value* getRootBinding() const { return const_cast<Value*>(this)->getRootBinding(); }
  /// The path that the value is bound to, empty for none.
  const kel::Path& getBindPath() const { return m_bindPath; }

  /// Whether the value has an element and what it is bound to exists.
  bool isValid() const { return m_data.format && (m_binding || m_bindPath.empty()); }
  /// Whether another value could be set to this one.
  bool isTypeCompatible(const Value& other) const { return m_type == other.m_type; }
  /// The element as a text, scalars with blanks between; empty without a format.
  kel::String toString() const;
  /// Writes name and element to standard output, as a line.
  void print() const;
  /// A new value with the same name and element that follows nothing.
  Value* clone() const;
  /// Makes the node an object that tells name, type, format, element and what the value follows.
  void buildNavigationTree(kelJson::Value& node) const;
  kel::String getImplementationName() const override { return "Value"; }

protected:
  ~Value() override;

private:
  void assign(const void* element, const Format* format);
  void release();
  void follow(Value& source);
  void stopFollowing(Value& source);
  void endBinding();
  void endExpression();
  bool follows(const Value& value) const;
  Value* find(const kel::Path& path) const;
  void update();
  void changed();
  [[noreturn]] void fail(const kel::String& text) const;

  Type* m_type = nullptr;
  Data m_data;
  kel::ref_ptr<Value> m_binding;
  kel::Path m_bindPath;
  std::unique_ptr<Expression> m_expression;
  std::vector<Value*> m_followers; // once for each time that they follow; they hold references on this
};

/// A value of a C++ type.
template <class T> class ValueT : public Value
{
public:
  ValueT() : Value(kelData::getFormat<T>()) {}
  explicit ValueT(const kel::Name& name) : Value(name, kelData::getFormat<T>()) {}
  explicit ValueT(const T& element) : ValueT(kel::Name(), element) {}
  ValueT(const kel::Name& name, const T& element) : Value(name, kelData::getFormat<T>()) { set(element); }

  using Value::set;
  void set(const T& element)
  {
    if (!getFormat()) setFormat(kelData::getFormat<T>());
    Value::set(&element);
  }
  /// The element, which must be of the C++ type; its format is not tested.
  const T& get() const { return *static_cast<const T*>(ptr()); }
};

/// A reference on a value of a C++ type, null at first.
template <class T> class ValueRefT : public kel::ref_ptr<ValueT<T>>
{
public:
  using kel::ref_ptr<ValueT<T>>::ref_ptr;
  using kel::ref_ptr<ValueT<T>>::operator=;
};

} // namespace kelData
