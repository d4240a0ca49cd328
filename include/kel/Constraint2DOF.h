#pragma once
#include "kel/Constraint.h"
#include "kel/JointControllers.h"
#include "kel/Screw1D.h"

namespace kel {

/// A joint that leaves two angles free, with a motor, an electric motor, a range and a lock on each, and a
/// screw between them.
class Constraint2DOF : public Constraint
{
public:
  enum DOF
  {
    FIRST = 0, ///< the way along the axis
    SECOND = 1 ///< the rotation about it
  };

  /// The constraint if it is of this class, else null.
  static Constraint2DOF* safeCast(Constraint* constraint)
  {
    return dynamic_cast<Constraint2DOF*>(constraint);
  }

  /// The controllers of an angle, disabled at first; null in a joint without bodies. Not owned.
  Motor1D* getMotor1D(DOF dof) const { return of(dof).motor.get(); }
  ElectricMotorController* getElectricMotorController(DOF dof) const { return of(dof).electricMotor.get(); }
  Range1D* getRange1D(DOF dof) const { return of(dof).range.get(); }
  Lock1D* getLock1D(DOF dof) const { return of(dof).lock.get(); }
  Screw1D* getScrew1D() const { return m_screw.get(); }
  /// The angle as it is now, m or rad; of the first body against the second, or the world. 0 without bodies.
  Real getAngle(DOF dof) const { return of(dof).getAngle(); }
  /// Its speed, m/s or rad/s.
  Real getCurrentSpeed(DOF dof) const { return of(dof).getCurrentSpeed(); }

protected:
  Constraint2DOF() = default;
  ~Constraint2DOF() override = default;
  /// Makes the controllers on two angles, if the bodies are attached.
  void addControllers(Angle* way, Angle* rotation);

private:
  const JointControllers& of(DOF dof) const { return m_controllers[dof == FIRST ? 0 : 1]; }

  JointControllers m_controllers[2];
  ref_ptr<Screw1D> m_screw;
};

} // namespace kel
