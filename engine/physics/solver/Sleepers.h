#pragma once
#include "kel/ConstraintRow.h"
#include "kel/DynamicsSystem.h"
#include "kelCollide/GeometryContact.h"
#include "solver/Digest.h"
#include "solver/Islands.h"
#include "solver/SolverBodies.h"
#include <vector>

namespace kel {

/// Decides which islands of a step sleep, as `AutoSleep` says.
///
/// All that a body feels (its place, the forces on it, its mass, its contacts, the rows of its constraints)
/// is put into a number when it falls asleep. In each step the number is made anew: nobody has to tell a
/// sleeper that something has changed.
class Sleepers
{
public:
  Sleepers(const SolverBodies& bodies, const Islands& islands,
           const std::vector<kelCollide::GeometryContact>& contacts)
      : m_bodies(bodies), m_islands(islands), m_contacts(contacts)
  {}

  /// Wakes what has to wake, when the islands of a step are known. Their items are the constraints, then the
  /// contacts.
  void wake(const DynamicsSystem& system, Real timeStep);
  /// Whether a node is in an island that sleeps.
  bool sleeps(Index node) const { return m_asleep[m_islands.getRoot(node)] != 0; }
  /// Lets those fall asleep that have rested, when the bodies have their new velocities and old places.
  void fallAsleep();

private:
  /// For each root, whether its island is meant.
  using Roots = std::vector<char>;

  /// What counts as a feeling: all, bit for bit, or what does not tremble while a body comes to rest.
  enum Detail
  {
    ROUGHLY,
    PRECISELY
  };

  template <class Visit> void visitMovable(Visit visit) const;
  void findSleepers();
  void rest(RigidBody& body, UInt64 feeling) const;
  static void stop(RigidBody& body);
  /// Finds what the bodies of some islands feel. Precisely, it takes the islands out that something drives.
  void feel(Roots& roots, Detail detail);
  void feelBodies(const Roots& roots, Detail detail);
  void feelConstraints(Roots& roots, Detail detail);
  void feelContacts(Roots& roots, Detail detail);
  /// Adds the rows of a constraint; whether they drive one of its bodies.
  bool addRows(Digest& digest, Constraint& constraint);
  void addSides(Digest& digest, const kelCollide::GeometryContact& contact) const;

  const SolverBodies& m_bodies;
  const Islands& m_islands;
  const std::vector<kelCollide::GeometryContact>& m_contacts;
  const DynamicsSystem* m_system = nullptr;
  Real m_timeStep = 0;
  bool m_wasEnabled = false;
  Roots m_asleep;
  Roots m_drowsy;                    // those that are about to fall asleep
  std::vector<UInt64> m_feelings;    // by node
  std::vector<ConstraintRow> m_rows; // of one constraint
};

} // namespace kel
