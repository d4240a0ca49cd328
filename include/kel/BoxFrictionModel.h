#pragma once
#include "kel/FrictionModel.h"
#include <cstddef>

namespace kel {

/// Bounds each direction by its coefficient times a normal force that is known before the solution.
class BoxFrictionModel : public FrictionModel
{
public:
  explicit BoxFrictionModel(SolveType type = SPLIT) : FrictionModel(type, INITIALIZE) {}

  /// The normal force that bounds friction at a contact point in this step, N: that of the last step here.
  /// The depth of penetration in m, the last step's normal force in N, 0 for a new point, and the points of
  /// the contact.
  virtual Real calculateNormalForce(const kelCollide::Geometry* geometry1,
                                    const kelCollide::Geometry* geometry2, const Vec3& point,
                                    const Vec3& normal, Real depth, Real lastNormalForce,
                                    std::size_t numPoints) const;
  String getClassName() const override { return "BoxFrictionModel"; }

protected:
  ~BoxFrictionModel() override = default;
};

} // namespace kel
