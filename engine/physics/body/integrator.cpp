#include "body/integrator.h"

namespace kel {

namespace {

/// A rotation followed by a turn with an angular velocity.
Quat turned(const Quat& rotation, const Vec3& angularVelocity, Real time)
{
  const Real speed = angularVelocity.length();
  Quat result = rotation * Quat(speed * time, angularVelocity);
  result.normalize();
  return result;
}

/// Angular velocity of a body that stands with a rotation and has an angular momentum.
Vec3 angularVelocityOf(const SPDMatrix3x3& inverseInertia, const Quat& rotation, const Vec3& momentum)
{
  return rotation * (inverseInertia * (rotation.conj() * momentum));
}

} // namespace

void integrate(RigidBody& body, Real timeStep)
{
  const Vec3 position = body.getCmPosition() + body.getVelocity() * timeStep;
  const Quat rotation = body.getCmRotation();
  Vec3 angularVelocity = body.getAngularVelocity();
  const bool turns = angularVelocity.length2() > 0;
  if (turns && body.getMotionControl() == RigidBody::DYNAMICS) {
    // The midpoint rule keeps the energy of a free body; a few rounds find the midpoint.
    const SPDMatrix3x3& inverseInertia = body.getMassProperties()->getInvInertiaTensor();
    const Vec3 momentum = body.getAngularMomentum();
    for (int round = 0; round < 5; ++round)
      angularVelocity =
          angularVelocityOf(inverseInertia, turned(rotation, angularVelocity, timeStep / 2), momentum);
    const Quat newRotation = turned(rotation, angularVelocity, timeStep);
    body.setCmTransform(AffineMatrix4x4(newRotation, position));
    body.setAngularVelocity(angularVelocityOf(inverseInertia, newRotation, momentum));
  } else if (turns) {
    body.setCmTransform(AffineMatrix4x4(turned(rotation, angularVelocity, timeStep), position));
  } else {
    body.setCmPosition(position);
  }
}

} // namespace kel
