#pragma once
#include "solver/DirectSolver.h"
#include "solver/RowSystem.h"
#include <vector>

namespace kel {

/// Solves the rows of an island: those of the direct kind exactly, the others by sweeps, in turns, as each
/// kind changes what the other one meets.
class SplitSolver
{
public:
  struct Result
  {
    UInt32 sweeps = 0;
    UInt32 directRows = 0;
    bool fellBack = false; ///< whether direct rows had to be solved by sweeps
  };

  Result solve(RowSystem& rows, UInt32 maxSweeps);

private:
  /// The same as `solveDirectly`, but takes a solution back that makes bodies explode.
  bool solveSoundly(RowSystem& rows, UInt32 maxSweeps, Result& result);
  bool solveDirectly(RowSystem& rows, UInt32 maxSweeps, Result& result);
  bool solveInTurns(RowSystem& rows, UInt32 maxSweeps, UInt32& sweeps);

  DirectSolver m_direct;
  std::vector<ScaledRow*> m_directRows;
};

} // namespace kel
