#pragma once
#include "kel/ConstraintRow.h"
#include "kel/Name.h"
#include "kel/Referenced.h"
#include "kelStream/Serializable.h"
#include <vector>

namespace kel {

/// A piece of a constraint that yields rows. Joints are put together from these.
class ElementaryConstraint : public Referenced, public kelStream::Serializable
{
public:
  /// Rows that the constraint yields when it is active.
  virtual UInt32 getNumRows() const = 0;
  /// Appends the rows for a step of `timeStep` seconds, as the bodies stand now. The addresses in the rows
  /// must hold until the step is solved.
  virtual void rows(Real timeStep, std::vector<ConstraintRow>& buffer) = 0;

  const String& getName() const { return m_name.str(); }
  void setName(const Name& name) { m_name = name; }
  /// Whether the constraint yields rows; true at first.
  void setEnable(bool enable) { m_enabled = enable; }
  bool getEnable() const { return m_enabled; }

protected:
  ~ElementaryConstraint() override = default;

private:
  Name m_name;
  bool m_enabled = true;
};

} // namespace kel
