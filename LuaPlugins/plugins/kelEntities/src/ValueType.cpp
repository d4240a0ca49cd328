#include "ValueType.h"
#include "kel/SPDMatrix3x3.h"
#include "kel/Uuid.h"
#include "kelCollide/BoundingAABB.h"
#include "kelData/EntityPtr.h"
#include "kelLua/Wrap.h"
#include <algorithm>
#include <cstring>

namespace kelEntities {

namespace wrap = kelLua::wrap;

namespace {

template <class T> ValueType number()
{
  return {typeid(T).name(), nullptr,
          [](lua_State* L, const void* value) { wrap::pushNumber(L, *static_cast<const T*>(value)); },
          [](lua_State* L, int n, void* value, tolua_Error* failure) {
            double number = 0;
            if (!wrap::isNumber(L, n, number, failure)) return false;
            *static_cast<T*>(value) = wrap::toNumber<T>(number);
            return true;
          }};
}

ValueType boolean()
{
  return {typeid(bool).name(), nullptr,
          [](lua_State* L, const void* value) { wrap::pushBool(L, *static_cast<const bool*>(value)); },
          [](lua_State* L, int n, void* value, tolua_Error* failure) {
            return wrap::isBool(L, n, *static_cast<bool*>(value), failure);
          }};
}

ValueType text()
{
  return {
      typeid(kel::String).name(), nullptr,
      [](lua_State* L, const void* value) { wrap::pushString(L, *static_cast<const kel::String*>(value)); },
      [](lua_State* L, int n, void* value, tolua_Error* failure) {
        if (!wrap::isString(L, n, failure)) return false;
        *static_cast<kel::String*>(value) = wrap::text(L, n);
        return true;
      }};
}

/// The type strings of a class, for pushing and for reading.
template <class T> struct Strings
{
  static inline const wrap::Type* plain = nullptr;
  static inline const wrap::Type* constant = nullptr;
};

template <class T> ValueType object(const char* name)
{
  static_assert(std::is_trivially_destructible_v<T>); // as values lie in their handles
  Strings<T>::plain = &wrap::type(name);
  Strings<T>::constant = &wrap::type((kel::String("const ") + name).c_str());
  return {typeid(T).name(), name,
          [](lua_State* L, const void* value) {
            wrap::pushCopy<T>(L, *static_cast<const T*>(value), *Strings<T>::plain);
          },
          [](lua_State* L, int n, void* value, tolua_Error* failure) {
            const T* given = nullptr;
            if (!wrap::isReference(L, n, given, *Strings<T>::constant, failure)) return false;
            *static_cast<T*>(value) = *given;
            return true;
          }};
}

template <template <class> class V>
void addVectors(std::vector<ValueType>& types, const char* const (&names)[6])
{
  types.insert(types.end(), {object<V<double>>(names[0]), object<V<float>>(names[1]),
                             object<V<kel::Int64>>(names[2]), object<V<kel::Int32>>(names[3]),
                             object<V<kel::UInt64>>(names[4]), object<V<kel::UInt32>>(names[5])});
}

} // namespace

const std::vector<ValueType>& ValueType::all()
{
  static const std::vector<ValueType> types = [] {
    std::vector<ValueType> all{number<double>(),
                               number<float>(),
                               number<kel::Int8>(),
                               number<kel::Int16>(),
                               number<kel::Int32>(),
                               number<kel::Int64>(),
                               number<kel::UInt8>(),
                               number<kel::UInt16>(),
                               number<kel::UInt32>(),
                               number<kel::UInt64>(),
                               boolean(),
                               text()};
    addVectors<kel::Vec2T>(
        all, {"kel::Vec2", "kel::Vec2f", "kel::Vec2i", "kel::Vec2i32", "kel::Vec2u", "kel::Vec2u32"});
    addVectors<kel::Vec3T>(
        all, {"kel::Vec3", "kel::Vec3f", "kel::Vec3i", "kel::Vec3i32", "kel::Vec3u", "kel::Vec3u32"});
    addVectors<kel::Vec4T>(
        all, {"kel::Vec4", "kel::Vec4f", "kel::Vec4i", "kel::Vec4i32", "kel::Vec4u", "kel::Vec4u32"});
    all.insert(all.end(),
               {object<kel::Quat>("kel::Quat"), object<kel::Quat32>("kel::Quat32"),
                object<kel::Matrix3x3>("kel::Matrix3x3"), object<kel::Matrix3x3f>("kel::Matrix3x3f"),
                object<kel::Matrix4x4>("kel::Matrix4x4"), object<kel::Matrix4x4f>("kel::Matrix4x4f"),
                object<kel::AffineMatrix4x4>("kel::AffineMatrix4x4"),
                object<kel::AffineMatrix4x4f>("kel::AffineMatrix4x4f"),
                object<kel::SPDMatrix3x3>("kel::SPDMatrix3x3"),
                object<kelCollide::BoundingAABB>("kelCollide::BoundingAABB"),
                object<kelData::EntityPtr>("kelData::EntityPtr"), object<kel::Uuid>("kel::Uuid")});
    return all;
  }();
  return types;
}

const ValueType* ValueType::find(const char* implementation)
{
  const auto found = std::find_if(all().begin(), all().end(), [&](const ValueType& type) {
    return std::strcmp(type.implementation, implementation) == 0;
  });
  return found == all().end() ? nullptr : &*found;
}

} // namespace kelEntities
