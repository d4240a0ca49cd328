#include "kel/Random.h"
#include <algorithm>

namespace kel {

template <class T> UInt64 RandomGenerator<T>::bits()
{
  const UInt64 high = m_engine();
  return high << 32 | m_engine();
}

// The standard library's distributions differ between libraries, and are undefined for some bounds.
template <> Real RandomGenerator<Real>::rand()
{
  const Real t = static_cast<Real>(bits() >> 11) * 0x1p-53;
  return std::clamp(m_min * (1 - t) + m_max * t, m_min, m_max);
}

template <> Int RandomGenerator<Int>::rand()
{
  const UInt64 count = static_cast<UInt64>(m_max) - static_cast<UInt64>(m_min) + 1; // 0 stands for 2^64
  UInt64 value = bits();
  if (count != 0) {
    const UInt64 surplus = (~UInt64(0) % count + 1) % count; // would make the first numbers more frequent
    while (value > ~surplus) value = bits();
    value %= count;
  }
  return static_cast<Int>(static_cast<UInt64>(m_min) + value);
}

template class RandomGenerator<Real>;
template class RandomGenerator<Int>;

} // namespace kel
