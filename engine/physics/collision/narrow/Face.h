#pragma once
#include "kel/Vec3.h"
#include <array>

namespace kelCollide {

/// A point, a segment or a convex polygon on the surface of a solid; what does not fit is left out.
struct Face
{
  static constexpr std::size_t CAPACITY = 64;

  std::array<kel::Vec3, CAPACITY> points; ///< counter-clockwise when seen from outside
  std::size_t size = 0;
  kel::Vec3 normal; ///< unit, outward; null for points and segments

  void add(const kel::Vec3& point)
  {
    if (size < CAPACITY) points[size++] = point;
  }
  bool isPolygon() const { return size >= 3; }
};

} // namespace kelCollide
