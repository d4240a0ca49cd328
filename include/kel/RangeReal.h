#pragma once
#include "kel/Types.h"
#include <limits>

namespace kel {

/// A range of numbers, as of forces, whose lower end is never above its upper one.
class RangeReal
{
public:
  /// Two ends in any order.
  constexpr RangeReal(Real a, Real b) : m_lower(a > b ? b : a), m_upper(a > b ? a : b) {}
  /// From -r to r, or from r to -r if r is negative.
  explicit constexpr RangeReal(Real r) : RangeReal(-r, r) {}

  constexpr Real lower() const { return m_lower; }
  constexpr Real upper() const { return m_upper; }
  /// Whether both ends are infinite.
  constexpr bool isInfinite() const
  {
    constexpr Real largest = std::numeric_limits<Real>::max();
    return m_lower < -largest && m_upper > largest;
  }
  /// Upper end less lower end.
  constexpr Real span() const { return m_upper - m_lower; }

private:
  Real m_lower;
  Real m_upper;
};

} // namespace kel
