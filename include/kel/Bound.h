#pragma once
#include "kel/Vec3.h"
#include <algorithm>

namespace kel {

/// Everything between a minimum and a maximum, both inside: of numbers, or of vectors element by element.
/// Units are those of the elements.
template <class T> class Bound
{
public:
  /// Both at 0: valid, and without extent.
  constexpr Bound() = default;
  /// Taken as they are, so that the bound may be invalid.
  constexpr Bound(const T& min, const T& max) : m_min(min), m_max(max) {}

  constexpr const T& min() const { return m_min; }
  constexpr T& min() { return m_min; }
  constexpr const T& max() const { return m_max; }
  constexpr T& max() { return m_max; }
  constexpr void set(const T& min, const T& max) { *this = Bound(min, max); }
  /// Extent along each axis.
  constexpr T size() const { return m_max - m_min; }
  constexpr T mid() const { return (m_min + m_max) * 0.5; }
  /// Whether no minimum is above its maximum; false for a NaN.
  constexpr bool isValid() const { return isBelow(m_min, m_max); }
  /// Whether a value lies inside or on the border.
  constexpr bool contains(const T& value) const { return isBelow(m_min, value) && isBelow(value, m_max); }
  /// Whether the bounds share a value; touching counts.
  constexpr bool hasOverlap(const Bound& other) const
  {
    return isBelow(other.m_min, m_max) && isBelow(m_min, other.m_max);
  }
  /// What the bounds share, which is invalid if that is nothing.
  constexpr Bound calculateOverlap(const Bound& other) const
  {
    if constexpr (IS_NUMBER)
      return Bound(std::max(m_min, other.m_min), std::min(m_max, other.m_max));
    else
      return Bound(T::componentMax(m_min, other.m_min), T::componentMin(m_max, other.m_max));
  }
  /// The bound moved.
  constexpr Bound translate(const T& way) const { return Bound(m_min + way, m_max + way); }
  /// The bound grown about its middle; invalid for a negative factor.
  constexpr Bound operator*(Real factor) const
  {
    const T half = (m_max - m_min) * factor * 0.5;
    return Bound(mid() - half, mid() + half);
  }

private:
  static constexpr bool IS_NUMBER = std::is_arithmetic_v<T>;

  static constexpr bool isBelow(const T& a, const T& b)
  {
    if constexpr (IS_NUMBER) {
      return a <= b;
    } else {
      for (std::size_t i = 0; i < T::SIZE; ++i)
        if (!(a[i] <= b[i])) return false;
      return true;
    }
  }

  T m_min = T();
  T m_max = T();
};

/// Bounds of numbers, of points of a plane, and boxes along the axes.
using Bound1 = Bound<Real>;
using Bound2 = Bound<Vec2>;
using Bound3 = Bound<Vec3>;

} // namespace kel
