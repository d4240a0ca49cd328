#pragma once
#include "kelCollide/Shape.h"

namespace kelCollide {

/// How thick the material behind a contact is.
class ElasticRestLengthCalculator
{
public:
  /// The longest way through a shape along a direction of the world, m: a sphere's diameter, and for any
  /// other shape that of the box around it in its own frame; 0 for what has no end, which does not yield.
  static kel::Real calculateElasticRestLength(const Shape& shape, const kel::Vec3& direction);
};

} // namespace kelCollide
