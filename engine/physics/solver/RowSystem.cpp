#include "solver/RowSystem.h"
#include "kel/Constraint.h"
#include <algorithm>
#include <cmath>

namespace kel {

namespace {

/// A row is met when its velocity changes by less than this in a sweep, m/s.
constexpr Real TOLERANCE = 1e-8;

/// Least damping of rows that the step does not resolve, steps.
constexpr Real LEAST_DAMPING_STEPS = 1;

/// Greatest part of the speed with which rows that the step does not resolve take a violation back, m/s or
/// rad/s. Joints whose bodies somebody has carried off would shoot otherwise.
constexpr Real MAX_CORRECTION = 100;

/// Energy over what can be expected from which on a solution is none.
constexpr Real GREATEST_GAIN = 10;

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

/// Inverse of the mass that a row moves.
inline Real inverseMassOf(const ScaledRow& row) { return speed(row.j, row.j[0], row.j[1]); }

/// Whether a step is short enough for the spring that a row is.
bool isResolved(const ConstraintRow& source, Real inverseMass, Real timeStep)
{
  return inverseMass * timeStep * timeStep < source.compliance;
}

/// The damping of a row, s. One whose spring swings too fast for the step gains energy when its direction
/// turns, unless a violation takes some steps to go.
Real dampingOf(const ConstraintRow& source, Real inverseMass, Real timeStep)
{
  if (!isResolved(source, inverseMass, timeStep))
    return std::max(source.damping, LEAST_DAMPING_STEPS * timeStep);
  return source.damping < 0 ? ConstraintRow::DEFAULT_DAMPING : source.damping;
}

/// The speed at which a row takes its violation back, at a rate in 1/s. Rows that only push leave free how
/// fast what is still ahead of them may come.
Real correction(const ConstraintRow& source, Real inverseMass, Real timeStep, Real rate)
{
  Real speed = -source.target * rate;
  if (isResolved(source, inverseMass, timeStep)) return speed;
  if (source.upperForce > 0) speed = std::min(speed, MAX_CORRECTION);
  if (source.lowerForce < 0) speed = std::max(speed, -MAX_CORRECTION);
  return speed;
}

/// Brings an impulse into a rectangle of the half widths a and b, or, along itself, into the ellipse in it.
inline void project(Real (&impulse)[2], Real a, Real b, bool isEllipse)
{
  if (!isEllipse || a == 0 || b == 0) {
    impulse[0] = std::min(std::max(impulse[0], -a), a);
    impulse[1] = std::min(std::max(impulse[1], -b), b);
    return;
  }
  const Real x = impulse[0] * b;
  const Real y = impulse[1] * a;
  const Real length2 = x * x + y * y;
  const Real limit = a * b;
  if (length2 <= limit * limit) return;
  const Real factor = limit / std::sqrt(length2);
  impulse[0] *= factor;
  impulse[1] *= factor;
}

} // namespace

Real dot(const Real (&a)[6], const Real (&b)[6])
{
  const Pair sum = load(a, 0) * load(b, 0) + load(a, 1) * load(b, 1) + load(a, 2) * load(b, 2);
  return sum[0] + sum[1];
}

void setImpulse(ScaledRow& row, Real impulse)
{
  const Real change = impulse - row.impulse;
  row.impulse = impulse;
  for (std::size_t side = 0; side < 2; ++side) addScaled(*row.velocity[side], row.j[side], change);
}

Real residualOf(const ScaledRow& row)
{
  return row.rhs - speed(row.j, *row.velocity[0], *row.velocity[1]) - row.sigma * row.impulse;
}

void RowSystem::clear()
{
  m_rows.clear();
  m_frictions.clear();
  m_givenBounds.clear();
  m_solveTypes = 0;
}

void RowSystem::scale(const ConstraintRow& source, Real timeStep, ScaledRow& row)
{
  const Real h = timeStep;
  Real oldSpeed = 0;
  Real imposedSpeed = 0;
  for (std::size_t side = 0; side < 2; ++side) {
    const SolverBody& b = m_bodies[row.body[side]];
    b.scaleRow(source.linear[side], source.angular[side], row.j[side]);
    const Real bodySpeed = b.oldSpeedAlong(source.linear[side], source.angular[side]);
    oldSpeed += bodySpeed;
    if (b.isMovable()) continue;
    imposedSpeed += bodySpeed;
    row.body[side] = 0;
  }
  const Real inverseMass = inverseMassOf(row);
  switch (source.form) {
  case ConstraintRow::AVERAGED: {
    const Real gamma = 1 / (1 + 4 * dampingOf(source, inverseMass, h) / h);
    row.sigma = 4 * source.compliance * gamma / (h * h);
    row.rhs = correction(source, inverseMass, h, 4 * gamma / h) + gamma * oldSpeed;
    break;
  }
  case ConstraintRow::BACKWARD: {
    const Real time = h + (source.damping < 0 ? ConstraintRow::DEFAULT_DAMPING : source.damping);
    row.sigma = source.compliance / (h * time);
    row.rhs = correction(source, inverseMass, h, 1 / time);
    break;
  }
  case ConstraintRow::NON_HOLONOMIC:
    row.sigma = source.compliance / h;
    row.rhs = source.target;
    break;
  }
  row.sigma = std::max(row.sigma, source.softness * inverseMass);
  row.rhs -= imposedSpeed;
  const Real diagonal = inverseMass + row.sigma;
  const bool isSolvable = std::isfinite(row.rhs) && std::isfinite(diagonal) && diagonal > 0;
  row.inverseDiagonal = isSolvable ? 1 / diagonal : 0;
  if (!isSolvable) {
    row.solveType = 0;
    row.body[0] = row.body[1] = 0;
  }
  for (std::size_t side = 0; side < 2; ++side)
    row.velocity[side] = row.body[side] ? &m_velocities[row.body[side]].v : &m_still.v;
  m_solveTypes |= row.solveType;
}

void RowSystem::start(ScaledRow& row, Real impulse)
{
  row.impulse = 0;
  if (row.solveType) setImpulse(row, std::min(std::max(impulse, row.lower), row.upper));
}

Index RowSystem::add(const ConstraintRow& source, Index body1, Index body2, Real timeStep, Real impulse,
                     UInt32 solveType)
{
  ScaledRow& row = m_rows.emplace_back();
  row.body[0] = body1;
  row.body[1] = body2;
  row.solveType = solveType;
  row.lower = source.lowerForce * timeStep;
  row.upper = source.upperForce * timeStep;
  scale(source, timeStep, row);
  start(row, impulse);
  return static_cast<Index>(m_rows.size() - 1);
}

Real RowSystem::boundingImpulse(const FrictionBound& bound) const
{
  const Real normal = bound.normal == FrictionBound::NO_ROW ? 0 : m_rows[bound.normal].impulse;
  return std::max(normal + bound.offset, Real(0));
}

Index RowSystem::addFriction(const ConstraintRow& u, const ConstraintRow& v, Index body1, Index body2,
                             Real timeStep, const FrictionBound& bound, Real impulseU, Real impulseV,
                             UInt32 solveType)
{
  Friction& friction = m_frictions.emplace_back();
  friction.bound = bound;
  const Real boundingImpulse = this->boundingImpulse(bound);
  for (std::size_t k = 0; k < 2; ++k) {
    ScaledRow& row = friction.rows[k];
    row.body[0] = body1;
    row.body[1] = body2;
    row.solveType = solveType;
    row.upper = bound.coefficients[k] * boundingImpulse;
    row.lower = -row.upper;
  }
  scale(u, timeStep, friction.rows[0]);
  scale(v, timeStep, friction.rows[1]);
  // One step length for both directions: the projection on the cone then keeps the direction of sliding.
  Real& inverseDiagonal = friction.rows[0].inverseDiagonal;
  inverseDiagonal = std::min(inverseDiagonal, friction.rows[1].inverseDiagonal);
  if (inverseDiagonal == 0) friction.rows[0].solveType = friction.rows[1].solveType = 0;
  start(friction.rows[0], impulseU);
  start(friction.rows[1], impulseV);
  return static_cast<Index>(m_frictions.size() - 1);
}

template <class Self, class Visit> void RowSystem::visitRows(Self& self, Visit visit)
{
  for (auto& row : self.m_rows) visit(row);
  for (auto& friction : self.m_frictions)
    for (auto& row : friction.rows) visit(row);
}

void RowSystem::getDirectRows(std::vector<ScaledRow*>& rows)
{
  rows.clear();
  visitRows(*this, [&rows](ScaledRow& row) {
    if (row.solveType & Constraint::DIRECT) rows.push_back(&row);
  });
}

bool RowSystem::updateFrictionBounds()
{
  bool changed = false;
  for (Friction& friction : m_frictions) {
    auto& rows = friction.rows;
    if (!(rows[0].solveType & Constraint::DIRECT)) continue;
    const Real impulse = boundingImpulse(friction.bound);
    Real limits[2] = {friction.bound.coefficients[0] * impulse, friction.bound.coefficients[1] * impulse};
    if (friction.bound.isCone) limitAlongSliding(friction, limits);
    for (std::size_t k = 0; k < 2; ++k) {
      changed = changed || std::fabs(limits[k] - rows[k].upper) > 1e-3 * limits[k];
      rows[k].upper = limits[k];
      rows[k].lower = -limits[k];
    }
  }
  return changed;
}

void RowSystem::freezeFrictionBounds()
{
  m_givenBounds.clear();
  for (Friction& friction : m_frictions) {
    m_givenBounds.push_back(friction.bound);
    friction.bound.offset = boundingImpulse(friction.bound);
    friction.bound.normal = FrictionBound::NO_ROW;
  }
}

void RowSystem::limitAlongSliding(const Friction& friction, Real (&limits)[2]) const
{
  const auto& rows = friction.rows;
  Real wanted[2];
  for (std::size_t k = 0; k < 2; ++k)
    wanted[k] = rows[k].impulse + residualOf(rows[k]) * rows[0].inverseDiagonal;
  Real allowed[2] = {wanted[0], wanted[1]};
  project(allowed, limits[0], limits[1], true);
  if (allowed[0] == wanted[0] && allowed[1] == wanted[1]) return;
  for (std::size_t k = 0; k < 2; ++k) limits[k] = std::fabs(allowed[k]);
}

bool RowSystem::hasDirectFriction() const
{
  return std::any_of(m_frictions.begin(), m_frictions.end(), [](const Friction& friction) {
    return (friction.rows[0].solveType & Constraint::DIRECT) != 0;
  });
}

bool RowSystem::hasExploded() const
{
  Real energy = 0; // twice that of the bodies, once for each row
  Real expected = 0;
  visitRows(*this, [&](const ScaledRow& row) {
    expected += row.rhs * row.rhs * row.inverseDiagonal;
    for (std::size_t side = 0; side < 2; ++side) {
      if (row.body[side] == 0) continue;
      Real free[6];
      m_bodies[row.body[side]].scaleFreeVelocity(free);
      expected += dot(free, free);
      energy += dot(*row.velocity[side], *row.velocity[side]);
    }
  });
  return energy > GREATEST_GAIN * expected;
}

void RowSystem::release()
{
  visitRows(*this, [](ScaledRow& row) {
    if (row.solveType) setImpulse(row, 0);
  });
  for (std::size_t i = 0; i < m_givenBounds.size(); ++i) m_frictions[i].bound = m_givenBounds[i];
  m_givenBounds.clear();
}

void RowSystem::setIterative()
{
  for (ScaledRow& row : m_rows)
    if (row.solveType) row.solveType = Constraint::ITERATIVE;
  setFrictionIterative();
  m_solveTypes = Constraint::ITERATIVE;
}

bool RowSystem::setFrictionIterative()
{
  bool changed = false;
  for (Friction& friction : m_frictions)
    for (ScaledRow& row : friction.rows) {
      if (!(row.solveType & Constraint::DIRECT)) continue;
      row.solveType = Constraint::ITERATIVE;
      changed = true;
    }
  if (changed) m_solveTypes |= Constraint::ITERATIVE;
  return changed;
}

UInt32 RowSystem::sweep(UInt32 maxSweeps)
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
  for (ScaledRow& row : m_rows) {
    if (!(row.solveType & Constraint::ITERATIVE)) continue;
    Real(&v1)[6] = *row.velocity[0];
    Real(&v2)[6] = *row.velocity[1];
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
  for (Friction& friction : m_frictions) {
    auto& rows = friction.rows;
    if (!(rows[0].solveType & Constraint::ITERATIVE)) continue;
    const Real bounding = boundingImpulse(friction.bound);
    if (bounding == 0 && rows[0].impulse == 0 && rows[1].impulse == 0) continue;
    Real(&v1)[6] = *rows[0].velocity[0];
    Real(&v2)[6] = *rows[0].velocity[1];
    const Real inverseDiagonal = rows[0].inverseDiagonal;
    Real impulse[2];
    for (std::size_t k = 0; k < 2; ++k) {
      const Real residual = rows[k].rhs - speed(rows[k].j, v1, v2) - rows[k].sigma * rows[k].impulse;
      impulse[k] = rows[k].impulse + residual * inverseDiagonal;
    }
    project(impulse, friction.bound.coefficients[0] * bounding, friction.bound.coefficients[1] * bounding,
            friction.bound.isCone);
    for (std::size_t k = 0; k < 2; ++k) {
      const Real change = impulse[k] - rows[k].impulse;
      rows[k].impulse += change;
      addScaled(v1, rows[k].j[0], change);
      addScaled(v2, rows[k].j[1], change);
      met = met && std::fabs(change) <= TOLERANCE * inverseDiagonal;
    }
  }
  return met;
}

} // namespace kel
