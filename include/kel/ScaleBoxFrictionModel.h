#pragma once
#include "kel/FrictionModel.h"

namespace kel {

/// Bounds each direction for itself by its coefficient times the normal force.
class ScaleBoxFrictionModel : public FrictionModel
{
public:
  explicit ScaleBoxFrictionModel(SolveType type = SPLIT) : ScaleBoxFrictionModel(type, SCALE_BOUNDS) {}
  String getClassName() const override { return "ScaleBoxFrictionModel"; }

protected:
  ScaleBoxFrictionModel(SolveType type, int callbackMask) : FrictionModel(type, callbackMask) {}
  ~ScaleBoxFrictionModel() override = default;
};

} // namespace kel
