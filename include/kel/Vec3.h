#pragma once
#include "kel/Vec2.h"

namespace kel {

/// Three elements x, y, z, and a fourth in memory that is 0.
template <class T> class Vec3T : public VecBase<Vec3T<T>, T, 3>
{
  using Base = VecBase<Vec3T<T>, T, 3>;

public:
  /// The null vector.
  constexpr Vec3T() : Vec3T(T(0)) {}
  /// All elements equal to `value`.
  explicit constexpr Vec3T(T value) : Vec3T(value, value, value) {}
  /// The elements.
  constexpr Vec3T(T x, T y, T z) : Base(x, y, z, 0) {}
  /// x and y from a plane vector.
  template <class U> constexpr Vec3T(const Vec2T<U>& xy, T z) : Base(xy.x(), xy.y(), z, 0) {}
  /// x, y, z from an array.
  explicit constexpr Vec3T(const T (&elements)[3]) : Vec3T(elements[0], elements[1], elements[2]) {}
  /// Elements converted from another type.
  template <class U>
  explicit constexpr Vec3T(const Vec3T<U>& other) : Base(other.x(), other.y(), other.z(), 0)
  {}

  /// The elements by name, to read and to write.
  constexpr T x() const { return (*this)[0]; }
  constexpr T& x() { return (*this)[0]; }
  constexpr T y() const { return (*this)[1]; }
  constexpr T& y() { return (*this)[1]; }
  constexpr T z() const { return (*this)[2]; }
  constexpr T& z() { return (*this)[2]; }
  /// Sets all elements.
  constexpr void set(T x, T y, T z) { *this = Vec3T(x, y, z); }
  /// Copies another vector.
  constexpr void set(const Vec3T& other) { *this = other; }
  /// Writes element `i`, tested as in `at`; the value comes first.
  constexpr void set(T value, std::size_t i) { this->at(i) = value; }

  /// The smallest element.
  constexpr T minComponent() const { return min(min(x(), y()), z()); }
  /// The greatest element.
  constexpr T maxComponent() const { return max(max(x(), y()), z()); }
  /// Index of the element with the smallest absolute value, the lowest on a tie. Element 0 counts as
  /// infinite if it is a NaN.
  std::size_t minElement() const
  {
    const T first = std::fabs(x());
    T best = first == first ? first : std::numeric_limits<T>::infinity();
    std::size_t index = 0;
    for (std::size_t i = 1; i < 3; ++i)
      if (std::fabs((*this)[i]) < best) best = std::fabs((*this)[index = i]);
    return index;
  }
  /// Index of the element with the largest absolute value, the lowest on a tie. Element 0 counts as 0 if it
  /// is a NaN.
  std::size_t maxElement() const
  {
    const T first = std::fabs(x());
    T best = first == first ? first : T(0);
    std::size_t index = 0;
    for (std::size_t i = 1; i < 3; ++i)
      if (std::fabs((*this)[i]) > best) best = std::fabs((*this)[index = i]);
    return index;
  }

  /// The unit vector (1, 0, 0).
  static constexpr Vec3T X_AXIS() { return Vec3T(1, 0, 0); }
  /// The unit vector (0, 1, 0).
  static constexpr Vec3T Y_AXIS() { return Vec3T(0, 1, 0); }
  /// The unit vector (0, 0, 1).
  static constexpr Vec3T Z_AXIS() { return Vec3T(0, 0, 1); }

private:
  static constexpr T min(T a, T b) { return b < a ? b : a; }
  static constexpr T max(T a, T b) { return a < b ? b : a; }
};

/// The vectors by element type; `Real`, `Int` and `UInt` have no width in the name.
using Vec3 = Vec3T<Real>;
using Vec3d = Vec3T<Real64>;
using Vec3f = Vec3T<Real32>;
using Vec3i = Vec3T<Int>;
using Vec3i32 = Vec3T<Int32>;
using Vec3i64 = Vec3T<Int64>;
using Vec3u = Vec3T<UInt>;
using Vec3u32 = Vec3T<UInt32>;
using Vec3u64 = Vec3T<UInt64>;

/// Unit vectors along the axes.
inline constexpr Vec3 X_AXIS = Vec3::X_AXIS();
inline constexpr Vec3 Y_AXIS = Vec3::Y_AXIS();
inline constexpr Vec3 Z_AXIS = Vec3::Z_AXIS();

/// Absolute values of the elements, taken in `T`.
template <class T> Vec3T<Real> absolute(const Vec3T<T>& v)
{
  return Vec3T<Real>(std::fabs(v.x()), std::fabs(v.y()), std::fabs(v.z()));
}

/// Cross product.
template <class T> constexpr Vec3T<T> cross(const Vec3T<T>& a, const Vec3T<T>& b)
{
  return Vec3T<T>(a.y() * b.z() - a.z() * b.y(), a.z() * b.x() - a.x() * b.z(),
                  a.x() * b.y() - a.y() * b.x());
}

} // namespace kel
