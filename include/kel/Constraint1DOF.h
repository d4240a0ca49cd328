#pragma once
#include "kel/Constraint.h"
#include "kel/JointControllers.h"

namespace kel {

/// A joint that leaves one angle free, with a motor, an electric motor, a range and a lock on it.
class Constraint1DOF : public Constraint
{
public:
  /// The constraint if it is of this class, else null.
  static Constraint1DOF* safeCast(Constraint* constraint)
  {
    return dynamic_cast<Constraint1DOF*>(constraint);
  }

  /// The controllers, disabled at first; null in a joint without bodies. Not owned.
  Motor1D* getMotor1D() const { return m_controllers.motor.get(); }
  ElectricMotorController* getElectricMotorController() const { return m_controllers.electricMotor.get(); }
  Range1D* getRange1D() const { return m_controllers.range.get(); }
  Lock1D* getLock1D() const { return m_controllers.lock.get(); }
  /// The angle as it is now, rad or m; of the first body against the second, or the world. 0 without bodies.
  Real getAngle() const { return m_controllers.getAngle(); }
  /// Its speed, rad/s or m/s.
  Real getCurrentSpeed() const { return m_controllers.getCurrentSpeed(); }

protected:
  Constraint1DOF() = default;
  ~Constraint1DOF() override = default;
  /// Makes the controllers on an angle, if the bodies are attached.
  void addControllers(Angle* angle);

private:
  JointControllers m_controllers;
};

} // namespace kel
