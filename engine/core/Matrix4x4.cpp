#include "kel/Matrix4x4.h"
#include "kel/OrthoMatrix3x3.h"
#include <algorithm>
#include <cstring>

namespace kel {

std::size_t checkedElement(std::size_t row, std::size_t column, std::size_t count)
{
  // Each test by itself: a huge row would wrap around to a small index.
  if (row >= count || column >= count || row * 4 + column >= count)
    throw std::out_of_range("index of a matrix element is out of range");
  return row * 4 + column;
}

template <class T> void Matrix4x4T<T>::setRow(std::size_t row, const Vec4T<T>& elements)
{
  std::copy_n(elements.ptr(), 4, &m_data[checkedElement(row, 0, 16)]);
}

template <class T> bool Matrix4x4T<T>::valid() const
{
  return std::none_of(m_data, m_data + 16, [](T element) { return std::isnan(element); });
}

template <class T> bool Matrix4x4T<T>::operator==(const Matrix4x4T& other) const
{
  // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison): the bits are what counts
  return std::memcmp(m_data, other.m_data, sizeof m_data) == 0;
}

template <class T> Vec4T<T> Matrix4x4T<T>::preMult(const Vec4T<T>& v) const
{
  Vec4T<T> result;
  for (std::size_t j = 0; j < 4; ++j)
    result[j] = v[0] * m_data[j] + v[1] * m_data[4 + j] + v[2] * m_data[8 + j] + v[3] * m_data[12 + j];
  return result;
}

template <class T> Vec4T<T> Matrix4x4T<T>::postMult(const Vec4T<T>& v) const
{
  Vec4T<T> result;
  for (std::size_t i = 0; i < 4; ++i) {
    const T* row = &m_data[i * 4];
    result[i] = row[0] * v[0] + row[1] * v[1] + row[2] * v[2] + row[3] * v[3];
  }
  return result;
}

template <class T> void Matrix4x4T<T>::mult(const Matrix4x4T& a, const Matrix4x4T& b)
{
  Matrix4x4T result;
  for (std::size_t i = 0; i < 4; ++i) {
    const T* row = &a.m_data[i * 4];
    result.setRow(i, b.preMult(Vec4T<T>(row[0], row[1], row[2], row[3])));
  }
  *this = result;
}

template <class T> void Matrix4x4T<T>::setRotate(const QuatT<T>& q)
{
  Matrix4x4T& m = *this;
  const T x = q.x(), y = q.y(), z = q.z(), w = q.w();
  m(0, 0) = 1 - 2 * (y * y + z * z);
  m(0, 1) = 2 * (x * y + z * w);
  m(0, 2) = 2 * (x * z - y * w);
  m(1, 0) = 2 * (x * y - z * w);
  m(1, 1) = 1 - 2 * (x * x + z * z);
  m(1, 2) = 2 * (y * z + x * w);
  m(2, 0) = 2 * (x * z + y * w);
  m(2, 1) = 2 * (y * z - x * w);
  m(2, 2) = 1 - 2 * (x * x + y * y);
}

template <class T> void Matrix4x4T<T>::setRotate(const OrthoMatrix3x3& block)
{
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) (*this)(i, j) = static_cast<T>(block(i, j));
}

template <class T> void Matrix4x4T<T>::get(EulerAngles& angles) const
{
  OrthoMatrix3x3 block;
  get(block);
  angles.set(block);
}

template <class T> void Matrix4x4T<T>::get(OrthoMatrix3x3& block) const
{
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) block(i, j) = (*this)(i, j);
}

// Divides by the largest of the four elements, so that no rotation loses digits (Shepperd 1978).
template <class T> void Matrix4x4T<T>::get(QuatT<T>& q) const
{
  const Matrix4x4T& m = *this;
  const T trace = m(0, 0) + m(1, 1) + m(2, 2);
  if (trace > 0) {
    const T s = std::sqrt(trace + 1) * 2;
    q.set((m(1, 2) - m(2, 1)) / s, (m(2, 0) - m(0, 2)) / s, (m(0, 1) - m(1, 0)) / s, s / 4);
  } else {
    std::size_t i = m(1, 1) > m(0, 0) ? 1 : 0;
    if (m(2, 2) > m(i, i)) i = 2;
    const std::size_t j = (i + 1) % 3, k = (i + 2) % 3;
    const T s = std::sqrt(1 + m(i, i) - m(j, j) - m(k, k)) * 2;
    q[i] = s / 4;
    q[j] = (m(i, j) + m(j, i)) / s;
    q[k] = (m(i, k) + m(k, i)) / s;
    q[3] = (m(j, k) - m(k, j)) / s;
  }
}

template class Matrix4x4T<double>;
template class Matrix4x4T<float>;

} // namespace kel
