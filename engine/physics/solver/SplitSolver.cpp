#include "solver/SplitSolver.h"
#include "kel/Constraint.h"
#include <algorithm>

namespace kel {

namespace {
/// Above this many rows a direct solution is not tried.
constexpr std::size_t MAX_DIRECT_ROWS = 5000;
/// Turns of sweeps, each with a direct solution before and after it.
constexpr UInt32 MAX_TURNS = 10;
/// Turns in which friction follows the normals. Near a joint the two may drive each other up without end.
constexpr UInt32 NUM_FOLLOWING_TURNS = 2;
} // namespace

SplitSolver::Result SplitSolver::solve(RowSystem& rows, UInt32 maxSweeps)
{
  Result result;
  if (rows.hasDirectFriction() ? solveSoundly(rows, maxSweeps, result)
                               : solveDirectly(rows, maxSweeps, result))
    return result;
  result.fellBack = !m_directRows.empty();
  // Joints stay exact where it is friction that has no direct solution.
  if (rows.setFrictionIterative() && solveSoundly(rows, maxSweeps, result)) return result;
  if (result.fellBack) rows.setIterative();
  result.sweeps += rows.sweep(maxSweeps);
  return result;
}

bool SplitSolver::solveSoundly(RowSystem& rows, UInt32 maxSweeps, Result& result)
{
  if (!solveDirectly(rows, maxSweeps, result)) return false;
  if (!rows.hasExploded()) return true;
  rows.release();
  result.directRows = 0;
  return false;
}

bool SplitSolver::solveDirectly(RowSystem& rows, UInt32 maxSweeps, Result& result)
{
  rows.getDirectRows(m_directRows);
  if (m_directRows.empty() || m_directRows.size() > MAX_DIRECT_ROWS) return false;
  if (!solveInTurns(rows, maxSweeps, result.sweeps)) return false;
  result.directRows = static_cast<UInt32>(m_directRows.size());
  return true;
}

bool SplitSolver::solveInTurns(RowSystem& rows, UInt32 maxSweeps, UInt32& sweeps)
{
  m_direct.setRows(m_directRows);
  if (!m_direct.solve()) return false;
  const UInt32 sweepsPerTurn = std::max(maxSweeps / MAX_TURNS, UInt32(1));
  for (UInt32 turn = 0; turn < MAX_TURNS; ++turn) {
    if (turn == NUM_FOLLOWING_TURNS) rows.freezeFrictionBounds();
    bool settled = !rows.updateFrictionBounds();
    if (rows.hasRowsOf(Constraint::ITERATIVE)) {
      const UInt32 done = rows.sweep(sweepsPerTurn);
      sweeps += done;
      settled = settled && done == 1;
    }
    if (settled) break;
    if (!m_direct.solve()) return false;
  }
  return true;
}

} // namespace kel
