#include "kel/ObserverFrame.h"
#include "kel/RigidBody.h"

namespace kel {

ObserverFrame::ObserverFrame(const Name& name, RigidBody* body) : ObserverFrame(name, body, AffineMatrix4x4())
{}

ObserverFrame::ObserverFrame(const Name& name, RigidBody* body, const AffineMatrix4x4& localTransform)
    : m_name(name)
{
  attach(body, localTransform);
}

void ObserverFrame::attach(RigidBody* body, const AffineMatrix4x4& localTransform)
{
  const AffineMatrix4x4 place = localTransform; // may be a view of the frame's own row
  m_frame->setParent(body ? body->getFrame() : nullptr);
  m_frame->setLocalMatrix(place);
}

void ObserverFrame::detatch()
{
  if (Frame* parent = m_frame->getParent()) parent->removeChild(m_frame.get());
}

DynamicsSystem* ObserverFrame::getSystem() const
{
  const RigidBody* body = m_frame->getRigidBody();
  return body ? body->getSystem() : nullptr;
}

ObserverFrame::Motion ObserverFrame::motionAt(const RigidBody* body, const Vec3& point)
{
  if (!body) return {};
  const Vec3 arm = point - body->getCmPosition();
  const Vec3 turn = body->getAngularVelocity();
  const Vec3 ofTurn = cross(turn, arm);
  return {body->getVelocity() + ofTurn, turn,
          body->getAcceleration() + cross(body->getAngularAcceleration(), arm) + cross(turn, ofTurn),
          body->getAngularAcceleration()};
}

ObserverFrame::Motion ObserverFrame::getMotion(const RigidBody* seenFrom) const
{
  const Motion own = motionAt(m_frame->getRigidBody(), getPosition());
  const Motion other = motionAt(seenFrom, getPosition());
  const Vec3 velocity = own.velocity - other.velocity;
  const Vec3 turn = own.angularVelocity - other.angularVelocity;
  return {velocity, turn, own.acceleration - other.acceleration - cross(other.angularVelocity, velocity) * 2,
          own.angularAcceleration - other.angularAcceleration - cross(other.angularVelocity, turn)};
}

} // namespace kel
