#pragma once
#include "kel/AffineMatrix4x4.h"

namespace kel {

class SPDMatrix3x3;

/// Three rows of three elements. `preMult` takes a vector as a row, `postMult` and `operator*` as a column.
template <class T> class Matrix3x3T
{
public:
  using Vec3 = Vec3T<T>;

  /// The identity.
  constexpr Matrix3x3T() : Matrix3x3T(Vec3(1, 1, 1)) {}
  /// Elements row by row.
  constexpr Matrix3x3T(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
      : m_rows{Vec3(m00, m01, m02), Vec3(m10, m11, m12), Vec3(m20, m21, m22)}
  {}
  /// A diagonal matrix.
  explicit constexpr Matrix3x3T(const Vec3& diagonal)
      : Matrix3x3T(diagonal.x(), 0, 0, 0, diagonal.y(), 0, 0, 0, diagonal.z())
  {}
  /// The upper left block of a matrix of four rows.
  explicit constexpr Matrix3x3T(const Matrix4x4T<T>& m)
      : Matrix3x3T(m(0, 0), m(0, 1), m(0, 2), m(1, 0), m(1, 1), m(1, 2), m(2, 0), m(2, 1), m(2, 2))
  {}
  /// The rotation block of a unit quaternion, for vectors as rows.
  explicit Matrix3x3T(const QuatT<T>& q) { set(q); }
  /// A symmetric matrix in full.
  explicit Matrix3x3T(const SPDMatrix3x3& m);

  /// Element at a row and a column, not tested.
  constexpr T& operator()(std::size_t row, std::size_t column) { return m_rows[row][column]; }
  constexpr T operator()(std::size_t row, std::size_t column) const { return m_rows[row][column]; }
  /// A row, or a column, to read and to write; throws `std::out_of_range` beyond 2.
  const Vec3& getRow(std::size_t row) const { return m_rows[checked(row)]; }
  void setRow(std::size_t row, const Vec3& elements) { m_rows[checked(row)] = elements; }
  Vec3 getColumn(std::size_t column) const { return columnAt(checked(column)); }
  void setColumn(std::size_t column, const Vec3& elements)
  {
    for (std::size_t row = 0; row < 3; ++row) m_rows[row][checked(column)] = elements[row];
  }
  /// (m00, m11, m22).
  constexpr Vec3 getDiagonal() const { return Vec3(m_rows[0][0], m_rows[1][1], m_rows[2][2]); }
  /// Element `row * 4 + column` in memory, where a fourth one that is 0 ends each row; throws
  /// `std::out_of_range` beyond 11.
  T at(std::size_t row, std::size_t column) const
  {
    const std::size_t i = checkedElement(row, column, 12);
    return (*this)(i / 4, i % 4);
  }
  /// Writes an element, tested as in `at`; the value comes first.
  void set(T value, std::size_t row, std::size_t column)
  {
    const std::size_t i = checkedElement(row, column, 12);
    (*this)(i / 4, i % 4) = value;
  }
  /// The twelve elements in memory, a view.
  constexpr T* ptr() { return m_rows[0].ptr(); }
  constexpr const T* ptr() const { return m_rows[0].ptr(); }
  /// The matrix as the block of a transform without translation.
  explicit operator AffineMatrix4x4T<T>() const
  {
    const Matrix3x3T& m = *this;
    return AffineMatrix4x4T<T>(m(0, 0), m(0, 1), m(0, 2), 0, m(1, 0), m(1, 1), m(1, 2), 0, m(2, 0), m(2, 1),
                               m(2, 2), 0, 0, 0, 0, 1);
  }

  /// Sets a diagonal matrix, or all elements row by row.
  constexpr void set(const Vec3& diagonal) { *this = Matrix3x3T(diagonal); }
  constexpr void set(T m00, T m01, T m02, T m10, T m11, T m12, T m20, T m21, T m22)
  {
    *this = Matrix3x3T(m00, m01, m02, m10, m11, m12, m20, m21, m22);
  }
  /// The rotation block of a unit quaternion, for vectors as rows.
  void set(const QuatT<T>& q);
  /// Becomes the identity.
  constexpr void makeIdentity() { *this = Matrix3x3T(); }

  /// Exact comparison of the elements.
  constexpr bool operator==(const Matrix3x3T& other) const
  {
    return m_rows[0] == other.m_rows[0] && m_rows[1] == other.m_rows[1] && m_rows[2] == other.m_rows[2];
  }
  /// Whether no element is a NaN.
  constexpr bool isValid() const { return m_rows[0].isValid() && m_rows[1].isValid() && m_rows[2].isValid(); }
  /// Whether any element is a NaN.
  constexpr bool isNaN() const { return !isValid(); }
  /// Whether this is exactly the identity.
  constexpr bool isIdentity() const { return *this == Matrix3x3T(); }
  /// Whether the elements off the diagonal are exactly 0.
  constexpr bool isDiagonal() const
  {
    const Matrix3x3T& m = *this;
    return m(0, 1) == 0 && m(0, 2) == 0 && m(1, 0) == 0 && m(1, 2) == 0 && m(2, 0) == 0 && m(2, 1) == 0;
  }

  /// The matrix with `postMult(w)` equal to the cross product of `v` and `w`.
  static constexpr Matrix3x3T crossMatrix(const Vec3& v)
  {
    return Matrix3x3T(0, -v.z(), v.y(), v.z(), 0, -v.x(), -v.y(), v.x(), 0);
  }
  /// Rows and columns exchanged.
  constexpr Matrix3x3T transpose() const { return fromRows(columnAt(0), columnAt(1), columnAt(2)); }
  /// The determinant, expanded in full.
  constexpr T determinant() const
  {
    const Matrix3x3T& m = *this;
    return m(0, 0) * m(1, 1) * m(2, 2) - m(0, 0) * m(1, 2) * m(2, 1) - m(0, 1) * m(1, 0) * m(2, 2) +
           m(0, 1) * m(1, 2) * m(2, 0) + m(1, 0) * m(0, 2) * m(2, 1) - m(0, 2) * m(1, 1) * m(2, 0);
  }
  /// The general inverse, by the adjugate, for elements of any size; not finite for a singular matrix.
  Matrix3x3T inverse() const;

  /// `v * M`.
  constexpr Vec3 preMult(const Vec3& v) const
  {
    return m_rows[0] * v.x() + m_rows[1] * v.y() + m_rows[2] * v.z();
  }
  /// `M * v`.
  constexpr Vec3 postMult(const Vec3& v) const { return Vec3(m_rows[0] * v, m_rows[1] * v, m_rows[2] * v); }
  /// `M * v`.
  constexpr Vec3 operator*(const Vec3& v) const { return postMult(v); }
  /// The matrix product.
  constexpr Matrix3x3T operator*(const Matrix3x3T& m) const
  {
    return fromRows(m.preMult(m_rows[0]), m.preMult(m_rows[1]), m.preMult(m_rows[2]));
  }
  /// Becomes `a * b`; both may be this matrix.
  constexpr void mult(const Matrix3x3T& a, const Matrix3x3T& b) { *this = a * b; }
  /// Becomes `m * *this`.
  constexpr void preMult(const Matrix3x3T& m) { *this = m * *this; }
  /// Becomes `*this * m`.
  constexpr void postMult(const Matrix3x3T& m) { *this = *this * m; }
  /// Becomes `a` times a factor.
  constexpr void mult(const Matrix3x3T& a, T factor) { *this = a * factor; }
  /// Becomes `a + b`.
  constexpr void add(const Matrix3x3T& a, const Matrix3x3T& b) { *this = a + b; }
  /// Becomes `a - b`.
  constexpr void sub(const Matrix3x3T& a, const Matrix3x3T& b) { *this = a - b; }

  /// Each element times a factor.
  constexpr Matrix3x3T operator*(T factor) const
  {
    return fromRows(m_rows[0] * factor, m_rows[1] * factor, m_rows[2] * factor);
  }
  /// Each element times the reciprocal.
  constexpr Matrix3x3T operator/(T divisor) const { return *this * (1 / divisor); }
  /// Sums and differences of the elements.
  constexpr Matrix3x3T operator+(const Matrix3x3T& m) const
  {
    return fromRows(m_rows[0] + m.m_rows[0], m_rows[1] + m.m_rows[1], m_rows[2] + m.m_rows[2]);
  }
  constexpr Matrix3x3T operator-(const Matrix3x3T& m) const
  {
    return fromRows(m_rows[0] - m.m_rows[0], m_rows[1] - m.m_rows[1], m_rows[2] - m.m_rows[2]);
  }

private:
  Matrix3x3T adjugate() const;
  constexpr Vec3 columnAt(std::size_t column) const
  {
    return Vec3(m_rows[0][column], m_rows[1][column], m_rows[2][column]);
  }
  static constexpr Matrix3x3T fromRows(const Vec3& row0, const Vec3& row1, const Vec3& row2)
  {
    Matrix3x3T m;
    m.m_rows[0] = row0;
    m.m_rows[1] = row1;
    m.m_rows[2] = row2;
    return m;
  }
  static std::size_t checked(std::size_t i)
  {
    if (i > 2) throw std::out_of_range("index of a matrix row or column is out of range");
    return i;
  }

  Vec3 m_rows[3];
};

/// The matrices by element type.
using Matrix3x3 = Matrix3x3T<Real>;
using Matrix3x3d = Matrix3x3T<Real64>;
using Matrix3x3f = Matrix3x3T<Real32>;

extern template class Matrix3x3T<double>;
extern template class Matrix3x3T<float>;

} // namespace kel
