#pragma once
#include "kel/Quat.h"

namespace kel {

/// Index of an element in rows of four; throws `std::out_of_range` for one that is not below `count`.
std::size_t checkedElement(std::size_t row, std::size_t column, std::size_t count);

/// Sixteen elements, row after row; vectors are rows, so that `v * (A * B)` applies A first.
template <class T> class Matrix4x4T
{
public:
  /// The identity.
  constexpr Matrix4x4T() : Matrix4x4T(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1) {}
  /// Elements row by row.
  constexpr Matrix4x4T(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23,
                       T m30, T m31, T m32, T m33)
      : m_data{m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33}
  {}

  /// Element at a row and a column, not tested.
  constexpr T& operator()(std::size_t row, std::size_t column) { return m_data[row * 4 + column]; }
  constexpr T operator()(std::size_t row, std::size_t column) const { return m_data[row * 4 + column]; }
  /// Element `row * 4 + column`; throws `std::out_of_range` beyond 15.
  T at(std::size_t row, std::size_t column) const { return m_data[checkedElement(row, column, 16)]; }
  /// Writes element `row * 4 + column`, tested as in `at`; the value comes first.
  void set(T value, std::size_t row, std::size_t column) { m_data[checkedElement(row, column, 16)] = value; }
  /// Writes a row; throws `std::out_of_range` beyond 3.
  void setRow(std::size_t row, const Vec4T<T>& elements);
  /// The sixteen elements, a view.
  constexpr T* ptr() { return m_data; }
  constexpr const T* ptr() const { return m_data; }

  /// Whether no element is a NaN.
  bool valid() const;
  /// Whether any element is a NaN.
  bool isNaN() const { return !valid(); }
  /// Comparison of the bits: -0 differs from 0, and a NaN equals the same NaN.
  bool operator==(const Matrix4x4T& other) const;
  /// Whether the bits are those of the identity.
  bool isIdentity() const { return *this == Matrix4x4T(); }

  /// Row vector times matrix.
  Vec4T<T> preMult(const Vec4T<T>& v) const;
  /// Matrix times column vector.
  Vec4T<T> postMult(const Vec4T<T>& v) const;
  /// Becomes `a * b`; both may be this matrix.
  void mult(const Matrix4x4T& a, const Matrix4x4T& b);

  /// Writes the rotation block, nothing else; a quaternion must have length 1.
  void setRotate(const QuatT<T>& q);
  void setRotate(const OrthoMatrix3x3& block);
  /// Reads the rotation of the block, which for a quaternion must have no scale; Euler angles keep their
  /// convention.
  void get(QuatT<T>& q) const;
  void get(EulerAngles& angles) const;
  void get(OrthoMatrix3x3& block) const;

private:
  T m_data[16];
};

/// The matrices by element type.
using Matrix4x4 = Matrix4x4T<Real>;
using Matrix4x4d = Matrix4x4T<Real64>;
using Matrix4x4f = Matrix4x4T<Real32>;

extern template class Matrix4x4T<double>;
extern template class Matrix4x4T<float>;

} // namespace kel
