#pragma once
#include "kel/BasicControllerConstraint.h"

namespace kel {

/// Holds an angle at a position. With a compliance it is a spring.
class LockController : public BasicControllerConstraint
{
public:
  explicit LockController(const ConstraintAngleBasedData& data) : BasicControllerConstraint(data) {}

  /// Where to hold the angle, rad or m; 0 at first.
  void setPosition(Real position) { m_position = position; }
  Real getPosition() const { return m_position; }

protected:
  ~LockController() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Real m_position = 0;
};

} // namespace kel
