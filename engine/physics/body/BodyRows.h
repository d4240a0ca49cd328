#pragma once
#include "kel/AffineMatrix4x4.h"
#include "kel/SPDMatrix3x3.h"
#include "kelData/EntityStorage.h"

namespace kel {

/// The rows of all bodies of the process. They are never destroyed: bodies may outlive any static object.
struct BodyRows
{
  /// Bits of `state`.
  enum StateBit : UInt32
  {
    MOTION_CONTROL_MASK = 3,
    ENABLED = 1U << 12,
    PARTICLE = 1U << 16,
    POWERLINE = 1U << 28
  };

  ref_ptr<kelData::EntityStorage> storage;
  AffineMatrix4x4* transform;   ///< model frame to the world
  AffineMatrix4x4* cmTransform; ///< centre-of-mass frame to the world
  UInt32* state;
  UInt32* id;
  UInt32* numConstraints;
  Vec3* position;            ///< of the model frame, m
  Vec3* velocity;            ///< of the centre of mass, m/s
  Vec3* angularVelocity;     ///< rad/s
  Vec3* acceleration;        ///< m/s2
  Vec3* angularAcceleration; ///< rad/s2
  Vec3* force;               ///< N, for the next step
  Vec3* torque;              ///< N m, for the next step
  Vec3* lastForce;           ///< N, in the last step
  Vec3* lastTorque;          ///< N m, in the last step
  Real* mass;                ///< kg
  Real* inverseMass;         ///< 1/kg
  SPDMatrix3x3* inertia;     ///< kg m2, in the centre-of-mass frame
  SPDMatrix3x3* inverseInertia;
  UInt32* autoGenerateMask;

  static const BodyRows& instance();

private:
  BodyRows();
};

} // namespace kel
