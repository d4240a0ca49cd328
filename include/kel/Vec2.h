#pragma once
#include "kel/VecBase.h"

namespace kel {

/// Two elements x, y.
template <class T> class Vec2T : public VecBase<Vec2T<T>, T, 2>
{
  using Base = VecBase<Vec2T<T>, T, 2>;

public:
  /// The null vector.
  constexpr Vec2T() : Vec2T(T(0)) {}
  /// Both elements equal to `value`.
  explicit constexpr Vec2T(T value) : Vec2T(value, value) {}
  /// The elements.
  constexpr Vec2T(T x, T y) : Base(x, y) {}
  /// Elements converted from another type.
  template <class U> explicit constexpr Vec2T(const Vec2T<U>& other) : Base(other.x(), other.y()) {}

  /// The elements by name, to read and to write.
  constexpr T x() const { return (*this)[0]; }
  constexpr T& x() { return (*this)[0]; }
  constexpr T y() const { return (*this)[1]; }
  constexpr T& y() { return (*this)[1]; }
  /// Sets both elements.
  constexpr void set(T x, T y) { *this = Vec2T(x, y); }
};

/// The vectors by element type; `Real`, `Int` and `UInt` have no width in the name.
using Vec2 = Vec2T<Real>;
using Vec2d = Vec2T<Real64>;
using Vec2f = Vec2T<Real32>;
using Vec2i = Vec2T<Int>;
using Vec2i32 = Vec2T<Int32>;
using Vec2i64 = Vec2T<Int64>;
using Vec2u = Vec2T<UInt>;
using Vec2u32 = Vec2T<UInt32>;
using Vec2u64 = Vec2T<UInt64>;

/// Absolute values of the elements, taken in `T`.
template <class T> Vec2T<Real> absolute(const Vec2T<T>& v)
{
  return Vec2T<Real>(std::fabs(v.x()), std::fabs(v.y()));
}

/// Unit vectors along the axes.
inline constexpr Vec2 X_AXIS_2D(1, 0);
inline constexpr Vec2 Y_AXIS_2D(0, 1);

} // namespace kel
