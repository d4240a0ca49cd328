#include "solver/RowSystem.h"
#include <algorithm>
#include <cmath>

namespace kel {

namespace {

/// A row is met when its velocity changes by less than this in a sweep, m/s.
constexpr Real TOLERANCE = 1e-8;

/// Two numbers side by side: the compiler's vectors, in registers of any processor.
typedef Real Pair __attribute__((vector_size(16), aligned(8), may_alias));

inline Pair load(const Real (&a)[6], std::size_t i) { return *reinterpret_cast<const Pair*>(&a[2 * i]); }

/// Scalar product of the row of two bodies with their velocities.
inline Real speed(const Real (&j)[2][6], const Real (&v1)[6], const Real (&v2)[6])
{
  const Pair first = load(j[0], 0) * load(v1, 0) + load(j[0], 1) * load(v1, 1) + load(j[0], 2) * load(v1, 2);
  const Pair second = load(j[1], 0) * load(v2, 0) + load(j[1], 1) * load(v2, 1) + load(j[1], 2) * load(v2, 2);
  const Pair sum = first + second;
  return sum[0] + sum[1];
}

inline void addScaled(Real (&target)[6], const Real (&row)[6], Real factor)
{
  for (std::size_t i = 0; i < 3; ++i) *reinterpret_cast<Pair*>(&target[2 * i]) += load(row, i) * factor;
}

} // namespace

void RowSystem::clear()
{
  m_rows.clear();
  m_frictions.clear();
}

void RowSystem::scale(const ConstraintRow& row, const Index (&body)[2], Real timeStep, Real (&j)[2][6],
                      Real& rhs, Real& sigma) const
{
  const Real h = timeStep;
  Real oldSpeed = 0;
  Real imposedSpeed = 0;
  for (std::size_t side = 0; side < 2; ++side) {
    const SolverBody& b = m_bodies[body[side]];
    b.scaleRow(row.linear[side], row.angular[side], j[side]);
    const Real bodySpeed = b.oldSpeedAlong(row.linear[side], row.angular[side]);
    oldSpeed += bodySpeed;
    if (!b.isMovable()) imposedSpeed += bodySpeed;
  }
  switch (row.form) {
  case ConstraintRow::AVERAGED: {
    const Real gamma = 1 / (1 + 4 * row.damping / h);
    sigma = 4 * row.compliance * gamma / (h * h);
    rhs = -4 * gamma / h * row.target + gamma * oldSpeed;
    break;
  }
  case ConstraintRow::BACKWARD:
    sigma = row.compliance / (h * (h + row.damping));
    rhs = -row.target / (h + row.damping);
    break;
  case ConstraintRow::NON_HOLONOMIC:
    sigma = row.compliance / h;
    rhs = row.target;
    break;
  }
  rhs -= imposedSpeed;
}

Index RowSystem::add(const ConstraintRow& source, Index body1, Index body2, Real timeStep, Real impulse)
{
  Row& row = m_rows.emplace_back();
  row.body[0] = body1;
  row.body[1] = body2;
  scale(source, row.body, timeStep, row.j, row.rhs, row.sigma);
  const Real diagonal = row.sigma + speed(row.j, row.j[0], row.j[1]);
  row.inverseDiagonal = diagonal > 0 ? 1 / diagonal : 0;
  row.lower = source.lowerForce * timeStep;
  row.upper = source.upperForce * timeStep;
  row.impulse = std::clamp(impulse, row.lower, row.upper);
  for (std::size_t side = 0; side < 2; ++side)
    addScaled(m_velocities[row.body[side]].v, row.j[side], row.impulse);
  return static_cast<Index>(m_rows.size() - 1);
}

Index RowSystem::addFriction(const ConstraintRow& u, const ConstraintRow& v, Index body1, Index body2,
                             Real timeStep, Index normal, Real coefficient, Real impulseU, Real impulseV)
{
  Friction& row = m_frictions.emplace_back();
  row.body[0] = body1;
  row.body[1] = body2;
  row.normal = normal;
  row.coefficient = coefficient;
  row.impulse[0] = impulseU;
  row.impulse[1] = impulseV;
  Real largest = 0;
  for (std::size_t k = 0; k < 2; ++k) {
    scale(k == 0 ? u : v, row.body, timeStep, row.j[k], row.rhs[k], row.sigma[k]);
    largest = std::max(largest, row.sigma[k] + speed(row.j[k], row.j[k][0], row.j[k][1]));
    for (std::size_t side = 0; side < 2; ++side)
      addScaled(m_velocities[row.body[side]].v, row.j[k][side], row.impulse[k]);
  }
  // One step length for both directions: the projection on the cone then keeps the direction of sliding.
  row.inverseDiagonal = largest > 0 ? 1 / largest : 0;
  return static_cast<Index>(m_frictions.size() - 1);
}

UInt32 RowSystem::solve(UInt32 maxSweeps)
{
  for (UInt32 sweep = 1; sweep <= maxSweeps; ++sweep) {
    const bool rowsMet = sweepRows();
    const bool frictionsMet = sweepFrictions();
    if (rowsMet && frictionsMet) return sweep;
  }
  return maxSweeps;
}

bool RowSystem::sweepRows()
{
  bool met = true;
  for (Row& row : m_rows) {
    Real(&v1)[6] = m_velocities[row.body[0]].v;
    Real(&v2)[6] = m_velocities[row.body[1]].v;
    const Real residual = row.rhs - speed(row.j, v1, v2) - row.sigma * row.impulse;
    const Real impulse =
        std::min(std::max(row.impulse + residual * row.inverseDiagonal, row.lower), row.upper);
    const Real change = impulse - row.impulse;
    row.impulse = impulse;
    addScaled(v1, row.j[0], change);
    addScaled(v2, row.j[1], change);
    met = met && std::fabs(change) <= TOLERANCE * row.inverseDiagonal;
  }
  return met;
}

bool RowSystem::sweepFrictions()
{
  bool met = true;
  for (Friction& row : m_frictions) {
    const Real bound = row.coefficient * m_rows[row.normal].impulse;
    if (bound == 0 && row.impulse[0] == 0 && row.impulse[1] == 0) continue;
    Real(&v1)[6] = m_velocities[row.body[0]].v;
    Real(&v2)[6] = m_velocities[row.body[1]].v;
    Real impulse[2];
    for (std::size_t k = 0; k < 2; ++k) {
      const Real residual = row.rhs[k] - speed(row.j[k], v1, v2) - row.sigma[k] * row.impulse[k];
      impulse[k] = row.impulse[k] + residual * row.inverseDiagonal;
    }
    const Real length2 = impulse[0] * impulse[0] + impulse[1] * impulse[1];
    const Real factor = length2 > bound * bound ? bound / std::sqrt(length2) : 1;
    for (std::size_t k = 0; k < 2; ++k) {
      const Real change = impulse[k] * factor - row.impulse[k];
      row.impulse[k] += change;
      addScaled(v1, row.j[k][0], change);
      addScaled(v2, row.j[k][1], change);
      met = met && std::fabs(change) <= TOLERANCE * row.inverseDiagonal;
    }
  }
  return met;
}

} // namespace kel
