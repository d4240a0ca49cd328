#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

/// Bodies that move as one while they are merged.
class MergedBody : public Referenced, public kelStream::Serializable
{
public:
  String getClassName() const override { return "MergedBody"; }

protected:
  ~MergedBody() override = default;
};

} // namespace kel
