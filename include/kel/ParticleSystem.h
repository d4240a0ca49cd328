#pragma once
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"

namespace kel {

/// Particles that move as one.
class ParticleSystem : public Referenced, public kelStream::Serializable
{
public:
  String getClassName() const override { return "ParticleSystem"; }

protected:
  ~ParticleSystem() override = default;
};

} // namespace kel
