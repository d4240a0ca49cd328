#pragma once
#include "kel/Object.h"
#include "kel/ref_ptr.h"
#include <vector>

namespace kel {

/// An object that holds others by reference and is their context.
class Component : public Object
{
public:
  using Object::Object;

  /// Takes a reference and becomes the object's context. Does nothing for null, for an object that it already
  /// holds, and for one of its own contexts. An object of another component leaves that one first.
  virtual void addObject(Object* object, bool resolve = true);
  /// Lets an object go; does nothing for one that it does not hold.
  virtual void removeObject(Object* object);
  void removeAllObjects();
  /// The object of that name, the earliest added if there are several; null if there is none. Not owned.
  Object* getObject(const Name& name) const;
  const std::vector<ref_ptr<Object>>& getObjects() const { return m_objects; }

  String getImplementationName() const override { return "Component"; }

protected:
  ~Component() override;

private:
  std::vector<ref_ptr<Object>> m_objects;
};

} // namespace kel
