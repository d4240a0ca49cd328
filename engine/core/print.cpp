#include "kel/print.h"
#include "kel/AffineMatrix4x4.h"
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

template <class T> std::string list(const char* open, const T* elements, std::size_t count, const char* close)
{
  std::ostringstream stream;
  stream.precision(std::numeric_limits<T>::digits10);
  stream << open;
  for (std::size_t i = 0; i < count; ++i) stream << (i ? ", " : "") << elements[i];
  stream << close;
  return stream.str();
}

template <class T> std::string call(const char* name, const T* elements, std::size_t count)
{
  return std::string(name) + suffix<T>() + list("(", elements, count, ")");
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

std::string toString(const AffineMatrix4x4& m)
{
  std::string text = "AffineMatrix4x4(";
  for (std::size_t i = 0; i < 4; ++i) text += list(i ? ", {" : "{", m.ptr() + i * 4, 4, "}");
  return text + ")";
}

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
