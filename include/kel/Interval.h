#pragma once
#include "kel/Types.h"
#include <algorithm>
#include <limits>

namespace kel {

/// The numbers from a minimum to a maximum, both inside. It is empty while its minimum is above its maximum.
class Interval
{
public:
  /// All numbers.
  constexpr Interval()
      : Interval(-std::numeric_limits<Real>::infinity(), std::numeric_limits<Real>::infinity())
  {}
  /// Taken as they are.
  constexpr Interval(Real min, Real max) : m_min(min), m_max(max) {}

  /// The ends, to read and to write.
  constexpr Real minValue() const { return m_min; }
  constexpr Real& minValue() { return m_min; }
  constexpr Real maxValue() const { return m_max; }
  constexpr Real& maxValue() { return m_max; }
  /// Neither of the two holds with a NaN.
  constexpr bool isEmpty() const { return m_min > m_max; }
  constexpr bool hasElements() const { return m_max >= m_min; }
  /// Maximum less minimum, negative for an empty interval.
  constexpr Real getLength() const { return m_max - m_min; }
  constexpr bool containsValue(Real value) const { return value >= m_min && m_max >= value; }

  /// Becomes what it shares with another interval, with [value, infinity), or with (-infinity, value].
  constexpr void intersectWith(const Interval& other)
  {
    intersectWithRightUnbounded(other.m_min);
    intersectWithLeftUnbounded(other.m_max);
  }
  constexpr void intersectWithRightUnbounded(Real value) { m_min = std::max(m_min, value); }
  constexpr void intersectWithLeftUnbounded(Real value) { m_max = std::min(m_max, value); }
  /// What both intervals share.
  constexpr Interval computeOverlapWith(const Interval& other) const
  {
    Interval overlap = *this;
    overlap.intersectWith(other);
    return overlap;
  }
  /// Whether the intervals share a number; false if one is empty.
  constexpr bool hasOverlapWith(const Interval& other) const
  {
    if (isEmpty() || other.isEmpty()) return false;
    return containsValue(other.m_min) || containsValue(other.m_max) ||
           (other.containsValue(m_min) && other.containsValue(m_max));
  }

private:
  Real m_min;
  Real m_max;
};

} // namespace kel
