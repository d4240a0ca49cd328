#pragma once
#include "kel/EulerConvention.h"
#include "kel/Vec4.h"

namespace kel {

template <class T> class Matrix4x4T;
class EulerAngles;
class OrthoMatrix3x3;

/// Rotation as a quaternion x, y, z, w; (0, 0, 0, 1) is the identity. Only unit quaternions rotate without
/// scaling, and no member but `normalize` makes them so. Angles are in radians.
template <class T> class QuatT
{
public:
  /// The identity.
  constexpr QuatT() : QuatT(0, 0, 0, 1) {}
  /// The elements as they are.
  constexpr QuatT(T x, T y, T z, T w) : m_elements(x, y, z, w) {}
  explicit constexpr QuatT(const Vec4T<T>& xyzw) : m_elements(xyzw) {}
  /// Rotation by `angle` about `axis`, as `setRotate`.
  QuatT(T angle, const Vec3T<T>& axis) { setRotate(angle, axis); }
  /// Shortest rotation between two directions, as `setRotate`.
  QuatT(const Vec3T<T>& from, const Vec3T<T>& to) { setRotate(from, to); }
  /// Three rotations, the first one first, as `setRotate`.
  QuatT(T angle1, const Vec3T<T>& axis1, T angle2, const Vec3T<T>& axis2, T angle3, const Vec3T<T>& axis3)
  {
    setRotate(angle1, axis1, angle2, axis2, angle3, axis3);
  }
  /// A rotation in another form, as `set`.
  explicit QuatT(const EulerAngles& angles) { set(angles); }
  explicit QuatT(const Matrix4x4T<T>& matrix) { set(matrix); }
  explicit QuatT(const OrthoMatrix3x3& matrix) { set(matrix); }
  /// Elements converted from another type.
  template <class U> explicit constexpr QuatT(const QuatT<U>& other) : m_elements(other.asVec4()) {}

  /// Exact comparison of the elements, so that q and -q differ.
  constexpr bool operator==(const QuatT& other) const { return m_elements == other.m_elements; }

  /// The elements by name, to read and to write.
  constexpr T x() const { return m_elements.x(); }
  constexpr T& x() { return m_elements.x(); }
  constexpr T y() const { return m_elements.y(); }
  constexpr T& y() { return m_elements.y(); }
  constexpr T z() const { return m_elements.z(); }
  constexpr T& z() { return m_elements.z(); }
  constexpr T w() const { return m_elements.w(); }
  constexpr T& w() { return m_elements.w(); }
  /// Element `i`, not tested.
  constexpr T& operator[](std::size_t i) { return m_elements[i]; }
  constexpr T operator[](std::size_t i) const { return m_elements[i]; }
  /// Element `i`; throws `std::out_of_range` beyond 3.
  constexpr T& at(std::size_t i) { return m_elements.at(i); }
  constexpr T at(std::size_t i) const { return m_elements.at(i); }
  /// All four elements.
  constexpr const Vec4T<T>& asVec4() const { return m_elements; }
  /// x, y, z.
  constexpr Vec3T<T> asVec3() const { return Vec3T<T>(x(), y(), z()); }

  /// Sets all elements as they are.
  constexpr void set(T x, T y, T z, T w) { m_elements.set(x, y, z, w); }
  constexpr void set(const Vec4T<T>& xyzw) { m_elements = xyzw; }
  /// Writes element `i`, tested as in `at`; the value comes first.
  constexpr void set(T value, std::size_t i) { m_elements.set(value, i); }
  /// Sets a rotation in another form; the block of a matrix must have no scale.
  QuatT& set(const EulerAngles& angles);
  QuatT& set(const Matrix4x4T<T>& matrix);
  QuatT& set(const OrthoMatrix3x3& matrix);
  /// Writes the rotation: in the convention of the angles; into a matrix of four rows its block only.
  void get(EulerAngles& angles) const;
  void get(Matrix4x4T<T>& matrix) const;
  void get(OrthoMatrix3x3& matrix) const;
  /// The Euler angles, in radians, of a convention.
  Vec3T<T>
  getAsEulerAngles(EulerConvention::Convention convention = EulerConvention::DEFAULT_CONVENTION) const;

  /// Sets the rotation by `angle` about `axis` of any length; the identity for a null axis.
  void setRotate(T angle, const Vec3T<T>& axis);
  void setRotate(T angle, T x, T y, T z) { setRotate(angle, Vec3T<T>(x, y, z)); }
  /// Sets three rotations, the first one first.
  void setRotate(T angle1, const Vec3T<T>& axis1, T angle2, const Vec3T<T>& axis2, T angle3,
                 const Vec3T<T>& axis3)
  {
    *this = QuatT(angle1, axis1) * QuatT(angle2, axis2) * QuatT(angle3, axis3);
  }
  /// Sets the shortest rotation that turns `from` into the direction of `to`, both of any length; half a turn
  /// about some normal of `from` if they are opposite, the identity if one is null.
  void setRotate(const Vec3T<T>& from, const Vec3T<T>& to);
  /// The rotation that `setRotate` with the same arguments sets.
  template <class... Args> static QuatT rotate(const Args&... args)
  {
    QuatT q;
    q.setRotate(args...);
    return q;
  }
  /// Angle in [0, 2 pi] and unit axis; the axis of the identity is z.
  void getRotate(T& angle, Vec3T<T>& axis) const;
  void getRotate(T& angle, T& x, T& y, T& z) const;
  /// Sets the rotation at `t` of [0, 1] on the shorter great circle between two rotations (Shoemake 1985).
  void slerp(T t, const QuatT& from, const QuatT& to);

  /// The rotation `*this` followed by `q`: the Hamilton product of `q` and `*this`.
  constexpr QuatT operator*(const QuatT& q) const
  {
    const QuatT& p = *this;
    return QuatT(p.x() * q.w() + q.x() * p.w() + p.z() * q.y() - q.z() * p.y(),
                 q.w() * p.y() - q.x() * p.z() + p.w() * q.y() + p.x() * q.z(),
                 q.w() * p.z() + q.x() * p.y() - p.x() * q.y() + p.w() * q.z(),
                 q.w() * p.w() - q.x() * p.x() - q.y() * p.y() - q.z() * p.z());
  }
  /// The product with `q` as the left factor of Hamilton's: `*this` acts first.
  constexpr QuatT leftMult(const QuatT& q) const { return *this * q; }
  /// The product with `q` as the right factor of Hamilton's: `q` acts first.
  constexpr QuatT rightMult(const QuatT& q) const { return q * *this; }
  /// The vector rotated, for a unit quaternion.
  constexpr Vec3T<T> operator*(const Vec3T<T>& v) const
  {
    const Vec3T<T> u = asVec3();
    const Vec3T<T> t = cross(u, v);
    const Vec3T<T> s = cross(u, t);
    return v + t * (2 * w()) + s * T(2);
  }
  /// Each element times a factor.
  constexpr QuatT operator*(T factor) const { return QuatT(m_elements * factor); }
  /// Each element times the reciprocal.
  constexpr QuatT operator/(T divisor) const { return *this * (1 / divisor); }
  /// `*this` followed by the inverse of `q`.
  constexpr QuatT operator/(const QuatT& q) const { return *this * q.inverse(); }
  /// Sums, differences and opposites of the elements.
  constexpr QuatT operator+(const QuatT& q) const { return QuatT(m_elements + q.m_elements); }
  constexpr QuatT operator-(const QuatT& q) const { return QuatT(m_elements - q.m_elements); }
  constexpr QuatT operator-() const { return QuatT(-m_elements); }

  /// Length of the four elements and its square, 1 for a rotation.
  T length() const { return m_elements.length(); }
  constexpr T length2() const { return m_elements.length2(); }
  /// Scales to length 1 and returns the length before; a null quaternion stays.
  T normalize() { return m_elements.normalize(); }
  /// (-x, -y, -z, w), the inverse rotation of a unit quaternion.
  constexpr QuatT conj() const { return QuatT(-x(), -y(), -z(), w()); }
  /// The inverse rotation for any length; not finite for a null quaternion.
  constexpr QuatT inverse() const { return conj() / length2(); }
  /// Whether this is exactly (0, 0, 0, 1).
  constexpr bool zeroRotation() const { return *this == QuatT(); }

private:
  Vec4T<T> m_elements;
};

/// The quaternions by element type.
using Quat = QuatT<Real>;
using Quat32 = QuatT<Real32>;
using Quat64 = QuatT<Real64>;

/// Whether the elements differ by no more than `epsilon`; q and -q are not equivalent.
constexpr bool equivalent(const Quat& a, const Quat& b, Real epsilon = EQUIVALENT_VECTOR_EPSILON)
{
  return equivalent(a.asVec4(), b.asVec4(), epsilon);
}

extern template class QuatT<double>;
extern template class QuatT<float>;

} // namespace kel
