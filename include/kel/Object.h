#pragma once
#include "kel/Name.h"
#include "kel/Path.h"
#include "kel/Referenced.h"

namespace kel {

/// A named object in a tree of contexts. Its context holds it by reference and knows it by name.
class Object : public Referenced
{
public:
  Object() : Object(Name()) {}
  explicit Object(const Name& name);

  const String& getName() const { return m_name.str(); }
  virtual void setName(const Name& name) { m_name = name; }
  /// The name of the class that implements the object, without its namespace.
  virtual String getImplementationName() const { return "Object"; }
  /// The names from the outermost context to this object, joined by dots.
  String fullName() const { return getPath().str(); }
  Path getPath() const;
  /// A number that no other object of this process has.
  unsigned int getId() const { return m_id; }

  /// The object that holds this one, null at the root. Not owned.
  Object* getContext() { return m_context; }
  const Object* getContext() const { return m_context; }
  /// The outermost context; the object itself when nothing holds it.
  Object* getRootContext();
  const Object* getRootContext() const { return const_cast<Object*>(this)->getRootContext(); }
  /// Whether an object is this one's context, direct or not.
  bool hasParent(const Object* object) const;

protected:
  ~Object() override = default;
  void setContext(Object* context) { m_context = context; }
  friend class Component;

private:
  Name m_name;
  Object* m_context = nullptr;
  unsigned int m_id;
};

} // namespace kel
