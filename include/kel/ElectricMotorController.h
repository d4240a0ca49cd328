#pragma once
#include "kel/BasicControllerConstraint.h"

namespace kel {

/// A direct-current motor without inductance: with the voltage U, the resistance R and the constant k it
/// pulls with k (U - k w) / R at the speed w. It does nothing while k is 0.
class ElectricMotorController : public BasicControllerConstraint
{
public:
  explicit ElectricMotorController(const ConstraintAngleBasedData& data)
      : BasicControllerConstraint(data, RegularizationParameters::NONHOLONOMIC)
  {}

  /// V, 0 at first.
  void setVoltage(Real voltage) { m_voltage = voltage; }
  Real getVoltage() const { return m_voltage; }
  /// Ohm, 1 at first; a negative one counts as 0.
  void setArmatureResistance(Real resistance) { m_resistance = resistance > 0 ? resistance : 0; }
  Real getArmatureResistance() const { return m_resistance; }
  /// N m/A, the same as V s; 1 at first.
  void setTorqueConstant(Real constant) { m_torqueConstant = constant; }
  Real getTorqueConstant() const { return m_torqueConstant; }

protected:
  ~ElectricMotorController() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Real m_voltage = 0;
  Real m_resistance = 1;
  Real m_torqueConstant = 1;
};

} // namespace kel
