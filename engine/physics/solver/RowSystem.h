#pragma once
#include "kel/ConstraintRow.h"
#include "solver/SolverBody.h"
#include <vector>

namespace kel {

/// Scaled velocity of a body, linear and angular, on a cache line of its own.
struct alignas(64) ScaledVelocity
{
  Real v[6] = {};
};

/// A row in scaled coordinates.
struct ScaledRow
{
  Real j[2][6];
  Real rhs;
  Real sigma;
  Real inverseDiagonal; ///< 0 if no body moves along the row, or a number is not finite
  Real impulse;
  Real lower;
  Real upper;
  Real (*velocity[2])[6]; ///< of the bodies, scaled
  Index body[2];          ///< 0 for what impulses do not move
  UInt32 solveType;       ///< bits of `Constraint::SolveType`
};

/// What bounds the impulse of two rows of friction: a coefficient for each, times the impulse of the row
/// `normal`, if there is one, plus `offset` in N s.
struct FrictionBound
{
  static constexpr Index NO_ROW = 0xFFFFFFFF;

  Real coefficients[2] = {0, 0};
  Real offset = 0;
  Index normal = NO_ROW;
  bool isCone = true; ///< both together, in an ellipse, or each for itself
};

/// Scalar product of two rows of six.
Real dot(const Real (&a)[6], const Real (&b)[6]);

/// The rows of an island in scaled coordinates, and projected Gauss-Seidel over those of them that are solved
/// by iteration. Index 0 of the bodies is the world.
class RowSystem
{
public:
  RowSystem(const std::vector<SolverBody>& bodies, std::vector<ScaledVelocity>& velocities)
      : m_bodies(bodies), m_velocities(velocities)
  {}
  RowSystem(const RowSystem&) = delete;
  RowSystem& operator=(const RowSystem&) = delete;

  /// Drops all rows.
  void clear();
  /// Adds a row between two bodies, which starts from an impulse in N s. The solve type has bits of
  /// `Constraint::SolveType`. Returns the row's index.
  Index add(const ConstraintRow& row, Index body1, Index body2, Real timeStep, Real impulse,
            UInt32 solveType);
  /// Adds two rows of friction, whose impulses stay within a bound. Returns the index of the pair.
  Index addFriction(const ConstraintRow& u, const ConstraintRow& v, Index body1, Index body2, Real timeStep,
                    const FrictionBound& bound, Real impulseU, Real impulseV, UInt32 solveType);

  /// Sweeps over the iterative rows until they are met or `maxSweeps` is reached; returns the sweeps.
  UInt32 sweep(UInt32 maxSweeps);
  /// The rows of a direct solution, friction last, in the order of their addition. Good until rows are added.
  void getDirectRows(std::vector<ScaledRow*>& rows);
  /// Bounds the friction of the direct rows by the impulses of the normals, and a cone by the box that
  /// touches it where the sliding points; whether a bound changed by more than a thousandth.
  bool updateFrictionBounds();
  /// Lets friction keep the bounds that the normals give it now.
  void freezeFrictionBounds();
  bool hasRowsOf(UInt32 solveType) const { return (m_solveTypes & solveType) != 0; }
  /// Whether some friction is to be solved directly.
  bool hasDirectFriction() const;
  /// Whether the bodies are far faster than they would be by forces alone and the speeds that rows ask for.
  /// Bodies that are wedged in get there where all friction has to hold exactly.
  bool hasExploded() const;
  /// Takes all impulses back, and gives friction that was frozen its bounds again.
  void release();
  /// Makes all rows iterative.
  void setIterative();
  /// Makes the friction iterative; whether some was not.
  bool setFrictionIterative();

  /// Impulses of a row and a pair, N s.
  Real getImpulse(Index row) const { return m_rows[row].impulse; }
  Real getFrictionImpulse(Index pair, std::size_t direction) const
  {
    return m_frictions[pair].rows[direction].impulse;
  }
  UInt32 getNumRows() const { return static_cast<UInt32>(m_rows.size() + 2 * m_frictions.size()); }

private:
  struct Friction
  {
    ScaledRow rows[2];
    FrictionBound bound;
  };

  void scale(const ConstraintRow& source, Real timeStep, ScaledRow& row);
  void start(ScaledRow& row, Real impulse);
  /// What the coefficients of a bound are times of.
  Real boundingImpulse(const FrictionBound& bound) const;
  /// Visits all rows of a system, which is constant or not: friction last, in the order of their addition.
  template <class Self, class Visit> static void visitRows(Self& self, Visit visit);
  void limitAlongSliding(const Friction& friction, Real (&limits)[2]) const;
  bool sweepRows();
  bool sweepFrictions();

  const std::vector<SolverBody>& m_bodies;
  std::vector<ScaledVelocity>& m_velocities;
  ScaledVelocity m_still; // of all that does not move: systems that are solved side by side share nothing
  std::vector<ScaledRow> m_rows;
  std::vector<Friction> m_frictions;
  std::vector<FrictionBound> m_givenBounds; // of these, while they are frozen
  UInt32 m_solveTypes = 0;                  // of all rows together
};

/// Changes the impulse of a row, N s, and the velocities of its bodies with it.
void setImpulse(ScaledRow& row, Real impulse);
/// By how much a row misses its right-hand side.
Real residualOf(const ScaledRow& row);

} // namespace kel
