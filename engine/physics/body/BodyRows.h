#pragma once
#include "Rows.h"
#include "kel/AffineMatrix4x4.h"
#include "kel/SPDMatrix3x3.h"

namespace kel {

/// The rows of all bodies.
struct BodyRows : Rows<BodyRows>
{
  /// Bits of `state`.
  enum StateBit : UInt32
  {
    MOTION_CONTROL_MASK = 3,
    ENABLED = 1U << 12,
    PARTICLE = 1U << 16,
    POWERLINE = 1U << 28
  };

  AffineMatrix4x4* transform = nullptr;   ///< model frame to the world
  AffineMatrix4x4* cmTransform = nullptr; ///< centre-of-mass frame to the world
  UInt32* state = nullptr;
  UInt32* id = nullptr;
  UInt32* numConstraints = nullptr;
  Vec3* position = nullptr;            ///< of the model frame, m
  Vec3* velocity = nullptr;            ///< of the centre of mass, m/s
  Vec3* angularVelocity = nullptr;     ///< rad/s
  Vec3* acceleration = nullptr;        ///< m/s2
  Vec3* angularAcceleration = nullptr; ///< rad/s2
  Vec3* force = nullptr;               ///< N, for the next step
  Vec3* torque = nullptr;              ///< N m, for the next step
  Vec3* lastForce = nullptr;           ///< N, in the last step
  Vec3* lastTorque = nullptr;          ///< N m, in the last step
  Real* mass = nullptr;                ///< kg
  Real* inverseMass = nullptr;         ///< 1/kg
  SPDMatrix3x3* inertia = nullptr;     ///< kg m2, in the centre-of-mass frame
  SPDMatrix3x3* inverseInertia = nullptr;
  UInt32* autoGenerateMask = nullptr;

private:
  friend Rows;
  BodyRows();
};

} // namespace kel
