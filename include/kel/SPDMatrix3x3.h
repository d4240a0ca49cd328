#pragma once
#include "kel/Matrix3x3.h"

namespace kel {

/// Symmetric positive definite matrix, an inertia tensor for one: six elements in the memory order m00, m01,
/// m02, m12, m22, m11.
class SPDMatrix3x3
{
public:
  /// The identity.
  constexpr SPDMatrix3x3() : SPDMatrix3x3(Vec3(1, 1, 1)) {}
  /// Elements row by row, of which the lower triangle is ignored.
  constexpr SPDMatrix3x3(Real m00, Real m01, Real m02, Real, Real m11, Real m12, Real, Real, Real m22)
      : m_data{m00, m01, m02, m12, m22, m11}
  {}
  /// A diagonal matrix.
  explicit constexpr SPDMatrix3x3(const Vec3& diagonal)
      : m_data{diagonal.x(), 0, 0, 0, diagonal.z(), diagonal.y()}
  {}
  /// The upper triangle of a matrix.
  explicit constexpr SPDMatrix3x3(const Matrix3x3& m)
      : m_data{m(0, 0), m(0, 1), m(0, 2), m(1, 2), m(2, 2), m(1, 1)}
  {}
  /// The upper triangle of the upper left block.
  explicit constexpr SPDMatrix3x3(const AffineMatrix4x4& m) : SPDMatrix3x3(Matrix3x3(m)) {}

  /// Element at a row and a column, not tested.
  constexpr Real& operator()(std::size_t i, std::size_t j) { return m_data[index(i, j)]; }
  constexpr Real operator()(std::size_t i, std::size_t j) const { return m_data[index(i, j)]; }
  /// The same, tested: an element beyond the six in memory throws `std::out_of_range`.
  constexpr Real at(std::size_t i, std::size_t j) const
  {
    if (i > 5 || j > 5 || index(i, j) > 5)
      throw std::out_of_range("index of a matrix element is out of range");
    return (*this)(i, j);
  }
  /// The six elements in memory order, a view.
  constexpr Real* ptr() { return m_data; }
  constexpr const Real* ptr() const { return m_data; }
  /// (m00, m11, m22).
  constexpr Vec3 getDiagonal() const { return Vec3(m_data[0], m_data[5], m_data[4]); }
  /// Sets from whatever a constructor takes.
  template <class... Args> constexpr void set(const Args&... args) { *this = SPDMatrix3x3(args...); }
  /// Becomes the identity.
  constexpr void makeIdentity() { *this = SPDMatrix3x3(); }

  /// Exact comparison of the elements.
  constexpr bool operator==(const SPDMatrix3x3& other) const = default;
  /// Whether no element is a NaN and the three leading principal minors are positive.
  bool isValid() const;
  /// Whether any element is a NaN.
  bool isNaN() const;
  /// Whether this is exactly the identity.
  constexpr bool isIdentity() const { return *this == SPDMatrix3x3(); }
  /// The determinant, expanded in full.
  constexpr Real determinant() const
  {
    const auto& [m00, m01, m02, m12, m22, m11] = m_data;
    return m00 * m11 * m22 - m00 * m12 * m12 - m01 * m01 * m22 + m12 * m01 * m02 + m01 * m02 * m12 -
           m11 * m02 * m02;
  }
  /// The inverse, as that of a `Matrix3x3`.
  SPDMatrix3x3 inverse() const;

  /// The matrix times a column vector, which for a symmetric matrix is also the row vector times it.
  constexpr Vec3 operator*(const Vec3& v) const
  {
    const auto& [m00, m01, m02, m12, m22, m11] = m_data;
    return Vec3(m00 * v.x() + m01 * v.y() + m02 * v.z(), m01 * v.x() + m11 * v.y() + m12 * v.z(),
                m02 * v.x() + m12 * v.y() + m22 * v.z());
  }
  /// Both the same as `operator*`.
  constexpr Vec3 preMult(const Vec3& v) const { return *this * v; }
  constexpr Vec3 postMult(const Vec3& v) const { return *this * v; }
  /// Each element times a factor.
  SPDMatrix3x3 operator*(Real factor) const;
  /// Each element times the reciprocal.
  SPDMatrix3x3 operator/(Real divisor) const { return *this * (1 / divisor); }
  /// Sums and differences of the elements.
  SPDMatrix3x3 operator+(const SPDMatrix3x3& m) const;
  SPDMatrix3x3 operator-(const SPDMatrix3x3& m) const { return *this + m * -1; }
  /// Becomes `m` times a factor.
  void mult(const SPDMatrix3x3& m, Real factor) { *this = m * factor; }
  /// Becomes `a + b`.
  void add(const SPDMatrix3x3& a, const SPDMatrix3x3& b) { *this = a + b; }
  /// Becomes `a - b`.
  void sub(const SPDMatrix3x3& a, const SPDMatrix3x3& b) { *this = a - b; }

private:
  static constexpr std::size_t index(std::size_t i, std::size_t j) { return i == 1 && j == 1 ? 5 : i + j; }

  Real m_data[6];
};

/// Whether the six elements differ by no more than `epsilon`.
inline bool equivalent(const SPDMatrix3x3& a, const SPDMatrix3x3& b, Real epsilon = EQUIVALENT_EPSILON)
{
  for (std::size_t i = 0; i < 6; ++i)
    if (!equivalent(a.ptr()[i], b.ptr()[i], epsilon)) return false;
  return true;
}

} // namespace kel
