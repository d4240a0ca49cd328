#include "kel/Quat.h"
#include "inRange.h"
#include "kel/OrthoMatrix3x3.h"

namespace kel {

template <class T> QuatT<T>& QuatT<T>::set(const EulerAngles& angles)
{
  Quat q;
  angles.get(q);
  return *this = QuatT(q);
}

template <class T> QuatT<T>& QuatT<T>::set(const Matrix4x4T<T>& matrix)
{
  matrix.get(*this);
  return *this;
}

template <class T> QuatT<T>& QuatT<T>::set(const OrthoMatrix3x3& matrix)
{
  return set(AffineMatrix4x4T<T>(matrix));
}

template <class T> void QuatT<T>::get(EulerAngles& angles) const { angles.set(Quat(*this)); }

template <class T> void QuatT<T>::get(Matrix4x4T<T>& matrix) const { matrix.setRotate(*this); }

template <class T> void QuatT<T>::get(OrthoMatrix3x3& matrix) const { matrix.set(Quat(*this)); }

template <class T> Vec3T<T> QuatT<T>::getAsEulerAngles(EulerConvention::Convention convention) const
{
  const EulerAngles angles(Quat(*this), convention);
  return Vec3T<T>(Vec3(angles.x(), angles.y(), angles.z()));
}

template <class T> void QuatT<T>::setRotate(T angle, const Vec3T<T>& axis)
{
  const Vec3T<T> direction = inRange(axis);
  const T length = direction.length();
  if (!(length > 0)) {
    *this = QuatT();
    return;
  }
  set(Vec4T<T>(direction * (std::sin(angle / 2) / length), std::cos(angle / 2)));
}

// Half the angle by the bisecting direction, which keeps its digits for small angles.
template <class T> void QuatT<T>::setRotate(const Vec3T<T>& from, const Vec3T<T>& to)
{
  const Vec3T<T> a = inRange(from).normal(), b = inRange(to).normal();
  Vec3T<T> half = a + b;
  if (a.equalsZero() || b.equalsZero()) {
    *this = QuatT();
  } else if (half.length() < 8 * std::numeric_limits<T>::epsilon()) {
    Vec3T<T> across;
    across[a.minElement()] = 1;
    set(Vec4T<T>(cross(a, across).normal(), 0));
  } else {
    half.normalize();
    set(Vec4T<T>(cross(a, half), a * half));
  }
}

template <class T> void QuatT<T>::getRotate(T& angle, Vec3T<T>& axis) const
{
  const T sine = asVec3().length();
  angle = 2 * std::atan2(sine, w());
  axis = sine > 0 ? asVec3() / sine : Vec3T<T>::Z_AXIS();
}

template <class T> void QuatT<T>::getRotate(T& angle, T& x, T& y, T& z) const
{
  Vec3T<T> axis;
  getRotate(angle, axis);
  x = axis.x();
  y = axis.y();
  z = axis.z();
}

template <class T> void QuatT<T>::slerp(T t, const QuatT& from, const QuatT& to)
{
  const T dot = from.m_elements * to.m_elements;
  const QuatT end = dot < 0 ? -to : to;
  // The angle from chord lengths keeps its digits near 0, where the arc cosine has none.
  const T angle = 2 * std::atan2((end - from).length(), (end + from).length());
  const T sine = std::sin(angle);
  if (sine < std::numeric_limits<T>::epsilon()) {
    *this = from * (1 - t) + end * t;
    normalize();
    return;
  }
  *this = from * (std::sin((1 - t) * angle) / sine) + end * (std::sin(t * angle) / sine);
}

template class QuatT<double>;
template class QuatT<float>;

} // namespace kel
