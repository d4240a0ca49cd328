#pragma once
#include "kel/ConstraintRow.h"
#include "kelCollide/GeometryContact.h"
#include "solver/RowSystem.h"
#include <vector>

namespace kel {

/// Turns the contacts of an island into rows and writes the forces that the rows got back to the contact
/// points.
class ContactConstraints
{
public:
  ContactConstraints(const std::vector<SolverBody>& bodies, RowSystem& rows) : m_bodies(bodies), m_rows(rows)
  {}

  /// Starts a step of `timeStep` seconds, in which contacts bounce that close faster than a speed in m/s.
  void begin(Real timeStep, Real impactSpeedThreshold);
  /// Forgets the contacts that were added; says whether rows of those to come may be solved directly.
  void clear(bool allowDirect);
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
    Index friction;
    Index pointRow;
  };

  void addPoint(Index pointRow, const Index (&bodies)[2], const Vec3 (&centers)[2], Real friction,
                Real restitution);
  /// Makes the row of a contact's normal bounce, if the surfaces meet fast enough.
  void applyRestitution(ConstraintRow& normal, const Index (&bodies)[2], Real depth, Real restitution) const;

  const std::vector<SolverBody>& m_bodies;
  RowSystem& m_rows;
  Real m_timeStep = 0;
  Real m_impactSpeedThreshold = 0;
  bool m_allowDirect = true;
  std::vector<Target> m_targets;
};

} // namespace kel
