#pragma once
#include "kel/Bound.h"
#include "kel/EulerAngles.h"
#include <string>

namespace kel {

template <class T> class Vec2T;
template <class T> class Vec3T;
template <class T> class Vec4T;
template <class T> class QuatT;
template <class T> class AffineMatrix4x4T;
template <class T> class Matrix3x3T;
class SPDMatrix3x3;
class Interval;
class RangeReal;
class Plane;
class Uuid;
class Timer;
class HighAccuracyTimer;

/// Readable forms such as "Vec3(1, 2, 3)", with as many digits as the element type holds safely.
template <class T> std::string toString(const Vec2T<T>& v);
template <class T> std::string toString(const Vec3T<T>& v);
template <class T> std::string toString(const Vec4T<T>& v);
std::string toString(const QuatT<double>& q);
/// The angles, then the name of the convention, or its code if it is none.
std::string toString(const EulerAngles& angles);
std::string toString(const EulerAngles::EulerOrder& order);
/// Rows in braces, row by row.
std::string toString(const AffineMatrix4x4T<double>& m);
std::string toString(const Matrix3x3T<double>& m);
std::string toString(const OrthoMatrix3x3& m);
std::string toString(const SPDMatrix3x3& m);

/// Minimum and maximum.
std::string toString(const Bound1& bound);
std::string toString(const Bound2& bound);
std::string toString(const Bound3& bound);
std::string toString(const Interval& interval);
std::string toString(const RangeReal& range);
/// The normal, then d.
std::string toString(const Plane& plane);

/// The usual text form.
std::string toString(const Uuid& id);

/// The time in seconds, and whether the timer runs.
std::string toString(const Timer& timer);
std::string toString(const HighAccuracyTimer& timer);

/// x, y and z with blanks between, in six significant digits.
std::string printVec3(const Vec3T<double>& v);
/// A line with "{", a line for each row, a line with "}", in six significant digits.
std::string printAffineMatrix4x4(const AffineMatrix4x4T<double>& m);

} // namespace kel
