#pragma once
#include "kel/BasicControllerConstraint.h"

namespace kel {

/// Binds the way along an axis to the rotation about it, as a thread does.
class ScrewController : public BasicControllerConstraint
{
public:
  /// `data` has the way, `rotation` the rotation; no reference may be null.
  ScrewController(const ConstraintAngleBasedData& data, Angle* rotation);

  /// Way of a whole turn, m; 0 at first. The thread meets where the bodies are when it changes.
  void setLead(Real lead);
  Real getLead() const { return m_lead; }

protected:
  ~ScrewController() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Real violation() const;

  const ref_ptr<Angle> m_rotation;
  Real m_lead = 0;
  Real m_start = 0; // the violation that counts as none
};

} // namespace kel
