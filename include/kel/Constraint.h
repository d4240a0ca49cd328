#pragma once
#include "kel/AttachmentPair.h"
#include "kel/ElementaryConstraint.h"
#include "kel/Interaction.h"
#include "kel/RigidBodyAttachment.h"
#include <cstddef>
#include <span>
#include <vector>

namespace kel {

/// A bond between two bodies, or a body and the world, put together from elementary constraints.
///
/// Their rows, one after the other, are its degrees of freedom: those that the bond takes from the bodies.
/// What can be enabled beside them, as motors and ranges, are its secondary constraints. An index of a degree
/// of freedom beyond the last is ignored, and what is asked of it is 0, or null; -1 stands for all.
class Constraint : public Interaction
{
public:
  /// Which solver treats the rows.
  enum SolveType
  {
    DIRECT = 1,
    ITERATIVE = 4,
    DIRECT_AND_ITERATIVE = DIRECT | ITERATIVE
  };
  static constexpr Int32 ALL_DOF = -1;

  std::size_t getNumBodies() const { return m_bodies.size(); }
  /// The body at an index, null for one beyond the last. Not owned.
  RigidBody* getBodyAt(std::size_t index) const;
  /// The attachment at an index, or that of a body; null if there is none. Not owned.
  RigidBodyAttachment* getAttachment(std::size_t index) const;
  RigidBodyAttachment* getAttachment(const RigidBody* body) const;
  const AttachmentPair& getAttachmentPair() const { return m_pair; }
  /// Whether the constraint can act: it has a body, and no two that are the same.
  bool getValid() const;
  /// Moves the second attachment to where the first is, so that nothing is violated; false if the constraint
  /// is not valid.
  virtual bool rebind();

  /// Takes a reference on an elementary constraint and names it; false for null and for a name that is taken.
  bool addElementaryConstraint(const Name& name, ElementaryConstraint* constraint);
  bool addSecondaryConstraint(const Name& name, ElementaryConstraint* constraint);
  /// Lets one go; false if it is not here.
  bool removeElementaryConstraint(const ElementaryConstraint* constraint);
  bool removeElementaryConstraint(const Name& name);
  bool removeSecondaryConstraint(const ElementaryConstraint* constraint);
  bool removeSecondaryConstraint(const Name& name);
  /// The one at an index, null beyond the last, or of a name, null if there is none. Not owned.
  ElementaryConstraint* getElementaryConstraint(std::size_t index) const;
  ElementaryConstraint* getElementaryConstraintGivenName(const Name& name) const;
  ElementaryConstraint* getSecondaryConstraint(std::size_t index) const;
  ElementaryConstraint* getSecondaryConstraintGivenName(const Name& name) const;
  std::size_t getNumElementaryConstraints() const { return m_elementary.size(); }
  std::size_t getNumSecondaryConstraints() const { return m_secondary.size(); }

  /// Whether the constraint acts; true at first.
  virtual void setEnable(bool enable);
  virtual bool getEnable() const { return m_enabled; }
  bool isEnabled() const { return getEnable(); }
  /// Bits of `SolveType`, `DIRECT` at first.
  void setSolveType(UInt32 type) { m_solveType = type; }
  UInt32 getSolveType() const { return m_solveType; }

  /// Degrees of freedom that the bond takes.
  virtual UInt32 getNumDOF() const;
  /// Compliance and damping, as of `RegularizationParameters`.
  virtual void setCompliance(Real compliance, Int32 dof = ALL_DOF);
  virtual Real getCompliance(Int32 dof) const;
  virtual void setDamping(Real damping, Int32 dof = ALL_DOF);
  virtual Real getDamping(Int32 dof) const;
  virtual RegularizationParameters* getRegularizationParameters(Int32 dof) const;
  /// Bounds of the force, N along a way and N m about an axis; infinite at first.
  void setForceRange(const RangeReal& range, Int32 dof = ALL_DOF);
  void setForceRange(Real lower, Real upper, Int32 dof) { setForceRange(RangeReal(lower, upper), dof); }
  RangeReal getForceRange(Int32 dof) const;
  /// Force of the last step, N or N m.
  Real getCurrentForce(Int32 dof) const;

  /// Whether the sums of `getLastForce` are kept; false at first.
  void setEnableComputeForces(bool enable);
  bool getEnableComputeForces() const { return m_computesForces; }
  /// Writes the force (N) and torque (N m) by which the constraint, secondary ones included, acted on a body
  /// in the last step. The torque is about the attachment's anchor, or about the centre of mass. World
  /// coordinates. False, and nothing is written, if there is no such body or nothing is computed.
  bool getLastForce(std::size_t body, Vec3& force, Vec3& torque, bool atCenterOfMass = false) const;
  bool getLastForce(const RigidBody* body, Vec3& force, Vec3& torque, bool atCenterOfMass = false) const;
  /// The same along U, V and N of the body's attachment.
  bool getLastLocalForce(std::size_t body, Vec3& force, Vec3& torque, bool atCenterOfMass = false) const;
  bool getLastLocalForce(const RigidBody* body, Vec3& force, Vec3& torque, bool atCenterOfMass = false) const;

  /// Appends the rows of all enabled parts for a step of `timeStep` seconds.
  void rows(Real timeStep, std::vector<ConstraintRow>& buffer);
  /// Takes the forces of these rows, N, after the step is solved.
  void storeForces(std::span<const ConstraintRow> rows, std::span<const Real> forces);
  /// By which the first body was held in the last step, N; the second one felt the opposite.
  const Vec3& getHoldingForce() const { return m_holdingForce; }
  /// Forgets the forces, when the constraint takes no part in a step.
  void clearForces();

  /// Places two frames so that they meet at a point with an axis as N, when the frames hang under the model
  /// frames of two bodies; the second may be null, for the world. The point and the axis are those of the
  /// world, or of the first body's model frame. False for a null axis, a missing frame or first body.
  static bool calculateFramesFromWorld(const Vec3& point, const Vec3& axis, const RigidBody* body1,
                                       Frame* frame1, const RigidBody* body2, Frame* frame2);
  static bool calculateFramesFromBody(const Vec3& point, const Vec3& axis, const RigidBody* body1,
                                      Frame* frame1, const RigidBody* body2, Frame* frame2);

protected:
  /// Takes references on the bodies that are not null. Without attachments.
  explicit Constraint(RigidBody* body1 = nullptr, RigidBody* body2 = nullptr);
  ~Constraint() override = default;
  /// Attaches frames as `RigidBodyAttachment` does, once; a null second frame is made where the first one is.
  /// False, and the constraint will not be valid, without a first body.
  bool attach(RigidBody* body1, Frame* frame1, RigidBody* body2, Frame* frame2);
  /// Attaches frames that meet at a point of the world with an axis as N; any axis if it is null.
  bool attachInWorld(const Vec3& point, const Vec3& axis, RigidBody* body1, RigidBody* body2);
  /// Puts a body that comes later in the place of the world.
  void attachSecond(RigidBody* body, Frame* frame);

  /// Add parts that joints have in common: all three of the anchor, or of the axes; N parallel to N, about U
  /// and V; the anchor on the second N, along U and V.
  void holdAnchor();
  void holdAxes();
  void alignN();
  void keepOnN();

  mutable AttachmentPair m_pair; // as it was when it was last looked at

private:
  friend class DynamicsSystem;

  using ElementaryConstraints = std::vector<ref_ptr<ElementaryConstraint>>;
  /// What acted on a body: force, N, and torque about the anchor and about the centre of mass, N m.
  struct Reaction
  {
    Vec3 force;
    Vec3 torque;
    Vec3 cmTorque;
  };

  /// Notes that a system has taken the constraint, or let it go: its bodies count their constraints.
  void count(int change);
  void addBody(RigidBody* body);
  bool isNameTaken(const Name& name) const;
  template <class Visit> void visitDofs(Int32 dof, Visit visit) const;
  std::size_t indexOf(const RigidBody* body) const;

  std::vector<ref_ptr<RigidBody>> m_bodies;
  ref_ptr<RigidBodyAttachment> m_attachments[2];
  ElementaryConstraints m_elementary;
  ElementaryConstraints m_secondary;
  Reaction m_reactions[2];
  Vec3 m_holdingForce;
  UInt32 m_solveType = DIRECT;
  UInt32 m_numSystems = 0;
  bool m_enabled = true;
  bool m_computesForces = false;
};

} // namespace kel
