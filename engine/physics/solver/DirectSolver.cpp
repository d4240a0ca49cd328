#include "solver/DirectSolver.h"
#include <algorithm>
#include <cmath>
#include <limits>

namespace kel {

namespace {

/// Least sigma, as a part of the row's diagonal. Rows that say the same twice need it, and more so where
/// bounds have to be told apart from rounding.
constexpr Real LEAST_SIGMA = 1e-11;
constexpr Real LEAST_SIGMA_WITH_BOUNDS = 1e-7;
/// Exchanges in a solution, and those that may fail to help before single ones begin.
constexpr int MAX_EXCHANGES = 100;
constexpr int PATIENCE = 5;
/// Part of the largest impulse and of the largest residual that counts as nothing.
constexpr Real TOLERANCE = 1e-9;

bool hasBounds(const ScaledRow& row) { return std::isfinite(row.lower) || std::isfinite(row.upper); }

/// Element of J J^T.
Real product(const ScaledRow& a, const ScaledRow& b)
{
  Real sum = 0;
  for (std::size_t i = 0; i < 2; ++i)
    for (std::size_t k = 0; k < 2; ++k)
      if (a.body[i] && a.body[i] == b.body[k]) sum += dot(a.j[i], b.j[k]);
  return sum;
}

} // namespace

void DirectSolver::setRows(const std::vector<ScaledRow*>& rows)
{
  m_rows = rows;
  if (!hasSamePattern()) buildPattern();
  fillMatrix();
  m_states.assign(m_rows.size(), FREE);
  for (Index i = 0; i < m_rows.size(); ++i) {
    const ScaledRow& row = *m_rows[i];
    if (row.impulse <= row.lower)
      m_states[i] = LOWER;
    else if (row.impulse >= row.upper)
      m_states[i] = UPPER;
  }
  m_factoredStates.clear();
}

bool DirectSolver::hasSamePattern()
{
  const bool sameSize = m_patternBodies.size() == 2 * m_rows.size();
  bool same = sameSize;
  m_patternBodies.resize(2 * m_rows.size());
  for (std::size_t i = 0; i < m_patternBodies.size(); ++i) {
    const Index body = m_rows[i / 2]->body[i % 2];
    same = same && m_patternBodies[i] == body;
    m_patternBodies[i] = body;
  }
  return same;
}

void DirectSolver::buildPattern()
{
  Index numBodies = 0;
  for (const Index body : m_patternBodies) numBodies = std::max(numBodies, body + 1);
  std::vector<std::vector<Index>> rowsOfBody(numBodies);
  for (Index i = 0; i < m_rows.size(); ++i) {
    const auto& body = m_rows[i]->body;
    if (body[0]) rowsOfBody[body[0]].push_back(i);
    if (body[1] && body[1] != body[0]) rowsOfBody[body[1]].push_back(i);
  }
  const auto size = static_cast<Eigen::Index>(m_rows.size());
  m_matrix.resize(size, size);
  m_matrix.setZero();
  std::vector<Index> column;
  for (Index i = 0; i < m_rows.size(); ++i) {
    column.clear();
    for (const Index body : m_rows[i]->body) {
      if (!body) continue;
      const auto& rows = rowsOfBody[body];
      column.insert(column.end(), std::lower_bound(rows.begin(), rows.end(), i), rows.end());
    }
    std::sort(column.begin(), column.end());
    column.erase(std::unique(column.begin(), column.end()), column.end());
    m_matrix.startVec(i);
    for (const Index k : column) m_matrix.insertBack(k, i) = 0;
  }
  m_matrix.finalize();
  m_freeMatrix = m_matrix;
  m_factor.analyzePattern(m_matrix);
}

void DirectSolver::fillMatrix()
{
  for (Index i = 0; i < m_rows.size(); ++i) {
    const ScaledRow& row = *m_rows[i];
    Matrix::InnerIterator element(m_matrix, i);
    const Real square = product(row, row);
    element.valueRef() =
        square + std::max(row.sigma, square * (hasBounds(row) ? LEAST_SIGMA_WITH_BOUNDS : LEAST_SIGMA));
    for (++element; element; ++element) element.valueRef() = product(row, *m_rows[element.row()]);
  }
}

bool DirectSolver::solve()
{
  const auto size = static_cast<Eigen::Index>(m_rows.size());
  m_residual.resize(size);
  m_change.resize(size);
  for (Eigen::Index i = 0; i < size; ++i) m_residual[i] = residualOf(*m_rows[i]);
  m_speedTolerance = TOLERANCE * m_residual.lpNorm<Eigen::Infinity>();
  if (!pivot()) return false;
  apply();
  refine();
  return true;
}

bool DirectSolver::pivot()
{
  auto fewest = std::numeric_limits<std::size_t>::max();
  int patience = PATIENCE;
  for (int exchange = 0; exchange < MAX_EXCHANGES; ++exchange) {
    if (!factorize() || !solveFree()) return false;
    findInfeasible();
    if (m_infeasible.empty()) return true;
    if (m_infeasible.size() < fewest) {
      fewest = m_infeasible.size();
      patience = PATIENCE;
    } else if (patience > 0) {
      --patience;
    } else {
      m_infeasible.erase(m_infeasible.begin(), m_infeasible.end() - 1);
    }
    for (const Index i : m_infeasible) m_states[i] = wantedState(i);
  }
  return false;
}

bool DirectSolver::factorize()
{
  if (m_states == m_factoredStates) return true;
  const bool allFree = std::count(m_states.begin(), m_states.end(), FREE) == std::ssize(m_states);
  if (!allFree) {
    for (Index i = 0; i < m_rows.size(); ++i) {
      Matrix::InnerIterator from(m_matrix, i);
      Matrix::InnerIterator to(m_freeMatrix, i);
      to.valueRef() = from.value();
      for (++from, ++to; from; ++from, ++to)
        to.valueRef() = m_states[i] == FREE && m_states[from.row()] == FREE ? from.value() : 0;
    }
  }
  m_factor.factorize(allFree ? m_matrix : m_freeMatrix);
  m_factoredStates = m_states;
  return m_factor.info() == Eigen::Success;
}

bool DirectSolver::solveFree()
{
  for (Index i = 0; i < m_rows.size(); ++i) {
    const ScaledRow& row = *m_rows[i];
    m_change[i] = m_states[i] == FREE    ? 0
                  : m_states[i] == LOWER ? row.lower - row.impulse
                                         : row.upper - row.impulse;
  }
  m_rightHandSide = m_residual - m_matrix.selfadjointView<Eigen::Lower>() * m_change;
  for (Index i = 0; i < m_rows.size(); ++i)
    if (m_states[i] != FREE) m_rightHandSide[i] = 0;
  m_change += m_factor.solve(m_rightHandSide);
  m_excess = m_matrix.selfadjointView<Eigen::Lower>() * m_change - m_residual;
  Real largest = 0;
  for (Index i = 0; i < m_rows.size(); ++i)
    largest = std::max(largest, std::fabs(m_rows[i]->impulse + m_change[i]));
  m_impulseTolerance = TOLERANCE * largest;
  return m_change.allFinite();
}

DirectSolver::State DirectSolver::wantedState(Index i) const
{
  const ScaledRow& row = *m_rows[i];
  const Real impulse = row.impulse + m_change[i];
  switch (m_states[i]) {
  case FREE:
    if (impulse < row.lower - m_impulseTolerance) return LOWER;
    return impulse > row.upper + m_impulseTolerance ? UPPER : FREE;
  case LOWER:
    return m_excess[i] < -m_speedTolerance && row.lower < row.upper ? FREE : LOWER;
  case UPPER:
    return m_excess[i] > m_speedTolerance && row.lower < row.upper ? FREE : UPPER;
  }
  return FREE;
}

void DirectSolver::findInfeasible()
{
  m_infeasible.clear();
  for (Index i = 0; i < m_rows.size(); ++i)
    if (wantedState(i) != m_states[i]) m_infeasible.push_back(i);
}

void DirectSolver::apply()
{
  for (Index i = 0; i < m_rows.size(); ++i) {
    ScaledRow& row = *m_rows[i];
    setImpulse(row, std::min(std::max(row.impulse + m_change[i], row.lower), row.upper));
  }
}

// What the least sigma and rounding left over.
void DirectSolver::refine()
{
  for (Index i = 0; i < m_rows.size(); ++i)
    m_rightHandSide[i] = m_states[i] == FREE ? residualOf(*m_rows[i]) : 0;
  m_change = m_factor.solve(m_rightHandSide);
  if (m_change.allFinite()) apply();
}

} // namespace kel
