#include "kel/Matrix3x3.h"
#include "kel/SPDMatrix3x3.h"

namespace kel {

template <class T> Matrix3x3T<T>::Matrix3x3T(const SPDMatrix3x3& m)
{
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) m_rows[i][j] = static_cast<T>(m(i, j));
}

template <class T> void Matrix3x3T<T>::set(const QuatT<T>& q) { *this = Matrix3x3T(AffineMatrix4x4T<T>(q)); }

template <class T> Matrix3x3T<T> Matrix3x3T<T>::inverse() const
{
  const Matrix3x3T adjugate =
      fromRows(cross(m_rows[1], m_rows[2]), cross(m_rows[2], m_rows[0]), cross(m_rows[0], m_rows[1]))
          .transpose();
  return adjugate / determinant();
}

template class Matrix3x3T<double>;
template class Matrix3x3T<float>;

} // namespace kel
