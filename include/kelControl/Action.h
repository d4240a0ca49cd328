#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kelControl {

/// Something that a simulation does at a certain time.
class Action : public kel::Referenced, public kelStream::Serializable
{
public:
  kel::String getClassName() const override { return "Action"; }

protected:
  ~Action() override = default;
};

} // namespace kelControl
