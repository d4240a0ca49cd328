#pragma once
#include "kel/Matrix3x3.h"
#include <random>

/// Values for property tests, the same in every run.
class Seeded
{
public:
  double number(double min, double max) { return std::uniform_real_distribution<double>(min, max)(m_engine); }
  kel::Vec3 vector(double size = 10)
  {
    return kel::Vec3(number(-size, size), number(-size, size), number(-size, size));
  }
  kel::Quat rotation()
  {
    kel::Quat q(number(-1, 1), number(-1, 1), number(-1, 1), number(-1, 1));
    q.normalize();
    return q;
  }
  kel::AffineMatrix4x4 rigid() { return kel::AffineMatrix4x4(rotation(), vector()); }
  kel::Matrix3x3 matrix()
  {
    kel::Matrix3x3 m;
    for (std::size_t i = 0; i < 9; ++i) m(i / 3, i % 3) = number(-2, 2);
    return m;
  }

private:
  std::mt19937 m_engine{20260731};
};
