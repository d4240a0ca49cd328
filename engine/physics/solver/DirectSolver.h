#pragma once
#include "solver/RowSystem.h"
#include <Eigen/SparseCholesky>
#include <Eigen/SparseCore>
#include <vector>

namespace kel {

/// Solves rows exactly, bounds included: the change d of the impulses has A d = r on the rows that are free,
/// A = J J^T + sigma, r what the rows miss, and the others stay at a bound that they push against.
///
/// The free rows are found by block principal pivoting (Judice and Pires 1994), which exchanges one row at a
/// time (Murty 1974) while larger exchanges do not help.
class DirectSolver
{
public:
  /// Takes the rows, which must live until the last `solve`. They start from their impulses: those at a bound
  /// are taken to stay there.
  void setRows(const std::vector<ScaledRow*>& rows);
  /// Solves for the rows as they and the velocities are now, and changes both. False, and nothing changes, if
  /// no solution was found.
  bool solve();

private:
  enum State : char
  {
    FREE,
    LOWER,
    UPPER
  };
  using Matrix = Eigen::SparseMatrix<Real>;

  bool hasSamePattern();
  void buildPattern();
  void fillMatrix();
  bool pivot();
  bool factorize();
  bool solveFree();
  void findInfeasible();
  State wantedState(Index i) const;
  void apply();
  void refine();

  std::vector<ScaledRow*> m_rows;
  std::vector<Index> m_patternBodies; // of the rows that the pattern was made for
  Matrix m_matrix;                    // lower triangle of A
  Matrix m_freeMatrix;                // the same with the rows at a bound decoupled
  Eigen::SimplicialLDLT<Matrix> m_factor;
  std::vector<State> m_states;
  std::vector<State> m_factoredStates;
  std::vector<Index> m_infeasible;
  Eigen::VectorXd m_residual;
  Eigen::VectorXd m_change; // of the impulses
  Eigen::VectorXd m_excess; // A d - r
  Eigen::VectorXd m_rightHandSide;
  Real m_impulseTolerance = 0;
  Real m_speedTolerance = 0;
};

} // namespace kel
