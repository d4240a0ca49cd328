#include "collision/narrow/boxBox.h"
#include <cmath>
#include <limits>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

bool separateBoxes(const BoxSolid& first, const BoxSolid& second, Real reach, Vec3& normal)
{
  const Vec3 offset = first.center() - second.center();
  const auto halfWidth = [](const BoxSolid& box, const Vec3& direction) {
    const Vec3& half = box.halfExtents();
    return half[0] * std::fabs(box.axis(0) * direction) + half[1] * std::fabs(box.axis(1) * direction) +
           half[2] * std::fabs(box.axis(2) * direction);
  };
  Real best = -std::numeric_limits<Real>::max();
  const auto tryAxis = [&](const Vec3& axis, Real handicap) {
    const Real along = axis * offset;
    const Real gap = std::fabs(along) - halfWidth(first, axis) - halfWidth(second, axis);
    if (gap > reach) return false;
    if (gap - handicap > best) {
      best = gap;
      normal = along < 0 ? -axis : axis;
    }
    return true;
  };
  const Real size = first.halfExtents().maxComponent() + second.halfExtents().maxComponent();
  const Real tie = 1e-6 * size; // so that rounding does not choose between parallel faces
  for (std::size_t i = 0; i < 3; ++i)
    if (!tryAxis(second.axis(i), tie)) return false;
  for (std::size_t i = 0; i < 3; ++i)
    if (!tryAxis(first.axis(i), tie)) return false;
  const Real edgeHandicap = 1e-3 * size;
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k) {
      const Vec3 axis = cross(first.axis(i), second.axis(k));
      const Real length = axis.length();
      if (length > 1e-3 && !tryAxis(axis / length, edgeHandicap)) return false;
    }
  }
  return true;
}

} // namespace kelCollide
