#pragma once
#include "kel/EulerAngles.h"
#include "kel/Matrix3x3.h"

namespace kel {

/// A matrix of three rows that are normal to each other: a rotation for vectors as rows, which may also
/// scale. Nothing makes the rows normal that are written into it.
class OrthoMatrix3x3 : public Matrix3x3
{
public:
  using Matrix3x3::mult;
  using Matrix3x3::operator*;
  using Matrix3x3::postMult;
  using Matrix3x3::preMult;

  /// The identity.
  constexpr OrthoMatrix3x3() = default;
  /// Elements row by row.
  constexpr OrthoMatrix3x3(Real m00, Real m01, Real m02, Real m10, Real m11, Real m12, Real m20, Real m21,
                           Real m22)
      : Matrix3x3(m00, m01, m02, m10, m11, m12, m20, m21, m22)
  {}
  explicit constexpr OrthoMatrix3x3(const Matrix3x3& rows) : Matrix3x3(rows) {}
  /// A rotation; the quaternion must have length 1.
  explicit OrthoMatrix3x3(const Quat& rotation) : Matrix3x3(rotation) {}
  explicit OrthoMatrix3x3(const EulerAngles& angles) : OrthoMatrix3x3(Quat(angles)) {}

  /// Copies, or sets elements row by row.
  void set(const OrthoMatrix3x3& other) { *this = other; }
  void set(Real m00, Real m01, Real m02, Real m10, Real m11, Real m12, Real m20, Real m21, Real m22)
  {
    *this = OrthoMatrix3x3(m00, m01, m02, m10, m11, m12, m20, m21, m22);
  }
  /// Sets a rotation, as the constructors do.
  OrthoMatrix3x3& set(const Quat& rotation) { return *this = OrthoMatrix3x3(rotation); }
  OrthoMatrix3x3& set(const EulerAngles& angles) { return *this = OrthoMatrix3x3(angles); }
  /// Becomes the identity.
  void setIdentity() { makeIdentity(); }
  /// Sets a rotation; arguments as for a quaternion's `setRotate`, or a quaternion.
  void setRotate(const Quat& rotation) { set(rotation); }
  template <class... Args> void setRotate(const Args&... args) { set(Quat::rotate(args...)); }
  /// A rotation alone; arguments as for a quaternion's `setRotate`.
  template <class... Args> static OrthoMatrix3x3 rotate(const Args&... args)
  {
    return OrthoMatrix3x3(Quat::rotate(args...));
  }
  /// The rotation; the rows must have length 1.
  Quat get() const { return Quat(*this); }
  void get(Quat& rotation) const { rotation = get(); }
  /// The rotation in the convention of the angles.
  void get(EulerAngles& angles) const { angles.set(*this); }

  /// The inverse, also that of a matrix which scales.
  OrthoMatrix3x3 inverse() const { return OrthoMatrix3x3(Matrix3x3::inverse()); }
  /// Becomes the inverse.
  void invert() { *this = inverse(); }
  /// Rows and columns exchanged: the inverse of a rotation.
  OrthoMatrix3x3 transpose() const { return OrthoMatrix3x3(Matrix3x3::transpose()); }
  /// The lengths of the rows: by how much vectors along the axes grow.
  Vec3 getScale() const;

  /// The rotation `*this` followed by `other`.
  OrthoMatrix3x3 operator*(const OrthoMatrix3x3& other) const
  {
    return OrthoMatrix3x3(Matrix3x3::operator*(other));
  }
};

} // namespace kel
