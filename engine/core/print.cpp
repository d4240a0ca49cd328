#include "kel/print.h"
#include "kel/HighAccuracyTimer.h"
#include "kel/Interval.h"
#include "kel/OrthoMatrix3x3.h"
#include "kel/Plane.h"
#include "kel/RangeReal.h"
#include "kel/SPDMatrix3x3.h"
#include "kel/Uuid.h"
#include <limits>
#include <sstream>
#include <type_traits>

namespace kel {

namespace {

template <class T> const char* suffix()
{
  if (std::is_same_v<T, float>) return "f";
  if (std::is_integral_v<T>) return std::is_signed_v<T> ? "i" : "u";
  return "";
}

template <class T> std::string list(const T* elements, std::size_t count)
{
  std::ostringstream stream;
  stream.precision(std::numeric_limits<T>::digits10);
  for (std::size_t i = 0; i < count; ++i) stream << (i ? ", " : "") << elements[i];
  return stream.str();
}

template <class T> std::string call(const char* name, const T* elements, std::size_t count)
{
  return std::string(name) + suffix<T>() + "(" + list(elements, count) + ")";
}

std::string pair(const char* name, Real a, Real b)
{
  const Real elements[] = {a, b};
  return call(name, elements, 2);
}

template <class Matrix> std::string rows(const char* name, const Matrix& m, std::size_t size)
{
  std::string text;
  for (std::size_t i = 0; i < size; ++i) {
    Real row[4];
    for (std::size_t j = 0; j < size; ++j) row[j] = m(i, j);
    text += (i ? ", {" : "{") + list(row, size) + "}";
  }
  return std::string(name) + "(" + text + ")";
}

template <class Timer> std::string stopwatch(const char* name, const Timer& timer)
{
  const Real seconds = timer.getTime();
  return std::string(name) + "(" + list(&seconds, 1) + (timer.isRunning() ? " s, running)" : " s)");
}

std::string conventionName(const EulerAngles::EulerOrder& order)
{
  static constexpr const char* NAMES[] = {"XYZs", "ZYXr", "XYXs", "XYXr", "XZYs", "YZXr", "XZXs", "XZXr",
                                          "YZXs", "XZYr", "YZYs", "YZYr", "YXZs", "ZXYr", "YXYs", "YXYr",
                                          "ZXYs", "YXZr", "ZXZs", "ZXZr", "ZYXs", "XYZr", "ZYZs", "ZYZr"};
  const int code = order.getConvention();
  return code >= EulerConvention::FIRST && code < EulerConvention::LAST ? NAMES[code] : std::to_string(code);
}

} // namespace

template <class T> std::string toString(const Vec2T<T>& v) { return call("Vec2", v.ptr(), 2); }
template <class T> std::string toString(const Vec3T<T>& v) { return call("Vec3", v.ptr(), 3); }
template <class T> std::string toString(const Vec4T<T>& v) { return call("Vec4", v.ptr(), 4); }

template std::string toString(const Vec2&);
template std::string toString(const Vec2i&);
template std::string toString(const Vec2u&);
template std::string toString(const Vec3&);
template std::string toString(const Vec3f&);
template std::string toString(const Vec4&);
template std::string toString(const Vec4f&);

std::string toString(const Quat& q) { return call("Quat", q.asVec4().ptr(), 4); }

std::string toString(const EulerAngles& angles)
{
  const Real elements[] = {angles.x(), angles.y(), angles.z()};
  return "EulerAngles(" + list(elements, 3) + ", " + conventionName(angles.getOrder()) + ")";
}

std::string toString(const EulerAngles::EulerOrder& order)
{
  return "EulerOrder(" + conventionName(order) + ")";
}

std::string toString(const AffineMatrix4x4& m) { return rows("AffineMatrix4x4", m, 4); }
std::string toString(const Matrix3x3& m) { return rows("Matrix3x3", m, 3); }
std::string toString(const OrthoMatrix3x3& m) { return rows("OrthoMatrix3x3", m, 3); }
std::string toString(const SPDMatrix3x3& m) { return rows("SPDMatrix3x3", m, 3); }

std::string toString(const Bound1& bound) { return pair("Bound1", bound.min(), bound.max()); }

std::string toString(const Bound2& bound)
{
  return "Bound2(" + toString(bound.min()) + ", " + toString(bound.max()) + ")";
}

std::string toString(const Bound3& bound)
{
  return "Bound3(" + toString(bound.min()) + ", " + toString(bound.max()) + ")";
}

std::string toString(const Interval& interval)
{
  return pair("Interval", interval.minValue(), interval.maxValue());
}

std::string toString(const RangeReal& range) { return pair("RangeReal", range.lower(), range.upper()); }

std::string toString(const Plane& plane) { return call("Plane", plane.asVec4().ptr(), 4); }

std::string toString(const Uuid& id) { return "Uuid(" + id.str() + ")"; }

std::string toString(const Timer& timer) { return stopwatch("Timer", timer); }
std::string toString(const HighAccuracyTimer& timer) { return stopwatch("HighAccuracyTimer", timer); }

std::string printVec3(const Vec3& v)
{
  std::ostringstream stream;
  stream << v.x() << ' ' << v.y() << ' ' << v.z();
  return stream.str();
}

std::string printAffineMatrix4x4(const AffineMatrix4x4& m)
{
  std::ostringstream stream;
  stream << "{\n";
  for (std::size_t i = 0; i < 4; ++i) {
    stream << '\t';
    for (std::size_t j = 0; j < 4; ++j) stream << m(i, j) << ' ';
    stream << '\n';
  }
  stream << "}\n";
  return stream.str();
}

} // namespace kel
