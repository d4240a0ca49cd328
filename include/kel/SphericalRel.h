#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// Holds two anchors together, in three rows along U, V and N of the second attachment.
class SphericalRel : public AttachedConstraint
{
public:
  explicit SphericalRel(const ElementaryConstraintData& data) : AttachedConstraint(3, data) {}

protected:
  ~SphericalRel() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;
};

} // namespace kel
