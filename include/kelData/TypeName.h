#pragma once
#include "kel/String.h"
#include <string>
#include <type_traits>

namespace kel {
template <class T> class Vec2T;
template <class T> class Vec3T;
template <class T> class Vec4T;
template <class T> class QuatT;
template <class T> class Matrix3x3T;
template <class T> class Matrix4x4T;
template <class T> class AffineMatrix4x4T;
class Uuid;
} // namespace kel

namespace kelData {

class EntityPtr;

/// The name of the type that a C++ type's values have: `TypeName<T>::get()`.
template <class T> struct TypeName
{
  static_assert(std::is_arithmetic_v<T>, "values have no such type");
  static std::string get()
  {
    return std::is_floating_point_v<T> ? "Real" : std::is_signed_v<T> ? "Int" : "UInt";
  }
};

/// Vectors of integers are types of their own.
template <class T> std::string vectorTypeName(const char* name)
{
  return std::string(name) + (std::is_floating_point_v<T> ? "" : std::is_signed_v<T> ? "i" : "u");
}

template <> struct TypeName<bool>
{
  static std::string get() { return "Bool"; }
};
template <> struct TypeName<kel::String>
{
  static std::string get() { return "String"; }
};
template <> struct TypeName<kel::Uuid>
{
  static std::string get() { return "Uuid"; }
};
template <> struct TypeName<EntityPtr>
{
  static std::string get() { return "EntityPtr"; }
};
template <class T> struct TypeName<kel::Vec2T<T>>
{
  static std::string get() { return vectorTypeName<T>("Vec2"); }
};
template <class T> struct TypeName<kel::Vec3T<T>>
{
  static std::string get() { return vectorTypeName<T>("Vec3"); }
};
template <class T> struct TypeName<kel::Vec4T<T>>
{
  static std::string get() { return vectorTypeName<T>("Vec4"); }
};
template <class T> struct TypeName<kel::QuatT<T>>
{
  static std::string get() { return "Quat"; }
};
template <class T> struct TypeName<kel::Matrix3x3T<T>>
{
  static std::string get() { return "Matrix3x3"; }
};
template <class T> struct TypeName<kel::Matrix4x4T<T>>
{
  static std::string get() { return "Matrix4x4"; }
};
template <class T> struct TypeName<kel::AffineMatrix4x4T<T>>
{
  static std::string get() { return "AffineMatrix4x4"; }
};

} // namespace kelData
