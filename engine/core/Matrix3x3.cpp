#include "kel/Matrix3x3.h"
#include "kel/SPDMatrix3x3.h"
#include <algorithm>

namespace kel {

template <class T> Matrix3x3T<T>::Matrix3x3T(const SPDMatrix3x3& m)
{
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) m_rows[i][j] = static_cast<T>(m(i, j));
}

template <class T> void Matrix3x3T<T>::set(const QuatT<T>& q) { *this = Matrix3x3T(AffineMatrix4x4T<T>(q)); }

template <class T> Matrix3x3T<T> Matrix3x3T<T>::adjugate() const
{
  return fromRows(cross(m_rows[1], m_rows[2]), cross(m_rows[2], m_rows[0]), cross(m_rows[0], m_rows[1]))
      .transpose();
}

template <class T> Matrix3x3T<T> Matrix3x3T<T>::inverse() const
{
  if (const T d = determinant(); std::isnormal(d)) return adjugate() / d;
  // The third power of the elements may be out of range: bring them near 1 by a power of two, which is exact.
  T largest = 0;
  for (const Vec3& row : m_rows) largest = std::max(largest, static_cast<T>(absolute(row).maxComponent()));
  if (!std::isnormal(largest)) return adjugate() / determinant();
  const T scale = std::ldexp(T(1), -std::ilogb(largest));
  const Matrix3x3T near1 = *this * scale;
  return near1.adjugate() / near1.determinant() * scale;
}

template class Matrix3x3T<double>;
template class Matrix3x3T<float>;

} // namespace kel
