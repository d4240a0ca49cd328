#pragma once
#include "kel/ConstraintRow.h"
#include "kel/Referenced.h"

namespace kel {

class AttachmentPair;

/// A number that tells how the first attachment of a pair stands to the second: a rotation in rad or a way in
/// m. Motors, ranges and locks act along it.
class Angle : public Referenced
{
public:
  enum Axis
  {
    U = 0,
    V = 1,
    N = 2
  };
  enum Type
  {
    TRANSLATIONAL = 0,
    ROTATIONAL = 1
  };

  /// Takes the value from a valid pair that has been transformed.
  virtual void transform(const AttachmentPair& pair) = 0;
  /// Makes the Jacobian of a row that of the value.
  virtual void fillRow(const AttachmentPair& pair, ConstraintRow& row) const = 0;
  /// Change of the value by the bodies' velocities, rad/s or m/s.
  Real calculateSpeed(const AttachmentPair& pair) const;
  /// The axis of the second attachment that the angle is about, or along.
  Axis getAxis() const { return m_axis; }
  Type getType() const { return m_type; }
  /// The value that was taken last.
  Real getValue() const { return m_value; }

protected:
  Angle(Axis axis, Type type) : m_axis(axis), m_type(type) {}
  ~Angle() override = default;

  Real m_value = 0;

private:
  Axis m_axis;
  Type m_type;
};

} // namespace kel
