#pragma once
#include "kel/Types.h"
#include <random>

namespace kel {

/// Uniform random numbers of [min, max] by the 32-bit Mersenne twister: the same seed and bounds give the
/// same numbers on every machine. Bounds in the wrong order are exchanged.
template <class T> class RandomGenerator
{
public:
  /// Bounds 0 and 1 for real numbers, 0 and 2^31 - 1 for integers.
  RandomGenerator() : RandomGenerator(0, DEFAULT_MAX) {}
  /// The seed 5489.
  RandomGenerator(T min, T max) : RandomGenerator(std::mt19937::default_seed, min, max) {}
  RandomGenerator(UInt32 seed, T min, T max)
      : m_engine(seed), m_min(max < min ? max : min), m_max(max < min ? min : max)
  {}

  /// The next number; real ones have 53 random bits.
  T rand();

private:
  static constexpr T DEFAULT_MAX = std::is_integral_v<T> ? T(0x7FFFFFFF) : T(1);
  UInt64 bits();

  std::mt19937 m_engine;
  T m_min;
  T m_max;
};

using UniformRealGenerator = RandomGenerator<Real>;
using UniformIntGenerator = RandomGenerator<Int>;

} // namespace kel
