#pragma once
#include "kel/ElectricMotorController.h"
#include "kel/Lock1D.h"
#include "kel/Motor1D.h"
#include "kel/Range1D.h"

namespace kel {

class Constraint;

/// The controllers of one free angle of a joint; null before they are made.
struct JointControllers
{
  ref_ptr<Motor1D> motor;
  ref_ptr<ElectricMotorController> electricMotor;
  ref_ptr<Range1D> range;
  ref_ptr<Lock1D> lock;

  /// Makes them and adds them to a joint as secondary constraints, whose names end with `suffix`.
  void create(Constraint& joint, const AttachmentPair& pair, Angle* angle, const String& suffix);
  /// The angle and its speed, 0 before the controllers are made.
  Real getAngle() const { return lock ? lock->getAngle() : 0; }
  Real getCurrentSpeed() const { return lock ? lock->getCurrentSpeed() : 0; }
};

} // namespace kel
