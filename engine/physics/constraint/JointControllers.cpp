#include "kel/JointControllers.h"
#include "kel/Constraint1DOF.h"
#include "kel/Constraint2DOF.h"

namespace kel {

void JointControllers::create(Constraint& joint, const AttachmentPair& pair, Angle* angle,
                              const String& suffix)
{
  const ConstraintAngleBasedData data(pair, angle);
  motor = new Motor1D(data);
  electricMotor = new ElectricMotorController(data);
  range = new Range1D(data);
  lock = new Lock1D(data);
  joint.addSecondaryConstraint("Motor1D" + suffix, motor.get());
  joint.addSecondaryConstraint("ElectricMotor" + suffix, electricMotor.get());
  joint.addSecondaryConstraint("Range1D" + suffix, range.get());
  joint.addSecondaryConstraint("Lock1D" + suffix, lock.get());
}

void Constraint1DOF::addControllers(Angle* angle)
{
  const ref_ptr<Angle> keep(angle);
  if (!m_pair.valid()) return;
  m_pair.add(angle);
  m_controllers.create(*this, m_pair, angle, "");
}

void Constraint2DOF::addControllers(Angle* way, Angle* rotation)
{
  const ref_ptr<Angle> keep[2] = {way, rotation};
  if (!m_pair.valid()) return;
  m_pair.add(way);
  m_pair.add(rotation);
  m_controllers[0].create(*this, m_pair, way, "First");
  m_controllers[1].create(*this, m_pair, rotation, "Second");
  m_screw = new Screw1D(ConstraintAngleBasedData(m_pair, way), rotation);
  addSecondaryConstraint("Screw1D", m_screw.get());
}

} // namespace kel
