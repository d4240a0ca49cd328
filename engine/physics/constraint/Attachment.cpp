#include "kel/RigidBodyAttachment.h"

namespace kel {

namespace {

/// The axes and the origin of a transform.
void split(const AffineMatrix4x4& matrix, Vec3 (&elements)[Attachment::NUM_ELEMENTS])
{
  for (std::size_t i = 0; i < 4; ++i) elements[i] = Vec3(matrix(i, 0), matrix(i, 1), matrix(i, 2));
}

} // namespace

Attachment::Attachment(Frame* frame) : m_frame(frame ? frame : new Frame)
{
  split(m_frame->getMatrix(), m_elements);
  m_elements[CM_TO_ANCHOR_POS] = m_elements[ANCHOR_POS];
}

void Attachment::setFrame(Frame* frame)
{
  m_frame = frame ? frame : new Frame;
  transform();
}

void Attachment::transform()
{
  split(m_frame->getMatrix(), m_elements);
  const RigidBody* body = getRigidBody();
  m_elements[CM_TO_ANCHOR_POS] =
      body ? m_elements[ANCHOR_POS] - body->getCmPosition() : m_elements[ANCHOR_POS];
}

Vec3 Attachment::getLocal(std::size_t element) const
{
  const RigidBody* body = getRigidBody();
  Vec3 elements[NUM_ELEMENTS];
  split(body ? m_frame->getMatrix() * body->getTransform().inverse() : m_frame->getMatrix(), elements);
  elements[CM_TO_ANCHOR_POS] =
      body ? elements[ANCHOR_POS] - body->getCmLocalTranslate() : elements[ANCHOR_POS];
  return elements[element];
}

Real Attachment::calculateDistance(const Attachment& other) const
{
  return (m_elements[ANCHOR_POS] - other.m_elements[ANCHOR_POS]).length();
}

Real Attachment::calculateLinearDistance(const Attachment& other) const
{
  return (m_elements[ANCHOR_POS] - other.m_elements[ANCHOR_POS]) * other.m_elements[N];
}

Real Attachment::calculateLinearSpeed(const Attachment& other) const
{
  return (getLinearVelocity() - other.getLinearVelocity()) * other.m_elements[N];
}

Real Attachment::calculateAngularSpeed(const Attachment& other) const
{
  return (getAngularVelocity() - other.getAngularVelocity()) * other.m_elements[N];
}

Vec3 Attachment::getLinearVelocity() const
{
  const RigidBody* body = getRigidBody();
  if (!body) return Vec3();
  return body->getVelocity() + cross(body->getAngularVelocity(), m_elements[CM_TO_ANCHOR_POS]);
}

Vec3 Attachment::getAngularVelocity() const
{
  const RigidBody* body = getRigidBody();
  return body ? body->getAngularVelocity() : Vec3();
}

void Attachment::createAttachmentBase(const Vec3& n, Vec3& u, Vec3& v)
{
  Vec3 other;
  other[n.minElement()] = 1;
  v = cross(n, other).normal();
  u = cross(v, n).normal();
}

RigidBodyAttachment::RigidBodyAttachment(RigidBody* body, Frame* frame) : Attachment(frame), m_body(body)
{
  hangFrame();
}

void RigidBodyAttachment::setFrame(Frame* frame)
{
  Attachment::setFrame(frame);
  hangFrame();
}

void RigidBodyAttachment::setRigidBody(RigidBody* body)
{
  m_body = body;
  hangFrame();
}

void RigidBodyAttachment::hangFrame()
{
  if (m_body && getFrame()->getRigidBody() != m_body.get()) getFrame()->setParent(m_body->getFrame());
  transform();
}

} // namespace kel
