#include "kel/OrthoMatrix3x3.h"

namespace kel {

Vec3 OrthoMatrix3x3::getScale() const
{
  return Vec3(getRow(0).length(), getRow(1).length(), getRow(2).length());
}

} // namespace kel
