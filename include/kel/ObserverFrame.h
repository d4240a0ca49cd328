#pragma once
#include "kel/Frame.h"
#include "kel/Name.h"
#include "kel/ref_ptr.h"

namespace kel {

class DynamicsSystem;

/// A place, on a body or free, whose motion can be asked for. Without a body it stands still. All results are
/// in world coordinates. It holds no reference on the body; where that goes, it stays and stands still.
class ObserverFrame : public Referenced, public kelStream::Serializable
{
public:
  /// At the origin of a body's model frame, or of the world.
  explicit ObserverFrame(const Name& name = Name(), RigidBody* body = nullptr);
  explicit ObserverFrame(RigidBody* body) : ObserverFrame(Name(), body) {}
  /// At a transform to a body's model frame, or to the world.
  ObserverFrame(const Name& name, RigidBody* body, const AffineMatrix4x4& localTransform);
  ObserverFrame(RigidBody* body, const AffineMatrix4x4& localTransform)
      : ObserverFrame(Name(), body, localTransform)
  {}

  /// Puts it on a body, at the origin of its model frame or at a transform to that. Null takes it off its
  /// body and makes the transform that to the world.
  void attach(RigidBody* body) { attach(body, AffineMatrix4x4()); }
  void attach(RigidBody* body, const AffineMatrix4x4& localTransform);
  /// Takes it off its body; it stays where it is.
  void detatch();

  /// The name, which need not be the only one of its kind.
  const String& getName() const { return m_name.str(); }
  void setName(const Name& name) { m_name = name; }
  /// Its frame, which hangs under the body's model frame. Not owned.
  Frame* getFrame() const { return m_frame.get(); }
  /// Whether it is of interest, true at first; its results do not depend on that.
  void setEnable(bool enable) { m_enabled = enable; }
  bool getEnable() const { return m_enabled; }
  bool isEnabled() const { return m_enabled; }
  /// The system of its body, null for none. Not owned.
  DynamicsSystem* getSystem() const;

  /// Its origin, m, and its rotation to the world.
  Vec3 getPosition() const { return m_frame->getTranslate(); }
  Quat getRotation() const { return m_frame->getRotate(); }
  /// Points and vectors of its frame, seen in the world, and back.
  Vec3 transformPointToWorld(const Vec3& point) const { return m_frame->transformPointToWorld(point); }
  Vec3 transformVectorToWorld(const Vec3& vector) const { return m_frame->transformVectorToWorld(vector); }
  Vec3 transformPointToLocal(const Vec3& point) const { return m_frame->transformPointToLocal(point); }
  Vec3 transformVectorToLocal(const Vec3& vector) const { return m_frame->transformVectorToLocal(vector); }

  /// Motion of its origin: m/s, rad/s, m/s2 and rad/s2. Accelerations are those of the last step.
  Vec3 getVelocity() const { return getMotion(nullptr).velocity; }
  Vec3 getAngularVelocity() const { return getMotion(nullptr).angularVelocity; }
  Vec3 getAcceleration() const { return getMotion(nullptr).acceleration; }
  Vec3 getAngularAcceleration() const { return getMotion(nullptr).angularAcceleration; }
  /// The same as one sees it who moves and turns with another body, or stands still for null.
  Vec3 getRelativeVelocity(const RigidBody* other) const { return getMotion(other).velocity; }
  Vec3 getRelativeAngularVelocity(const RigidBody* other) const { return getMotion(other).angularVelocity; }
  Vec3 getRelativeAcceleration(const RigidBody* other) const { return getMotion(other).acceleration; }
  Vec3 getRelativeAngularAcceleration(const RigidBody* other) const
  {
    return getMotion(other).angularAcceleration;
  }
  String getClassName() const override { return "ObserverFrame"; }

protected:
  ~ObserverFrame() override = default;

private:
  struct Motion
  {
    Vec3 velocity;
    Vec3 angularVelocity;
    Vec3 acceleration;
    Vec3 angularAcceleration;
  };
  static Motion motionAt(const RigidBody* body, const Vec3& point);
  Motion getMotion(const RigidBody* seenFrom) const;

  Name m_name;
  ref_ptr<Frame> m_frame = new Frame;
  bool m_enabled = true;
};

} // namespace kel
