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

/// The rows of an island in scaled coordinates, and projected Gauss-Seidel over them. Index 0 of the bodies
/// is the world.
class RowSystem
{
public:
  RowSystem(const std::vector<SolverBody>& bodies, std::vector<ScaledVelocity>& velocities)
      : m_bodies(bodies), m_velocities(velocities)
  {}

  /// Drops all rows.
  void clear();
  /// Adds a row between two bodies, which starts from an impulse in N s. Returns its index.
  Index add(const ConstraintRow& row, Index body1, Index body2, Real timeStep, Real impulse);
  /// Adds two rows of friction, whose impulses together stay within `coefficient` times that of row `normal`:
  /// the friction cone. Returns the index of the pair.
  Index addFriction(const ConstraintRow& u, const ConstraintRow& v, Index body1, Index body2, Real timeStep,
                    Index normal, Real coefficient, Real impulseU, Real impulseV);

  /// Sweeps over the rows until they are met or `maxSweeps` is reached; returns the sweeps.
  UInt32 solve(UInt32 maxSweeps);

  /// Impulses of a row and a pair, N s.
  Real getImpulse(Index row) const { return m_rows[row].impulse; }
  const Real (&getFrictionImpulse(Index pair) const)[2] { return m_frictions[pair].impulse; }
  UInt32 getNumRows() const { return static_cast<UInt32>(m_rows.size() + 2 * m_frictions.size()); }

private:
  struct Row
  {
    Real j[2][6];
    Real rhs;
    Real sigma;
    Real inverseDiagonal;
    Real impulse;
    Real lower;
    Real upper;
    Index body[2];
  };
  struct Friction
  {
    Real j[2][2][6]; // direction, body
    Real rhs[2];
    Real sigma[2];
    Real inverseDiagonal; // of both directions
    Real impulse[2];
    Real coefficient;
    Index body[2];
    Index normal;
  };

  void scale(const ConstraintRow& row, const Index (&body)[2], Real timeStep, Real (&j)[2][6], Real& rhs,
             Real& sigma) const;
  bool sweepRows();
  bool sweepFrictions();

  const std::vector<SolverBody>& m_bodies;
  std::vector<ScaledVelocity>& m_velocities;
  std::vector<Row> m_rows;
  std::vector<Friction> m_frictions;
};

} // namespace kel
