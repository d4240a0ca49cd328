#pragma once
#include <algorithm>
#include <cmath>

namespace kel {

/// The vector, or where its square leaves the range of numbers, one in the same direction that does not.
template <class Vector> Vector inRange(const Vector& v)
{
  if (std::isnormal(v.length2())) return v;
  auto largest = std::fabs(v[0]);
  for (std::size_t i = 1; i < Vector::SIZE; ++i) largest = std::max(largest, std::fabs(v[i]));
  return largest > 0 ? v / largest : v;
}

} // namespace kel
