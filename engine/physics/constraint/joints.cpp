#include "kel/AngularLockJoint.h"
#include "kel/BallJoint.h"
#include "kel/CylindricalJoint.h"
#include "kel/DistanceAngle.h"
#include "kel/DistanceJoint.h"
#include "kel/Dot1.h"
#include "kel/Dot1Joint.h"
#include "kel/Dot2.h"
#include "kel/Hinge.h"
#include "kel/LockJoint.h"
#include "kel/PlaneJoint.h"
#include "kel/Prismatic.h"
#include "kel/RotationalAngle.h"
#include "kel/SeparationAngle.h"
#include "kel/Spherical.h"
#include "kel/WorldFrameBallJoint.h"

namespace kel {

namespace {

/// A point of a body's model frame in the world; the point itself without a body.
Vec3 toWorld(const RigidBody* body, const Vec3& point)
{
  return body ? body->getTransform().transformPoint(point) : point;
}

Frame* frameAt(const Vec3& point) { return new Frame(AffineMatrix4x4::translate(point)); }

Frame* frameWithN(const Vec3& axis) { return new Frame(AffineMatrix4x4(Quat(Vec3::Z_AXIS(), axis))); }

} // namespace

Hinge::Hinge(const HingeFrame& frame, RigidBody* body1, RigidBody* body2)
{
  if (attachInWorld(frame.getPoint(), frame.getAxis(), body1, body2)) build();
}

Hinge::Hinge(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) build();
}

bool Hinge::addRigidBody(RigidBody* body, Frame* frame)
{
  if (!body || getNumBodies() == 2) return false;
  if (getNumBodies() == 1) {
    attachSecond(body, frame);
  } else {
    attach(body, frame, nullptr, nullptr);
    build();
  }
  return true;
}

void Hinge::build()
{
  holdAnchor();
  alignN();
  addControllers(new RotationalAngle(Angle::N));
}

Prismatic::Prismatic(const PrismaticFrame& frame, RigidBody* body1, RigidBody* body2)
{
  if (attachInWorld(frame.getPoint(), frame.getAxis(), body1, body2)) build();
}

Prismatic::Prismatic(const Vec3& axis, RigidBody* body1, RigidBody* body2)
    : Prismatic(PrismaticFrame(toWorld(body1, Vec3()), axis), body1, body2)
{}

Prismatic::Prismatic(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) build();
}

void Prismatic::build()
{
  holdAxes();
  keepOnN();
  addControllers(new SeparationAngle(Angle::N));
}

LockJoint::LockJoint(RigidBody* body1, RigidBody* body2) : LockJoint(body1, body2, Vec3()) {}

LockJoint::LockJoint(RigidBody* body1, RigidBody* body2, const Vec3& point)
    : LockJoint(body1, frameAt(point), body2, nullptr)
{}

LockJoint::LockJoint(RigidBody* body1, const Vec3& point) : LockJoint(body1, nullptr, point) {}

LockJoint::LockJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) build();
}

void LockJoint::build()
{
  holdAnchor();
  holdAxes();
}

BallJoint::BallJoint(const BallJointFrame& frame, RigidBody* body1, RigidBody* body2)
{
  if (attachInWorld(frame.getCenter(), frame.getAxis(), body1, body2)) holdAnchor();
}

BallJoint::BallJoint(RigidBody* body1, const Vec3& point, RigidBody* body2)
    : BallJoint(body1, frameAt(point), body2, nullptr)
{}

BallJoint::BallJoint(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2)
    : BallJoint(body1, frameAt(point1), body2, frameAt(point2))
{}

BallJoint::BallJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) holdAnchor();
}

WorldFrameBallJoint::WorldFrameBallJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2))
    addElementaryConstraint("Spherical", new Spherical(ElementaryConstraintData(m_pair)));
}

CylindricalJoint::CylindricalJoint(const CylindricalJointFrame& frame, RigidBody* body1, RigidBody* body2)
{
  if (attachInWorld(frame.getPoint(), frame.getAxis(), body1, body2)) build();
}

CylindricalJoint::CylindricalJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) build();
}

void CylindricalJoint::build()
{
  alignN();
  keepOnN();
  addControllers(new SeparationAngle(Angle::N), new RotationalAngle(Angle::N));
}

DistanceJoint::DistanceJoint(RigidBody* body1, Frame* frame1, const Vec3& worldPoint)
    : DistanceJoint(body1, frame1, nullptr, frameAt(worldPoint))
{}

DistanceJoint::DistanceJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2 ? frame2 : new Frame)) build();
}

DistanceJoint::DistanceJoint(RigidBody* body1, const Vec3& point1, RigidBody* body2, const Vec3& point2)
    : DistanceJoint(body1, frameAt(point1), body2, frameAt(point2))
{}

DistanceJoint::DistanceJoint(RigidBody* body1, const Vec3& point1, const Vec3& worldPoint)
    : DistanceJoint(body1, point1, nullptr, worldPoint)
{}

void DistanceJoint::build()
{
  addControllers(new DistanceAngle);
  const ref_ptr<Lock1D> lock = getLock1D();
  removeSecondaryConstraint(lock.get());
  addElementaryConstraint(lock->getName(), lock.get());
  lock->setEnable(true);
  lock->setPosition(getAngle());
}

bool DistanceJoint::rebind()
{
  if (!getValid()) return false;
  getLock1D()->setPosition(getAngle());
  return true;
}

AngularLockJoint::AngularLockJoint(RigidBody* body1, RigidBody* body2)
    : AngularLockJoint(body1, nullptr, body2, nullptr)
{}

AngularLockJoint::AngularLockJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2)) holdAxes();
}

PlaneJoint::PlaneJoint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2))
    addElementaryConstraint("Dot2_N", new Dot2(Dot2Data(m_pair, Attachment::N)));
}

Dot1Joint::Dot1Joint(RigidBody* body1, const Vec3& axis1, RigidBody* body2, const Vec3& axis2)
    : Dot1Joint(body1, frameWithN(axis1), body2, frameWithN(axis2))
{}

Dot1Joint::Dot1Joint(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2)
{
  if (attach(body1, frame1, body2, frame2))
    addElementaryConstraint("Dot1_NN", new Dot1(Dot1Data(m_pair, Attachment::N, Attachment::N)));
}

} // namespace kel
