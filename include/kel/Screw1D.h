#pragma once
#include "kel/ScrewController.h"

namespace kel {

/// The screw of a joint.
class Screw1D : public ScrewController
{
public:
  using ScrewController::ScrewController;

protected:
  ~Screw1D() override = default;
};

} // namespace kel
