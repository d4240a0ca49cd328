#pragma once
#include "kel/Object.h"

namespace kel {

/// Describes a kind of object. Models form a tree by their names.
class Model : public Object
{
public:
  using Object::Object;
  /// A model within another one, which must live longer.
  Model(const Name& name, Model* context) : Object(name) { setContext(context); }
  String getImplementationName() const override { return "Model"; }

protected:
  ~Model() override = default;
};

} // namespace kel
