#pragma once
#include "kel/TargetSpeedController.h"

namespace kel {

/// The motor of a joint.
class Motor1D : public TargetSpeedController
{
public:
  using TargetSpeedController::TargetSpeedController;

protected:
  ~Motor1D() override = default;
};

} // namespace kel
