#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// How thick the material behind a contact is.
class ElasticRestLengthCalculator
{
public:
  /// The way through a shape's material, m, from a point on its surface along a direction into it, both in
  /// the world; the depth of the contact, m, is part of it. A sphere counts with its diameter, any other
  /// shape as the box around it; what has no end counts as 0: it does not yield.
  static kel::Real calculateElasticRestLength(const Shape& shape, const kel::Vec3& point,
                                              const kel::Vec3& direction, kel::Real depth);
};

} // namespace kelCollide
