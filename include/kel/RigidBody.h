#pragma once
#include "kel/Frame.h"
#include "kel/MassProperties.h"
#include "kel/Name.h"
#include "kel/SleepThreshold.h"
#include "kel/ref_ptr.h"
#include "kelCollide/Geometry.h"
#include <map>
#include <vector>

namespace kel {

class DynamicsSystem;
class PropertyContainer;

/// A solid that moves: a place, velocities, a mass, and geometries that ride on it.
///
/// It has two frames: the model frame, where its geometries hang, and below it the centre-of-mass frame.
/// Velocities are those of the centre of mass, in world coordinates. The state lies in the row of the body in
/// the storage of all bodies, and references to it are views that follow the body.
class RigidBody : public Referenced, public kelStream::Serializable
{
public:
  enum MotionControl : UInt32
  {
    STATIC = 1,     ///< stands still
    KINEMATICS = 2, ///< moves with its velocities, whatever meets it
    DYNAMICS = 3    ///< moves by forces
  };

  /// How a body sleeps, see `AutoSleep`. A part of the body.
  class AutoSleepProperties
  {
  public:
    enum State
    {
      AWAKE = 0,
      TIRED = 1, ///< has rested long enough, and waits for what it touches and what it is bound to
      ASLEEP = 2 ///< stands still until something wakes it
    };

    /// Stops the body and puts it to sleep, or wakes it. What sleeps next to somebody awake wakes in the next
    /// step.
    void setSleeping(bool sleeping);
    bool isSleeping() const { return m_state == ASLEEP; }
    State getState() const { return m_state; }
    /// Whether the body may fall asleep, true at first. One that may not wakes if it sleeps, and keeps its
    /// neighbours awake.
    void setEnable(bool enable);
    bool getEnable() const { return m_enabled; }
    /// How long the body has been at rest, s.
    float getRestTime() const { return m_restTime; }

  private:
    friend class RigidBody;
    friend class Sleepers;
    explicit AutoSleepProperties(Index row) : m_row(row) {}

    Index m_row;
    float m_restTime = 0;
    bool m_enabled = true;
    State m_state = AWAKE;
    UInt64 m_feeling = 0; // what the body felt last, in short; 0 before it is known
  };

  /// A dynamic, enabled body at the origin with a mass of 1 kg and an inertia of 1 kg m2 about all axes.
  explicit RigidBody(const Name& name = Name());
  /// The same with a geometry.
  explicit RigidBody(kelCollide::Geometry* geometry);
  RigidBody(const RigidBody&) = delete;
  RigidBody& operator=(const RigidBody&) = delete;

  /// The name, which need not be the only one of its kind.
  const String& getName() const { return m_name.str(); }
  /// Renames the body; simulations find it by the new name from now on.
  void setName(const Name& name) { m_name = name; }
  /// A number that no other body of this process has or had.
  UInt32 getId() const { return m_entity.getId(); }
  /// The row of this body in the storage of all bodies.
  kelData::EntityPtr getEntity() const { return m_entity; }
  /// The properties that applications attach, made on the first call. Not owned.
  PropertyContainer* getPropertyContainer();
  /// The system that the body was added to, null for none. Not owned.
  DynamicsSystem* getSystem() const { return m_system; }

  /// Takes the body out of the world, or back; it keeps its place and velocities.
  void setEnable(bool enable);
  /// Whether the body takes part at all; a body that does not stands still and collides with nothing.
  bool getEnable() const;
  bool isEnabled() const { return getEnable(); }
  /// Says what moves the body; a value that is none of the three is ignored.
  void setMotionControl(MotionControl control);
  /// What moves the body, `DYNAMICS` at first.
  MotionControl getMotionControl() const;
  /// Says whether forces at points turn the body.
  void setHandleAsParticle(bool enable);
  /// Whether forces at points exert no torque, so that the body never turns by them.
  bool getHandleAsParticle() const;
  /// Marks the body as one of a power line; nothing else follows.
  void setIsPowerlineBody(bool enable);

  /// The model frame. Not owned.
  Frame* getFrame() const { return m_frame.get(); }
  /// The centre-of-mass frame, below the model frame. Not owned.
  Frame* getCmFrame() const { return m_cmFrame.get(); }
  /// The frame above the model frame, null for none. Not owned.
  Frame* getParentFrame() const { return m_frame->getParent(); }
  /// As `Frame::setParent` of the model frame.
  bool setParentFrame(Frame* parent) { return m_frame->setParent(parent); }

  /// Transform of the model frame to the world.
  const AffineMatrix4x4& getTransform() const;
  /// Places the model frame in the world, and the body with it.
  void setTransform(const AffineMatrix4x4& transform) { m_frame->setMatrix(transform); }
  /// Transform of the model frame to its parent frame.
  const AffineMatrix4x4& getLocalTransform() const { return m_frame->getLocalMatrix(); }
  /// Places the model frame in its parent frame.
  void setLocalTransform(const AffineMatrix4x4& transform) { m_frame->setLocalMatrix(transform); }
  /// Transform of the centre-of-mass frame to the world.
  const AffineMatrix4x4& getCmTransform() const;
  /// Places the centre-of-mass frame: with the whole body, or in a body that stays where it is.
  void setCmTransform(const AffineMatrix4x4& transform, bool moveBody = true);

  /// Origin of the model frame in the world, m.
  const Vec3& getPosition() const;
  /// Moves the origin of the model frame to a point of the world, m.
  void setPosition(const Vec3& position) { m_frame->setTranslate(position); }
  void setPosition(Real x, Real y, Real z) { setPosition(Vec3(x, y, z)); }
  /// Origin of the model frame in its parent frame, m.
  Vec3 getLocalPosition() const { return m_frame->getLocalTranslate(); }
  /// Moves the origin of the model frame to a point of its parent frame, m.
  void setLocalPosition(const Vec3& position) { m_frame->setLocalTranslate(position); }
  void setLocalPosition(Real x, Real y, Real z) { setLocalPosition(Vec3(x, y, z)); }
  /// Centre of mass in the world, m.
  Vec3 getCmPosition() const { return getCmTransform().getTranslate(); }
  /// Moves the centre of mass, as `setCmTransform`.
  void setCmPosition(const Vec3& position, bool moveBody = true);
  /// Rotation of the model frame to the world.
  Quat getRotation() const { return getTransform().getRotate(); }
  /// Turns the body about the origin of its model frame.
  void setRotation(const Quat& rotation) { m_frame->setRotate(rotation); }
  /// Rotation of the model frame to its parent frame.
  Quat getLocalRotation() const { return m_frame->getLocalRotate(); }
  /// Turns the model frame in its parent frame.
  void setLocalRotation(const Quat& rotation) { m_frame->setLocalRotate(rotation); }
  /// Rotation of the centre-of-mass frame to the world.
  Quat getCmRotation() const { return getCmTransform().getRotate(); }
  /// Turns the centre-of-mass frame, as `setCmTransform`.
  void setCmRotation(const Quat& rotation, bool moveBody = true);
  /// Centre of mass in the model frame, m.
  Vec3 getCmLocalTranslate() const { return m_cmFrame->getLocalTranslate(); }
  /// Moves the centre of mass in the body; it is no longer generated from the geometries.
  void setCmLocalTranslate(const Vec3& translate);

  /// Velocity of the centre of mass, m/s.
  void setVelocity(const Vec3& velocity);
  void setVelocity(Real x, Real y, Real z) { setVelocity(Vec3(x, y, z)); }
  /// Velocity of the centre of mass, m/s.
  const Vec3& getVelocity() const;
  /// Velocity of a point of the model frame, m/s.
  Vec3 getModelVelocity(const Vec3& localPoint = Vec3()) const;
  /// Angular velocity, rad/s.
  void setAngularVelocity(const Vec3& velocity);
  void setAngularVelocity(Real x, Real y, Real z) { setAngularVelocity(Vec3(x, y, z)); }
  /// Angular velocity, rad/s.
  const Vec3& getAngularVelocity() const;
  /// Change of the velocity in the last step by its length, m/s2.
  const Vec3& getAcceleration() const;
  /// Change of the angular velocity in the last step by its length, rad/s2.
  const Vec3& getAngularAcceleration() const;
  /// Sets the velocities that bring the model frame to a transform in `time` seconds, above 0.
  void moveTo(const AffineMatrix4x4& transform, Real time);
  /// The same with a place of the model frame and its rotation to the world.
  void moveTo(const Vec3& position, const Quat& rotation, Real time);

  /// Forces (N) and torques (N m) that act in the next step, which clears them; world coordinates.
  void setForce(const Vec3& force);
  void setForce(Real x, Real y, Real z) { setForce(Vec3(x, y, z)); }
  void setTorque(const Vec3& torque);
  /// The force that acts in the next step, N.
  const Vec3& getForce() const;
  /// The torque that acts in the next step, N m.
  const Vec3& getTorque() const;
  /// The force and torque that acted in the last step, gravity and constraints not included.
  const Vec3& getLastForce() const;
  const Vec3& getLastTorque() const;
  /// Adds a force at the centre of mass, N.
  void addForce(const Vec3& force) { setForce(getForce() + force); }
  void addForce(Real x, Real y, Real z) { addForce(Vec3(x, y, z)); }
  /// A force at a point of the world.
  void addForceAtPosition(const Vec3& force, const Vec3& point);
  /// A force in world coordinates at a point of the model frame.
  void addForceAtLocalPosition(const Vec3& force, const Vec3& localPoint);
  /// A force in world coordinates at a point of the centre-of-mass frame.
  void addForceAtLocalCmPosition(const Vec3& force, const Vec3& localPoint);
  /// Adds a torque, N m.
  void addTorque(const Vec3& torque) { setTorque(getTorque() + torque); }
  void addTorque(Real x, Real y, Real z) { addTorque(Vec3(x, y, z)); }
  /// A torque along the axes of the model frame.
  void addLocalTorque(const Vec3& torque) { addTorque(m_frame->transformVectorToWorld(torque)); }
  void addLocalTorque(Real x, Real y, Real z) { addLocalTorque(Vec3(x, y, z)); }

  /// Mass and inertia, a part of the body.
  MassProperties* getMassProperties() { return &m_massProperties; }
  const MassProperties* getMassProperties() const { return &m_massProperties; }
  /// Generates what the bits of `MassProperties::AutoGenerate` say from the geometries. Does nothing for
  /// geometries without volume.
  void updateMassProperties(UInt32 mask);
  /// Sum of volume times density of the geometries, kg.
  Real calculateMass() const;
  /// Centre of mass of the geometries in the model frame, m; the origin if they have no volume.
  Vec3 calculateCenterOfMassOffset() const;
  /// As `MassProperties::setInertiaTensor`.
  void setInertiaTensor(const SPDMatrix3x3& inertia) { m_massProperties.setInertiaTensor(inertia); }
  void setInertiaTensor(const Vec3& principal) { m_massProperties.setInertiaTensor(principal); }

  /// Puts a geometry on the body and takes a reference. Its transform to the world becomes that to the model
  /// frame, or stays that to the world. A body in a simulation takes the geometry there. False for null and
  /// for a geometry that rides on a body already.
  bool add(kelCollide::Geometry* geometry, bool keepWorldTransform = false);
  /// The same with a transform to the model frame, or to the world.
  bool add(kelCollide::Geometry* geometry, const AffineMatrix4x4& transform, bool inWorld = false);
  /// Takes a geometry off the body and, if it came with the body, out of the simulation. It keeps its
  /// transform to the world, or makes the one to the body its transform to the world. False if it is not on
  /// this body.
  bool remove(kelCollide::Geometry* geometry, bool keepLocalTransform = false);
  /// The geometries in the order of their addition.
  const std::vector<ref_ptr<kelCollide::Geometry>>& getGeometries() const { return m_geometries; }

  /// Names a frame of the body; it hangs under the model frame from now on. False for null and for a name
  /// that is taken.
  bool addAttachment(Frame* frame, const Name& name);
  /// Forgets a name; the frame stays where it hangs. False if there is no such name.
  bool removeAttachment(const Name& name);
  /// The frame of that name, null if there is none. Not owned.
  Frame* getAttachment(const Name& name) const;

  /// How the body sleeps, a part of the body.
  AutoSleepProperties* getAutoSleepProperties() { return &m_autoSleepProperties; }
  const AutoSleepProperties* getAutoSleepProperties() const { return &m_autoSleepProperties; }
  /// Takes a reference on what is slow for this body; null, as at first, for what its system says.
  void setAutoSleepThreshold(AutoSleepThreshold* threshold) { m_autoSleepThreshold = threshold; }
  AutoSleepThreshold* getAutoSleepThreshold() const { return m_autoSleepThreshold.get(); }

  /// The constraints that hold the body in its system.
  UInt32 getNumConstraints() const;
  /// Whether any constraint holds the body.
  bool hasConstraints() const { return getNumConstraints() > 0; }

  /// Momentum, kg m/s.
  Vec3 getLinearMomentum() const { return getVelocity() * m_massProperties.getMass(); }
  /// Angular momentum about the centre of mass, kg m2/s.
  Vec3 getAngularMomentum() const;
  /// Energy against a centre of mass at height 0 in the system's gravity, J; 0 without a system.
  Real getPotentialEnergy() const;
  /// Energy of the motion of the centre of mass, J.
  Real getTranslationalEnergy() const;
  /// Energy of the rotation about the centre of mass, J.
  Real getRotationalEnergy() const;
  /// Sum of the three energies, J.
  Real getTotalEnergy() const
  {
    return getPotentialEnergy() + getTranslationalEnergy() + getRotationalEnergy();
  }
  String getClassName() const override { return "RigidBody"; }

protected:
  ~RigidBody() override;

private:
  friend class DynamicsSystem;
  friend class SolverBodies;
  class ModelFrame;
  class CmFrame;

  void setStateBit(UInt32 bit, bool on);
  bool hasStateBit(UInt32 bit) const;
  SPDMatrix3x3 calculateInertia() const;

  Name m_name;
  ref_ptr<PropertyContainer> m_properties; // null until someone asks
  kelData::EntityPtr m_entity;
  Index m_row;
  MassProperties m_massProperties;
  AutoSleepProperties m_autoSleepProperties;
  ref_ptr<AutoSleepThreshold> m_autoSleepThreshold;
  ref_ptr<Frame> m_frame;
  ref_ptr<Frame> m_cmFrame;
  std::vector<ref_ptr<kelCollide::Geometry>> m_geometries;
  std::map<Name, ref_ptr<Frame>> m_attachments;
  DynamicsSystem* m_system = nullptr;
  Index m_systemIndex = 0;
  Real m_stiffening = 1; // rotational energy in the last step as the solver took it, over the true one
};

} // namespace kel
