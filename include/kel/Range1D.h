#pragma once
#include "kel/RangeController.h"

namespace kel {

/// The range of a joint.
class Range1D : public RangeController
{
public:
  using RangeController::RangeController;

protected:
  ~Range1D() override = default;
};

} // namespace kel
