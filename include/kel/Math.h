#pragma once
#include "kel/Types.h"
#include <cmath>
#include <concepts>
#include <cstdlib>

namespace kel {

/// Tolerance of `equivalent` for numbers and for the matrix forms without an argument for it.
inline constexpr Real EQUIVALENT_EPSILON = 1e-9;
/// Tolerance of `equivalent` for vectors and quaternions.
inline constexpr Real EQUIVALENT_VECTOR_EPSILON = 1e-6;

/// Linear interpolation from `a` at t = 0 to `b` at t = 1; exact at the ends, constant beyond them, NaN for
/// a NaN in `t`.
inline Real lerp(Real a, Real b, Real t)
{
  if (t > 1) return b;
  if (t <= 0) return a;
  return b * t + a * (1 - t);
}

/// Interpolation of the decimal logarithms of `a` and `b`, which must be positive. `t` is tested and
/// complemented in single precision, so that a `t` which rounds to 1 is 1.
inline Real logInterpolate(Real a, Real b, float t)
{
  if (t > 1) return std::pow(10.0, std::log10(b));
  if (t <= 0) return std::pow(10.0, std::log10(a));
  return std::pow(10.0, std::log10(b) * t + std::log10(a) * (1 - t));
}

/// A uniform random number of [min, max], from one call of the C library's `rand`, which is not seeded here.
/// The difference of the bounds is formed in `T`.
template <std::floating_point T> Real random(T min, T max)
{
  return std::rand() / 2147483647.0 * (max - min) + min;
}

/// `min` if that is greater than `value`, otherwise the smaller of `max` and `value`; a NaN stays.
template <class T> constexpr T clamp(T value, T min, T max)
{
  if (min > value) return min;
  return max < value ? max : value;
}

/// -1 for a number below 0, otherwise 1, also for 0 and NaN.
template <class T> constexpr T sign(T value) { return value < 0 ? T(-1) : T(1); }

/// The number with its sign bit cleared.
inline Real absolute(Real value) { return std::fabs(value); }

/// Whether the numbers differ by no more than `epsilon`; false for a NaN.
constexpr bool equivalent(Real a, Real b, Real epsilon = EQUIVALENT_EPSILON)
{
  return a + epsilon >= b && a - epsilon <= b;
}

} // namespace kel
