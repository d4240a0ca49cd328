#pragma once
#include "kel/ScaleBoxFrictionModel.h"

namespace kel {

/// Bounds both directions together by the friction cone, whose section is an ellipse where the coefficients
/// differ: friction points against the sliding.
class IterativeProjectedConeFriction : public ScaleBoxFrictionModel
{
public:
  explicit IterativeProjectedConeFriction(SolveType type = SPLIT)
      : ScaleBoxFrictionModel(type, SCALE_BOUNDS | ITERATIVE_PROJECTION)
  {}
  String getClassName() const override { return "IterativeProjectedConeFriction"; }

protected:
  ~IterativeProjectedConeFriction() override = default;
};

} // namespace kel
