#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kelSDK {

/// Objects that belong together.
class Assembly : public kel::Referenced, public kelStream::Serializable
{
public:
  kel::String getClassName() const override { return "Assembly"; }

protected:
  ~Assembly() override = default;
};

} // namespace kelSDK
