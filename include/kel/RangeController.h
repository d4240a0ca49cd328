#pragma once
#include "kel/BasicControllerConstraint.h"
#include "kel/RangeReal.h"

namespace kel {

/// Keeps an angle in a range, without bouncing at its ends.
class RangeController : public BasicControllerConstraint
{
public:
  explicit RangeController(const ConstraintAngleBasedData& data) : BasicControllerConstraint(data) {}

  /// The range, rad or m; infinite at first.
  void setRange(const RangeReal& range) { m_range = range; }
  void setRange(Real lower, Real upper) { m_range = RangeReal(lower, upper); }
  const RangeReal& getRange() const { return m_range; }
  /// Whether the angle is at an end of the range or beyond.
  bool isActive() const override;

protected:
  ~RangeController() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  RangeReal m_range = RangeReal(std::numeric_limits<Real>::infinity());
};

} // namespace kel
