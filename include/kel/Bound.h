#pragma once
#include "kel/Vec3.h"

namespace kel {

/// A box along the axes, as its minimum and maximum corner, both inside.
class Bound3
{
public:
  /// Both corners at the origin.
  Bound3() = default;
  Bound3(const Vec3& min, const Vec3& max) : m_min(min), m_max(max) {}

  const Vec3& min() const { return m_min; }
  Vec3& min() { return m_min; }
  const Vec3& max() const { return m_max; }
  Vec3& max() { return m_max; }
  /// Extent along each axis.
  Vec3 size() const { return m_max - m_min; }
  Vec3 mid() const { return (m_max + m_min) * 0.5; }

private:
  Vec3 m_min;
  Vec3 m_max;
};

} // namespace kel
