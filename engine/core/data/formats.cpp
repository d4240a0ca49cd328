#include "formats.h"
#include "kel/Matrix3x3.h"
#include "kel/Uuid.h"
#include "kelData/EntityStorage.h"
#include <array>
#include <charconv>
#include <cstdint>
#include <limits>
#include <memory>
#include <sstream>

namespace kelData {

namespace {

using kel::String;

/// The scalars that an element consists of, in the order of their text.
template <class T> struct Scalars
{
  using Scalar = T;
  static constexpr std::size_t COUNT = 1;
  template <class E> static auto& at(E& element, std::size_t) { return element; }
};
template <class V, class S, std::size_t N> struct IndexedScalars
{
  using Scalar = S;
  static constexpr std::size_t COUNT = N;
  template <class E> static decltype(auto) at(E& element, std::size_t i) { return element[i]; }
};
template <class V, class S, std::size_t N> struct MatrixScalars
{
  using Scalar = S;
  static constexpr std::size_t COUNT = N * N;
  template <class E> static decltype(auto) at(E& element, std::size_t i) { return element(i / N, i % N); }
};
template <class S> struct Scalars<kel::Vec2T<S>> : IndexedScalars<kel::Vec2T<S>, S, 2>
{};
template <class S> struct Scalars<kel::Vec3T<S>> : IndexedScalars<kel::Vec3T<S>, S, 3>
{};
template <class S> struct Scalars<kel::Vec4T<S>> : IndexedScalars<kel::Vec4T<S>, S, 4>
{};
template <class S> struct Scalars<kel::QuatT<S>> : IndexedScalars<kel::QuatT<S>, S, 4>
{};
template <class S> struct Scalars<kel::Matrix3x3T<S>> : MatrixScalars<kel::Matrix3x3T<S>, S, 3>
{};
template <class S> struct Scalars<kel::Matrix4x4T<S>> : MatrixScalars<kel::Matrix4x4T<S>, S, 4>
{};
template <class S> struct Scalars<kel::AffineMatrix4x4T<S>> : MatrixScalars<kel::AffineMatrix4x4T<S>, S, 4>
{};

// ---- Text: the shortest that reads as the same value, scalars with blanks between.

template <class S> String printScalar(S value)
{
  std::array<char, 32> text;
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), value).ptr};
}
String printScalar(bool value) { return value ? "true" : "false"; }

template <class S> bool parseScalar(const String& word, S& value)
{
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  return error == std::errc() && end == word.data() + word.size();
}
bool parseScalar(const String& word, bool& value)
{
  value = word == "true";
  return value || word == "false";
}

template <class T> String print(const T& element)
{
  String text;
  for (std::size_t i = 0; i < Scalars<T>::COUNT; ++i)
    text += (i ? " " : "") + printScalar(Scalars<T>::at(element, i));
  return text;
}
String print(const String& text) { return text; }
String print(const kel::Uuid& id) { return id.str(); }
String print(const EntityPtr& entity)
{
  const EntityStorage* storage = entity.getStorage();
  return storage ? storage->fullName() + EntityPtr::TransformToAscii(entity.getId()) : "none";
}

template <class T> bool parse(T& element, const String& text)
{
  std::istringstream words(text);
  T read;
  String word;
  for (std::size_t i = 0; i < Scalars<T>::COUNT; ++i)
    if (!(words >> word) || !parseScalar(word, Scalars<T>::at(read, i))) return false;
  if (words >> word) return false;
  element = read;
  return true;
}
bool parse(String& element, const String& text)
{
  element = text;
  return true;
}
bool parse(kel::Uuid& element, const String& text)
{
  const kel::Uuid read(text);
  if (text.size() != 36 || (read == kel::Uuid() && text != kel::Uuid().str())) return false;
  element = read;
  return true;
}
/// A name does not tell where the storage is.
bool parse(EntityPtr& element, const String& text)
{
  if (text == "none") element = EntityPtr();
  return text == "none";
}

// ---- Formats.

template <class S> S fromReal(double value)
{
  using Limits = std::numeric_limits<S>;
  if constexpr (std::is_same_v<S, bool>)
    return value != 0;
  else if constexpr (std::is_floating_point_v<S>)
    return static_cast<S>(value);
  else if (value != value)
    return 0;
  // The bounds of 64-bit integers round up to a power of two.
  else if (value >= static_cast<double>(Limits::max()))
    return Limits::max();
  else if (value <= static_cast<double>(Limits::min()))
    return Limits::min();
  else
    return static_cast<S>(value);
}

template <class T> double getScalar(const void* element, std::size_t i)
{
  return static_cast<double>(Scalars<T>::at(*static_cast<const T*>(element), i));
}
template <class T> void setScalar(void* element, std::size_t i, double value)
{
  Scalars<T>::at(*static_cast<T*>(element), i) = fromReal<typename Scalars<T>::Scalar>(value);
}

template <class T> Format::Implementation implement()
{
  double (*get)(const void*, std::size_t) = nullptr;
  void (*set)(void*, std::size_t, double) = nullptr;
  if constexpr (std::is_arithmetic_v<typename Scalars<T>::Scalar>) {
    get = getScalar<T>;
    set = setScalar<T>;
  }
  return {typeid(T).name(),
          sizeof(T),
          Scalars<T>::COUNT,
          get,
          set,
          [](void* to, const void* from) { from ? new (to) T(*static_cast<const T*>(from)) : new (to) T(); },
          [](void* element) { std::destroy_at(static_cast<T*>(element)); },
          std::is_trivially_copyable_v<T>,
          [](void* to, const void* from) { *static_cast<T*>(to) = *static_cast<const T*>(from); },
          [](const void* element) { return print(*static_cast<const T*>(element)); },
          [](void* element, const String& text) { return parse(*static_cast<T*>(element), text); }};
}

template <class To, class From> void convert(void* to, const void* from)
{
  auto& target = *static_cast<To*>(to);
  const auto& source = *static_cast<const From*>(from);
  for (std::size_t i = 0; i < Scalars<To>::COUNT; ++i)
    Scalars<To>::at(target, i) = static_cast<typename Scalars<To>::Scalar>(Scalars<From>::at(source, i));
}

template <class... T> struct Formats
{
  /// A type with a format for each T, ways between all of them, and text.
  static kel::ref_ptr<Type> createType(const std::array<const char*, sizeof...(T)>& names)
  {
    using First = std::tuple_element_t<0, std::tuple<T...>>;
    kel::ref_ptr<Type> type = new Type(TypeName<First>::get());
    std::size_t i = 0;
    (type->addFormat(names[i++], implement<T>()), ...);
    if constexpr (sizeof...(T) > 1) (addWays<T>(*type), ...);
    type->addFormat(ASCII, implement<String>());
    return type;
  }

private:
  template <class From> static void addWays(Type& type)
  {
    const Format* from = type.findFormat(typeid(From).name());
    (type.addConverter(from, type.findFormat(typeid(T).name()), convert<T, From>), ...);
  }
};

template <template <class> class Vec>
void addVectors(std::vector<kel::ref_ptr<Type>>& types, const char* stem)
{
  const String name = stem;
  const auto add = [&]<class... T>(Formats<T...>, const char* first, const char* second) {
    types.push_back(Formats<T...>::createType({(name + first).c_str(), (name + second).c_str()}));
  };
  add(Formats<Vec<double>, Vec<float>>(), "d", "f");
  add(Formats<Vec<std::int64_t>, Vec<std::int32_t>>(), "i64", "i32");
  add(Formats<Vec<std::uint64_t>, Vec<std::uint32_t>>(), "u64", "u32");
}

} // namespace

double scalarOf(const Value& value)
{
  const Format* format = value.getFormat();
  const auto get = format ? format->getImplementation().getScalar : nullptr;
  return get ? get(value.ptr(), 0) : std::numeric_limits<double>::quiet_NaN();
}

std::vector<kel::ref_ptr<Type>> createTypes()
{
  using namespace kel;
  std::vector<ref_ptr<Type>> types;
  types.push_back(Formats<double, float>::createType({"Real64", "Real32"}));
  types.push_back(Formats<bool>::createType({"Bool"}));
  types.push_back(Formats<Int64, Int32, Int16, Int8>::createType({"Int64", "Int32", "Int16", "Int8"}));
  types.push_back(
      Formats<UInt64, UInt32, UInt16, UInt8>::createType({"UInt64", "UInt32", "UInt16", "UInt8"}));
  types.push_back(Formats<String>::createType({"String"}));
  addVectors<Vec2T>(types, "Vec2");
  addVectors<Vec3T>(types, "Vec3");
  addVectors<Vec4T>(types, "Vec4");
  types.push_back(Formats<Matrix3x3d, Matrix3x3f>::createType({"Matrix3x3d", "Matrix3x3f"}));
  types.push_back(Formats<Matrix4x4d, Matrix4x4f>::createType({"Matrix4x4d", "Matrix4x4f"}));
  types.push_back(
      Formats<AffineMatrix4x4d, AffineMatrix4x4f>::createType({"AffineMatrix4x4d", "AffineMatrix4x4f"}));
  types.push_back(Formats<Quat64, Quat32>::createType({"Quat64", "Quat32"}));
  types.push_back(Formats<EntityPtr>::createType({"EntityPtr"}));
  types.push_back(Formats<Uuid>::createType({"Uuid"}));
  return types;
}

} // namespace kelData
