#pragma once
#include "kel/Math.h"
#include <concepts>
#include <cstddef>
#include <limits>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace kel {

/// The type to compute in with elements of type `T`: `T`, but without the sign for integers, so that they
/// wrap.
template <class T> struct ComputedIn
{
  using Type = T;
};
template <std::integral T> struct ComputedIn<T>
{
  using Type = std::make_unsigned_t<T>;
};

/// What vectors `V` of `N` elements of type `T` have in common. Elements are taken in index order, and sums
/// are formed in that order in `T`, where integers wrap; units are those of the elements. Vectors of three
/// keep a fourth element, which stays 0, so that all rows in memory are 16-byte multiples.
template <class V, class T, std::size_t N> class VecBase
{
public:
  using value_type = T;
  /// Elements, and elements in memory.
  static constexpr std::size_t SIZE = N;
  static constexpr std::size_t STORAGE_SIZE = N == 3 ? 4 : N;

  /// Element `i`, not tested.
  constexpr T& operator[](std::size_t i) { return m_data[i]; }
  constexpr const T& operator[](std::size_t i) const { return m_data[i]; }
  /// Element `i` of those in memory; throws `std::out_of_range` beyond them.
  constexpr T at(std::size_t i) const { return m_data[checked(i)]; }
  constexpr T& at(std::size_t i) { return m_data[checked(i)]; }
  /// The elements in memory, a view.
  constexpr T* ptr() { return m_data; }
  constexpr const T* ptr() const { return m_data; }

  /// A vector of uniform random elements of [min, max], the last element drawn first.
  static V random(T min, T max)
  {
    using Bound = std::conditional_t<std::floating_point<T>, T, Real>;
    V v;
    for (std::size_t i = N; i-- > 0;) v[i] = static_cast<T>(kel::random(Bound(min), Bound(max)));
    return v;
  }

  /// Exact comparison; a NaN equals nothing.
  constexpr bool operator==(const VecBase& other) const
  {
    return all([&](std::size_t i) { return m_data[i] == other[i]; });
  }
  /// Whether each element is smaller in size than the machine epsilon of `T`.
  constexpr bool equalsZero() const requires std::floating_point<T>
  {
    constexpr T epsilon = std::numeric_limits<T>::epsilon();
    return all([&](std::size_t i) { return m_data[i] > -epsilon && m_data[i] < epsilon; });
  }
  /// Whether no element is a NaN; infinities are valid.
  constexpr bool isValid() const
  {
    return all([&](std::size_t i) { return m_data[i] == m_data[i]; });
  }
  /// Whether any element is a NaN.
  constexpr bool isNaN() const { return !isValid(); }

  /// The sum.
  constexpr V operator+(const V& other) const
  {
    return generate([&](std::size_t i) { return operand(i) + other.operand(i); });
  }
  /// The difference.
  constexpr V operator-(const V& other) const
  {
    return generate([&](std::size_t i) { return operand(i) - other.operand(i); });
  }
  /// Every sign flipped, also that of a 0.
  constexpr V operator-() const
  {
    return generate([&](std::size_t i) { return -operand(i); });
  }
  /// Each element times a factor.
  constexpr V operator*(T factor) const
  {
    return generate([&](std::size_t i) { return operand(i) * static_cast<Computed>(factor); });
  }
  friend constexpr V operator*(T factor, const V& v) { return v * factor; }
  /// Divides each element; not a product with the reciprocal.
  constexpr V operator/(T divisor) const
  {
    return generate([&](std::size_t i) { return m_data[i] / divisor; });
  }
  /// In place, as the operators without assignment.
  constexpr V& operator+=(const V& other) { return self() = self() + other; }
  constexpr V& operator-=(const V& other) { return self() = self() - other; }
  constexpr V& operator*=(T factor) { return self() = self() * factor; }
  constexpr V& operator/=(T divisor) { return self() = self() / divisor; }
  /// Dot product.
  constexpr T operator*(const V& other) const
  {
    return [&]<std::size_t... I>(std::index_sequence<I...>)
    {
      return static_cast<T>((... + (operand(I) * other.operand(I))));
    }
    (std::make_index_sequence<N>());
  }

  /// Products element by element.
  static constexpr V mul(const V& a, const V& b)
  {
    return generate([&](std::size_t i) { return a.operand(i) * b.operand(i); });
  }
  /// Quotients element by element.
  static constexpr V div(const V& a, const V& b)
  {
    return generate([&](std::size_t i) { return a[i] / b[i]; });
  }
  /// The smaller of each pair of elements.
  static constexpr V componentMin(const V& a, const V& b)
  {
    return generate([&](std::size_t i) { return b[i] < a[i] ? b[i] : a[i]; });
  }
  /// The greater of each pair of elements.
  static constexpr V componentMax(const V& a, const V& b)
  {
    return generate([&](std::size_t i) { return a[i] < b[i] ? b[i] : a[i]; });
  }
  /// Clamps each element to its own bounds, as `kel::clamp` does.
  constexpr void clamp(const V& min, const V& max)
  {
    self() = generate([&](std::size_t i) { return kel::clamp(m_data[i], min[i], max[i]); });
  }

  /// Square of the length.
  constexpr T length2() const { return self() * self(); }
  /// Length; the root is taken in double precision.
  T length() const requires std::floating_point<T> { return static_cast<T>(std::sqrt(double(length2()))); }
  /// Square of the distance between two points.
  constexpr T distance2(const V& other) const { return (self() - other).length2(); }
  /// Distance between two points.
  T distance(const V& other) const requires std::floating_point<T> { return (self() - other).length(); }
  /// Scales to length 1 and returns the length before. A vector of length 0 stays, without any tolerance.
  T normalize() requires std::floating_point<T>
  {
    const T oldLength = length();
    if (oldLength > 0) {
      const double factor = 1.0 / oldLength;
      self() = generate([&](std::size_t i) { return m_data[i] * factor; });
    }
    return oldLength;
  }
  /// The vector of length 1 in the same direction, or the null vector for one of length 0.
  V normal() const requires std::floating_point<T>
  {
    V result = self();
    result.normalize();
    return result;
  }

protected:
  template <class... Elements>
  explicit constexpr VecBase(Elements... elements) : m_data{static_cast<T>(elements)...}
  {}

  template <class Element> static constexpr V generate(Element element)
  {
    return [&]<std::size_t... I>(std::index_sequence<I...>) { return V(static_cast<T>(element(I))...); }
    (std::make_index_sequence<N>());
  }
  template <class Test> static constexpr bool all(Test test)
  {
    return [&]<std::size_t... I>(std::index_sequence<I...>) { return (test(I) && ...); }
    (std::make_index_sequence<N>());
  }

private:
  using Computed = typename ComputedIn<T>::Type;

  constexpr Computed operand(std::size_t i) const { return static_cast<Computed>(m_data[i]); }
  constexpr V& self() { return static_cast<V&>(*this); }
  constexpr const V& self() const { return static_cast<const V&>(*this); }
  static constexpr std::size_t checked(std::size_t i)
  {
    if (i >= STORAGE_SIZE) throw std::out_of_range("index of a vector element is out of range");
    return i;
  }

  T m_data[STORAGE_SIZE];
};

/// Whether the vectors differ by no more than `epsilon` in each element; false for a NaN.
template <class V, class T, std::size_t N>
constexpr bool equivalent(const VecBase<V, T, N>& a, const VecBase<V, T, N>& b,
                          Real epsilon = EQUIVALENT_VECTOR_EPSILON)
{
  for (std::size_t i = 0; i < N; ++i)
    if (!equivalent(Real(a[i]), Real(b[i]), epsilon)) return false;
  return true;
}

} // namespace kel
