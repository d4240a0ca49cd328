#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// Holds two anchors together, in three rows along the axes of the world.
class Spherical : public AttachedConstraint
{
public:
  explicit Spherical(const ElementaryConstraintData& data) : AttachedConstraint(3, data) {}

protected:
  ~Spherical() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;
};

} // namespace kel
