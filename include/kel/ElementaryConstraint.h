#pragma once
#include "kel/ConstraintRow.h"
#include "kel/Name.h"
#include "kel/RangeReal.h"
#include "kel/Referenced.h"
#include "kel/RegularizationParameters.h"
#include "kelStream/Serializable.h"
#include <vector>

namespace kel {

/// A piece of a constraint that yields rows. Joints are put together from these.
///
/// An index of a row beyond the last is ignored, and what is asked of it is 0, or null.
class ElementaryConstraint : public Referenced, public kelStream::Serializable
{
public:
  /// Rows that the constraint yields when it is active.
  virtual UInt32 getNumRows() const { return static_cast<UInt32>(m_settings.size()); }
  /// Appends the rows for a step of `timeStep` seconds, as the bodies stand now. The addresses in the rows
  /// must hold until the step is solved.
  virtual void rows(Real timeStep, std::vector<ConstraintRow>& buffer) = 0;

  const String& getName() const { return m_name.str(); }
  void setName(const Name& name) { m_name = name; }
  /// Whether the constraint yields rows; true at first, but false for controllers.
  void setEnable(bool enable);
  bool getEnable() const { return m_enabled; }
  /// Whether the constraint acts on the bodies where they stand.
  virtual bool isActive() const { return m_enabled; }

  /// How soft a row is. Not owned.
  RegularizationParameters* getRegularizationParameters(std::size_t row);
  /// Compliance and damping of a row, as of `RegularizationParameters`, or of all (-1).
  void setCompliance(Real compliance, Int32 row = -1);
  Real getCompliance(std::size_t row) const;
  void setDamping(Real damping, Int32 row = -1);
  Real getDamping(std::size_t row) const;
  /// Bounds of the force of a row, or of all (-1), N; infinite at first.
  void setForceRange(const RangeReal& range, Int32 row = -1);
  RangeReal getForceRange(std::size_t row) const;
  /// The force of a row in the last step, N.
  Real getCurrentForce(std::size_t row) const;
  /// Forgets the forces, when rows take no part in a step.
  void clearForces();

protected:
  explicit ElementaryConstraint(UInt32 numRows = 0, RegularizationParameters::Type type = {});
  ~ElementaryConstraint() override = default;
  /// Appends a row with its settings, of which the bodies, the Jacobian and the target are to be filled in.
  ConstraintRow& addRow(std::size_t row, std::vector<ConstraintRow>& buffer);

private:
  struct Settings
  {
    RegularizationParameters regularization;
    RangeReal forceRange;
    Real force = 0;
  };
  template <class Change> void changeRows(Int32 row, Change change);

  Name m_name;
  std::vector<Settings> m_settings; // by row
  bool m_enabled = true;
};

} // namespace kel
