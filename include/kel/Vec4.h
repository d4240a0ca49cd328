#pragma once
#include "kel/Vec3.h"

namespace kel {

/// Four elements x, y, z, w.
template <class T> class Vec4T : public VecBase<Vec4T<T>, T, 4>
{
  using Base = VecBase<Vec4T<T>, T, 4>;

public:
  /// The null vector.
  constexpr Vec4T() : Vec4T(T(0)) {}
  /// All elements equal to `value`.
  explicit constexpr Vec4T(T value) : Vec4T(value, value, value, value) {}
  /// The elements.
  constexpr Vec4T(T x, T y, T z, T w) : Base(x, y, z, w) {}
  /// x, y and z from a vector of three.
  constexpr Vec4T(const Vec3T<T>& xyz, T w) : Base(xyz.x(), xyz.y(), xyz.z(), w) {}
  /// Elements converted from another type.
  template <class U>
  explicit constexpr Vec4T(const Vec4T<U>& other) : Base(other.x(), other.y(), other.z(), other.w())
  {}

  /// The elements by name, to read and to write.
  constexpr T x() const { return (*this)[0]; }
  constexpr T& x() { return (*this)[0]; }
  constexpr T y() const { return (*this)[1]; }
  constexpr T& y() { return (*this)[1]; }
  constexpr T z() const { return (*this)[2]; }
  constexpr T& z() { return (*this)[2]; }
  constexpr T w() const { return (*this)[3]; }
  constexpr T& w() { return (*this)[3]; }
  /// Sets all elements.
  constexpr void set(T x, T y, T z, T w) { *this = Vec4T(x, y, z, w); }
  /// Writes element `i`, tested as in `at`; the value comes first.
  constexpr void set(T value, std::size_t i) { this->at(i) = value; }
};

/// The vectors by element type; `Real`, `Int` and `UInt` have no width in the name.
using Vec4 = Vec4T<Real>;
using Vec4d = Vec4T<Real64>;
using Vec4f = Vec4T<Real32>;
using Vec4i = Vec4T<Int>;
using Vec4i32 = Vec4T<Int32>;
using Vec4i64 = Vec4T<Int64>;
using Vec4u = Vec4T<UInt>;
using Vec4u32 = Vec4T<UInt32>;
using Vec4u64 = Vec4T<UInt64>;

/// Absolute values of the elements, taken in `T`.
template <class T> Vec4T<Real> absolute(const Vec4T<T>& v)
{
  return Vec4T<Real>(std::fabs(v.x()), std::fabs(v.y()), std::fabs(v.z()), std::fabs(v.w()));
}

} // namespace kel
