#pragma once
#include "kel/EulerConvention.h"
#include "kel/Vec3.h"
#include <numbers>

namespace kel {

template <class T> class QuatT;
template <class T> class AffineMatrix4x4T;
using Quat = QuatT<Real>;
using AffineMatrix4x4 = AffineMatrix4x4T<Real>;
class OrthoMatrix3x3;

/// A rotation as three rotations about coordinate axes, one after the other: angles x, y and z, in radians,
/// about the first, second and third axis of a convention.
class EulerAngles
{
public:
  using Convention = EulerConvention::Convention;

  /// A convention by its code. Any number is harmless.
  class EulerOrder
  {
  public:
    explicit constexpr EulerOrder(Convention convention = EulerConvention::DEFAULT_CONVENTION)
        : m_code(convention)
    {}
    constexpr Convention getConvention() const { return static_cast<Convention>(m_code); }
    /// Whether the axes stand still.
    constexpr bool isStatic() const { return (m_code & 1) == 0; }
    /// Whether the last axis is the first one again.
    constexpr bool isRepeat() const { return (m_code & 2) != 0; }
    /// Whether the axes are in odd order, as x, z, y is.
    constexpr bool isOdd() const { return (m_code & 4) != 0; }
    /// The axes, 0 to 2, as for axes that stand still: the first one, the second one, and the one left.
    constexpr int i() const { return SAFE[first()]; }
    constexpr int j() const { return NEXT[i() + isOdd()]; }
    constexpr int k() const { return NEXT[i() + !isOdd()]; }

  private:
    static constexpr int SAFE[] = {0, 1, 2, 0};
    static constexpr int NEXT[] = {1, 2, 0, 1};
    constexpr int first() const { return (m_code >> 3) & 3; }

    Int32 m_code;
  };

  /// No rotation.
  explicit EulerAngles(Convention convention = EulerConvention::DEFAULT_CONVENTION) : m_order(convention) {}
  /// Angles in radians, with a convention or its code.
  EulerAngles(Real x, Real y, Real z, int code) : EulerAngles(x, y, z, static_cast<Convention>(code)) {}
  EulerAngles(Real x, Real y, Real z, Convention convention = EulerConvention::DEFAULT_CONVENTION)
      : m_angles{x, y, z}, m_order(convention)
  {}
  explicit EulerAngles(const Vec3& angles, Convention convention = EulerConvention::DEFAULT_CONVENTION)
      : EulerAngles(angles.x(), angles.y(), angles.z(), convention)
  {}
  /// The angles of a rotation, as `set`.
  explicit EulerAngles(const AffineMatrix4x4& matrix,
                       Convention convention = EulerConvention::DEFAULT_CONVENTION)
  {
    set(matrix, convention);
  }
  explicit EulerAngles(const Quat& rotation, Convention convention = EulerConvention::DEFAULT_CONVENTION)
  {
    set(rotation, convention);
  }
  explicit EulerAngles(const OrthoMatrix3x3& matrix,
                       Convention convention = EulerConvention::DEFAULT_CONVENTION)
  {
    set(matrix, convention);
  }

  /// Angles of the default convention, each uniform between those of two vectors: -pi and pi, unless given.
  static EulerAngles random(const Vec3& min = Vec3(-std::numbers::pi),
                            const Vec3& max = Vec3(std::numbers::pi),
                            Convention convention = EulerConvention::DEFAULT_CONVENTION);

  /// The angles in radians.
  Real x() const { return m_angles[0]; }
  Real y() const { return m_angles[1]; }
  Real z() const { return m_angles[2]; }
  /// An angle by its index, 0 to 2; throws `std::out_of_range` beyond.
  Real& operator[](std::size_t i) { return m_angles[checked(i)]; }
  Real operator[](std::size_t i) const { return m_angles[checked(i)]; }
  /// Sets the angles; the convention stays.
  void set(const Vec3& angles) { set(angles.x(), angles.y(), angles.z()); }
  void set(Real x, Real y, Real z) { *this = EulerAngles(x, y, z, m_order.getConvention()); }
  /// The convention, a part of this object.
  EulerOrder& getOrder() { return m_order; }
  const EulerOrder& getOrder() const { return m_order; }

  /// Sets the angles of a rotation, in the object's own convention for `BAD`: the first and third in [-pi,
  /// pi], the second in [-pi / 2, pi / 2], or [0, pi] where the last axis is the first one. Where that leaves
  /// a choice, the angle about the first axis `i` is 0. A quaternion may have any length, a matrix any scale
  /// that is the same on all axes.
  EulerAngles& set(const AffineMatrix4x4& matrix, Convention convention = EulerConvention::BAD);
  EulerAngles& set(const OrthoMatrix3x3& matrix, Convention convention = EulerConvention::BAD);
  EulerAngles& set(const Quat& rotation, Convention convention = EulerConvention::BAD);
  /// Writes the rotation, into a transform its rotation block only. False if it is none, since an angle is
  /// not finite.
  bool get(AffineMatrix4x4& matrix) const;
  bool get(OrthoMatrix3x3& matrix) const;
  bool get(Quat& rotation) const;

private:
  static std::size_t checked(std::size_t i)
  {
    if (i > 2) throw std::out_of_range("index of an Euler angle is out of range");
    return i;
  }

  Real m_angles[3] = {0, 0, 0};
  EulerOrder m_order;
};

} // namespace kel
