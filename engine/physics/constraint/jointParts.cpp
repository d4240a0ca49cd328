#include "kel/Constraint.h"
#include "kel/Dot1.h"
#include "kel/Dot2.h"
#include "kel/QuatLock.h"
#include "kel/SphericalRel.h"

namespace kel {

bool Constraint::attach(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  const ref_ptr<Frame> keep[2] = {frame1, frame2};
  if (!body1) return false;
  m_attachments[0] = new RigidBodyAttachment(body1, frame1);
  if (!frame2) {
    frame2 = new Frame(m_attachments[0]->getFrame()->getMatrix());
    if (body2) frame2->setLocalMatrix(frame2->getMatrix() * body2->getTransform().inverse());
  }
  m_attachments[1] = new RigidBodyAttachment(body2, frame2);
  m_pair.set(m_attachments[0].get(), m_attachments[1].get());
  addBody(body1);
  if (body2) addBody(body2);
  return true;
}

bool Constraint::attachInWorld(const Vec3& point, const Vec3& axis, RigidBody* body1, RigidBody* body2)
{
  const ref_ptr<Frame> frame1 = new Frame;
  const ref_ptr<Frame> frame2 = new Frame;
  const Vec3 n = axis.length() > 0 ? axis : Vec3::Z_AXIS();
  return calculateFramesFromWorld(point, n, body1, frame1.get(), body2, frame2.get()) &&
         attach(body1, frame1.get(), body2, frame2.get());
}

void Constraint::attachSecond(RigidBody* body, Frame* frame)
{
  const AffineMatrix4x4 local = m_attachments[0]->getFrame()->getMatrix() * body->getTransform().inverse();
  m_attachments[1]->setFrame(frame ? frame : new Frame(local));
  m_attachments[1]->setRigidBody(body);
  m_pair.transform();
  addBody(body);
}

void Constraint::holdAnchor()
{
  addElementaryConstraint("SphericalRel", new SphericalRel(ElementaryConstraintData(m_pair)));
}

void Constraint::holdAxes() { addElementaryConstraint("QuatLock", new QuatLock(QuatLockData(m_pair))); }

void Constraint::alignN()
{
  addElementaryConstraint("Dot1_NV", new Dot1(Dot1Data(m_pair, Attachment::N, Attachment::V)));
  addElementaryConstraint("Dot1_NU", new Dot1(Dot1Data(m_pair, Attachment::N, Attachment::U)));
}

void Constraint::keepOnN()
{
  addElementaryConstraint("Dot2_U", new Dot2(Dot2Data(m_pair, Attachment::U)));
  addElementaryConstraint("Dot2_V", new Dot2(Dot2Data(m_pair, Attachment::V)));
}

} // namespace kel
