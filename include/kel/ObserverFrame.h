#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

/// A point on a body where a simulation is observed.
class ObserverFrame : public Referenced, public kelStream::Serializable
{
public:
  String getClassName() const override { return "ObserverFrame"; }

protected:
  ~ObserverFrame() override = default;
};

} // namespace kel
