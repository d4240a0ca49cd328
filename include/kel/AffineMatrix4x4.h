#pragma once
#include "kel/EulerAngles.h"
#include "kel/Matrix4x4.h"

namespace kel {

/// A rotation block R, a translation in row 3 and the fourth column (0, 0, 0, 1): a point p goes to
/// `p * R + t`. Lengths are in metres, angles in radians.
template <class T> class AffineMatrix4x4T : public Matrix4x4T<T>
{
  using Base = Matrix4x4T<T>;
  using Vec3 = Vec3T<T>;

public:
  using Base::Base;
  using Base::get;
  using Base::postMult;
  using Base::preMult;
  using Base::set;

  /// The identity.
  constexpr AffineMatrix4x4T() = default;
  /// A rotation.
  explicit AffineMatrix4x4T(const QuatT<T>& rotation) { Base::setRotate(rotation); }
  explicit AffineMatrix4x4T(const EulerAngles& rotation) { setRotate(rotation); }
  explicit AffineMatrix4x4T(const OrthoMatrix3x3& rotation) { Base::setRotate(rotation); }
  /// A rotation, in any of these forms, then a translation.
  template <class Rotation>
  AffineMatrix4x4T(const Rotation& rotation, const Vec3& translation) : AffineMatrix4x4T(rotation)
  {
    setTranslate(translation);
  }

  /// Elements row by row.
  constexpr void set(T m00, T m01, T m02, T m03, T m10, T m11, T m12, T m13, T m20, T m21, T m22, T m23,
                     T m30, T m31, T m32, T m33)
  {
    *this = AffineMatrix4x4T(m00, m01, m02, m03, m10, m11, m12, m13, m20, m21, m22, m23, m30, m31, m32, m33);
  }
  /// A rotation without translation.
  AffineMatrix4x4T& set(const QuatT<T>& rotation) { return *this = AffineMatrix4x4T(rotation); }
  AffineMatrix4x4T& set(const EulerAngles& rotation) { return *this = AffineMatrix4x4T(rotation); }
  AffineMatrix4x4T& set(const OrthoMatrix3x3& rotation) { return *this = AffineMatrix4x4T(rotation); }
  /// Becomes the identity.
  AffineMatrix4x4T& setIdentity() { return *this = AffineMatrix4x4T(); }
  /// Replaces the translation.
  AffineMatrix4x4T& setTranslate(const Vec3& t) { return setTranslate(t.x(), t.y(), t.z()); }
  AffineMatrix4x4T& setTranslate(T x, T y, T z)
  {
    (*this)(3, 0) = x;
    (*this)(3, 1) = y;
    (*this)(3, 2) = z;
    return *this;
  }
  /// Replaces the rotation block, by a rotation in any form or from arguments as for a quaternion's
  /// `setRotate`.
  AffineMatrix4x4T& setRotate(const QuatT<T>& rotation)
  {
    Base::setRotate(rotation);
    return *this;
  }
  AffineMatrix4x4T& setRotate(const OrthoMatrix3x3& rotation)
  {
    Base::setRotate(rotation);
    return *this;
  }
  AffineMatrix4x4T& setRotate(const EulerAngles& rotation) { return setRotate(QuatT<T>(rotation)); }
  template <class... Args> AffineMatrix4x4T& setRotate(const Args&... args)
  {
    return setRotate(QuatT<T>::rotate(args...));
  }
  /// The translation, row 3.
  Vec3 getTranslate() const { return row(3); }
  /// The rotation of the block, which must have no scale.
  QuatT<T> getRotate() const { return QuatT<T>(*this); }

  /// A translation alone.
  static AffineMatrix4x4T translate(const Vec3& t) { return AffineMatrix4x4T().setTranslate(t); }
  static AffineMatrix4x4T translate(T x, T y, T z) { return translate(Vec3(x, y, z)); }
  /// A rotation alone; arguments as for a quaternion's `setRotate`.
  template <class... Args> static AffineMatrix4x4T rotate(const Args&... args)
  {
    return AffineMatrix4x4T(QuatT<T>::rotate(args...));
  }
  /// The block with rows (0, -z, y), (z, 0, -x), (-y, x, 0).
  static AffineMatrix4x4T crossMatrix(const Vec3& v)
  {
    return AffineMatrix4x4T(0, -v.z(), v.y(), 0, v.z(), 0, -v.x(), 0, -v.y(), v.x(), 0, 0, 0, 0, 0, 1);
  }

  /// The inverse of a rigid transform: the block transposed; wrong for one with scale or shear.
  AffineMatrix4x4T inverse() const
  {
    AffineMatrix4x4T result;
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j) result(i, j) = (*this)(j, i);
    return result.setTranslate(-transform3x3Inv(getTranslate()));
  }
  /// The transform `*this` followed by `other`.
  AffineMatrix4x4T operator*(const AffineMatrix4x4T& other) const
  {
    AffineMatrix4x4T result;
    result.mult(*this, other);
    return result;
  }
  /// Becomes `other * *this`.
  void preMult(const AffineMatrix4x4T& other) { this->mult(other, *this); }
  /// Becomes `*this * other`.
  void postMult(const AffineMatrix4x4T& other) { this->mult(*this, other); }

  /// `v * R + t`.
  Vec3 transformPoint(const Vec3& v) const
  {
    return row(0) * v.x() + row(1) * v.y() + row(2) * v.z() + row(3);
  }
  /// `v * R`.
  Vec3 transformVector(const Vec3& v) const { return row(0) * v.x() + row(1) * v.y() + row(2) * v.z(); }
  /// `v * R`.
  Vec3 transform3x3(const Vec3& v) const { return transformVector(v); }
  Vec3& transform3x3(const Vec3& v, Vec3& result) const { return result = transform3x3(v); }
  /// `v` times the transposed block: the inverse of `transform3x3` for a rotation.
  Vec3 transform3x3Inv(const Vec3& v) const { return Vec3(row(0) * v, row(1) * v, row(2) * v); }
  Vec3& transform3x3Inv(const Vec3& v, Vec3& result) const { return result = transform3x3Inv(v); }
  /// `transformPoint`.
  Vec3 preMult(const Vec3& v) const { return transformPoint(v); }
  /// The block times `v` as a column, over `t . v + 1`: row 3 is perspective here, not translation.
  Vec3 postMult(const Vec3& v) const
  {
    const T d = 1 / (row(3) * v + 1);
    return transform3x3Inv(v) * d;
  }
  /// `postMult`, not a transform of a point.
  Vec3 operator*(const Vec3& v) const { return postMult(v); }
  Vec4T<T> operator*(const Vec4T<T>& v) const { return this->postMult(v); }

private:
  Vec3 row(std::size_t i) const { return Vec3((*this)(i, 0), (*this)(i, 1), (*this)(i, 2)); }
};

/// The transforms by element type.
using AffineMatrix4x4 = AffineMatrix4x4T<Real>;
using AffineMatrix4x4d = AffineMatrix4x4T<Real64>;
using AffineMatrix4x4f = AffineMatrix4x4T<Real32>;

/// Whether the sixteen elements differ by no more than `epsilon`.
inline bool equivalent(const AffineMatrix4x4& a, const AffineMatrix4x4& b, Real epsilon = EQUIVALENT_EPSILON)
{
  for (std::size_t i = 0; i < 16; ++i)
    if (!equivalent(a.ptr()[i], b.ptr()[i], epsilon)) return false;
  return true;
}

} // namespace kel
