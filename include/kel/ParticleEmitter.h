#pragma once
#include "kel/Emitter.h"

namespace kel {

/// Puts particles into a particle system.
class ParticleEmitter : public Emitter
{
public:
  String getClassName() const override { return "ParticleEmitter"; }

protected:
  ~ParticleEmitter() override = default;
};

} // namespace kel
