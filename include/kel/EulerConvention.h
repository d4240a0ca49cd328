#pragma once

namespace kel {

/// The orders of three rotations about coordinate axes. The letters of a name are the axes in the order of
/// the rotations; at the end, `s` means axes that stand still, `r` axes that turn with each rotation.
class EulerConvention
{
public:
  /// Bit 0: the axes turn. Bit 1: the last axis is the first one again. Bit 2: the axes are in odd order.
  /// Bits 3 and 4: the first axis, for axes that turn the last one.
  enum Convention : int
  {
    XYZs = 0,
    ZYXr = 1,
    XYXs = 2,
    XYXr = 3,
    XZYs = 4,
    YZXr = 5,
    XZXs = 6,
    XZXr = 7,
    YZXs = 8,
    XZYr = 9,
    YZYs = 10,
    YZYr = 11,
    YXZs = 12,
    ZXYr = 13,
    YXYs = 14,
    YXYr = 15,
    ZXYs = 16,
    YXZr = 17,
    ZXZs = 18,
    ZXZr = 19,
    ZYXs = 20,
    XYZr = 21,
    ZYZs = 22,
    ZYZr = 23,
    LAST = 24, ///< one past the last convention
    FIRST = 0,
    BAD = -1, ///< none; where one is asked for, that of the object
    DEFAULT_CONVENTION = 0
  };
};

} // namespace kel
