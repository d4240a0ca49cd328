#pragma once
#include "kel/DynamicsSystem.h"
#include "kelCollide/GeometryContact.h"
#include "solver/IslandSystem.h"
#include "solver/Islands.h"
#include "solver/Sleepers.h"
#include "solver/SolverBodies.h"
#include "solver/Workers.h"
#include <deque>
#include <vector>

namespace kel {

/// The solution of one step; the memory is kept for the next.
class Solver::Step
{
public:
  void solve(const Solver& solver, DynamicsSystem& system, Real timeStep);

  UInt32 numRows = 0;
  UInt32 numSweeps = 0;
  UInt32 numDirectRows = 0;
  UInt32 numFallbacks = 0;

private:
  void findIslands(const DynamicsSystem& system);
  void addConstraints(const DynamicsSystem& system);
  void addContacts(const kelCollide::Space& space);
  void findAwake(Real timeStep);
  void keepForces(std::size_t island, Real timeStep) const;
  void fillIsland(IslandSystem& island, std::span<const Index> items, const Solver& solver,
                  const DynamicsSystem& system, Real timeStep);
  /// Rows that the items of an island can give to a direct solution.
  std::size_t countDirectRows(std::span<const Index> items, const DynamicsSystem& system) const;
  void count(const IslandSystem& island);

  SolverBodies m_bodies;
  std::size_t m_numConstraints = 0;                    // items of the islands: these, then the contacts
  std::vector<kelCollide::GeometryContact> m_contacts; // those that act
  Islands m_islands;
  Sleepers m_sleepers{m_bodies, m_islands, m_contacts};
  std::vector<Index> m_awake;         // islands
  std::deque<IslandSystem> m_systems; // of these, and some more
  Workers m_workers;
};

} // namespace kel
