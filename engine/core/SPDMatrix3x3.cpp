#include "kel/SPDMatrix3x3.h"
#include <algorithm>

namespace kel {

bool SPDMatrix3x3::isNaN() const
{
  return std::any_of(m_data, m_data + 6, [](Real element) { return std::isnan(element); });
}

bool SPDMatrix3x3::isValid() const
{
  const auto& [m00, m01, m02, m12, m22, m11] = m_data;
  return !isNaN() && m00 > 0 && m00 * m11 - m01 * m01 > 0 && determinant() > 0;
}

SPDMatrix3x3 SPDMatrix3x3::inverse() const { return SPDMatrix3x3(Matrix3x3(*this).inverse()); }

SPDMatrix3x3 SPDMatrix3x3::operator*(Real factor) const
{
  SPDMatrix3x3 result = *this;
  for (Real& element : result.m_data) element *= factor;
  return result;
}

SPDMatrix3x3 SPDMatrix3x3::operator+(const SPDMatrix3x3& m) const
{
  SPDMatrix3x3 result = *this;
  for (std::size_t i = 0; i < 6; ++i) result.m_data[i] += m.m_data[i];
  return result;
}

} // namespace kel
