#pragma once
#include "kel/ConstraintRow.h"
#include "kel/ContactMaterial.h"
#include "kelCollide/GeometryContact.h"
#include "solver/RowSystem.h"
#include <set>
#include <utility>
#include <vector>

namespace kel {

/// Turns the contacts of an island into rows and writes the forces that the rows got back to the contact
/// points.
class ContactConstraints
{
public:
  ContactConstraints(const std::vector<SolverBody>& bodies, RowSystem& rows) : m_bodies(bodies), m_rows(rows)
  {}

  /// Starts a step of `timeStep` seconds without contacts. Those to come bounce if they close faster than a
  /// speed in m/s; their rows may be solved directly, or all by iteration.
  void begin(Real timeStep, Real impactSpeedThreshold, bool allowDirect);
  /// Says that a joint binds two of the bodies, or one to the world, number 0. Joints pull at the bodies of
  /// all contacts to come: sweeps bring the friction against such a pull up in many steps only, so it starts
  /// from all that it was.
  void addJoint(Index body1, Index body2) { m_joints.insert(std::minmax(body1, body2)); }
  bool empty() const { return m_targets.empty(); }
  /// Adds the rows of a contact between two of the bodies.
  void add(const kelCollide::GeometryContact& contact, const Index (&bodies)[2]);
  /// Writes the impulses that the rows have now.
  void storeImpulses() const;

private:
  /// Where the impulses of a contact point go.
  struct Target
  {
    Index normal;
    Index friction; // NO_ROW without friction
    Index pointRow;
  };
  /// What the points of a contact have in common.
  struct Common
  {
    const ContactMaterial& material;
    Index bodies[2] = {0, 0};
    Vec3 centers[2] = {};
    Real adhesion = 0;     // share of a point, N
    UInt32 normalType = 0; // solve types of the rows
    UInt32 frictionType = 0;
    Real frictionWarmStart = 0; // part of the last impulses
  };

  void setSolveTypes(Common& common) const;
  bool areJoined(const Index (&bodies)[2]) const;
  void addPoint(const Common& common, Index pointRow, Real stiffness);
  ConstraintRow makeNormal(const Common& common, Index pointRow, Real stiffness) const;
  /// Makes the row of a contact's normal bounce, if the surfaces meet fast enough.
  void applyRestitution(const Common& common, ConstraintRow& normal, Real depth) const;
  /// The bound of friction where the normal force has one.
  FrictionBound makeBound(const Common& common, Index pointRow, FrictionBound bound) const;
  Index addFriction(const Common& common, Index pointRow, const FrictionBound& bound);
  /// Adds what resists rolling and twisting.
  void addResistance(const Common& common, Index pointRow, const FrictionBound& bound);
  Index addPair(const Common& common, const ConstraintRow (&rows)[2], const FrictionBound& bound,
                const Vec3& impulse);

  const std::vector<SolverBody>& m_bodies;
  RowSystem& m_rows;
  Real m_timeStep = 0;
  Real m_impactSpeedThreshold = 0;
  bool m_allowDirect = true;
  std::set<std::pair<Index, Index>> m_joints; // pairs of bodies, the lower number first
  std::vector<Target> m_targets;
  ref_ptr<ContactMaterial> m_unassigned; // of the contact that is added, where nobody gave it one
};

} // namespace kel
