#pragma once
#include "kel/Vec4.h"

namespace kelRender {

/// Red, green, blue and alpha, each from 0 to 1.
class Color : public kel::Vec4f
{
public:
  /// Black, transparent.
  constexpr Color() = default;
  constexpr Color(kel::Real32 r, kel::Real32 g, kel::Real32 b, kel::Real32 a = 1) : kel::Vec4f(r, g, b, a) {}
};

} // namespace kelRender
