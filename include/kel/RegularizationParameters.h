#pragma once
#include "kel/ConstraintRow.h"

namespace kel {

/// How soft a row of a constraint is. Units are given for a condition on a length; for one on an angle read
/// rad for m and N m for N.
class RegularizationParameters
{
public:
  enum Type
  {
    HOLONOMIC = 0,    ///< a condition on places
    NONHOLONOMIC = 1, ///< a condition on velocities
    DEFAULT = HOLONOMIC
  };

  static constexpr Real DEFAULT_COMPLIANCE = 1e-10;
  static constexpr Real DEFAULT_DAMPING = ConstraintRow::DEFAULT_DAMPING;

  explicit RegularizationParameters(Type type = DEFAULT) : m_type(type) {}

  bool isHolonomic() const { return m_type == HOLONOMIC; }
  void setType(Type type) { m_type = type; }
  /// Violation by a force of 1 N, m/N (non-holonomic: m/(N s)); a negative one counts as 0.
  void setCompliance(Real compliance) { m_compliance = compliance > 0 ? compliance : 0; }
  Real getCompliance() const { return m_compliance; }
  /// Time in which a violation falls to its e-th part, s; a negative one counts as 0. Rows on velocities have
  /// none. Unless it is set, stiff rows take the time step in place of the default.
  void setDamping(Real damping) { m_damping = damping > 0 ? damping : 0; }
  Real getDamping() const { return m_damping < 0 ? DEFAULT_DAMPING : m_damping; }
  /// The same as rows take it: below 0 when it was never set.
  Real getRowDamping() const { return m_damping; }
  /// The same by the time in which a violation halves, s.
  void setDampingHalfLife(Real halfLife) { setDamping(halfLife / LN_2); }

private:
  static constexpr Real LN_2 = 0.69314718055994530942;

  Real m_compliance = DEFAULT_COMPLIANCE;
  Real m_damping = ConstraintRow().damping;
  Type m_type;
};

} // namespace kel
