#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

/// Puts new objects into a simulation.
class Emitter : public Referenced, public kelStream::Serializable
{
public:
  String getClassName() const override { return "Emitter"; }

protected:
  ~Emitter() override = default;
};

} // namespace kel
