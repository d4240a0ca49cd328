#pragma once
#include "kel/Object.h"

namespace kel {

/// Describes a kind of object.
class Model : public Object
{
public:
  using Object::Object;
  String getImplementationName() const override { return "Model"; }

protected:
  ~Model() override = default;
};

} // namespace kel
