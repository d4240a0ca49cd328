#include "Scene.h"
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace {

using namespace kel;
using kelCollide::Box;
using kelCollide::Plane;

/// A constraint of rows that are given as they are.
class Rows : public kel::ElementaryConstraint
{
public:
  explicit Rows(std::vector<ConstraintRow> rows) : forces(rows.size()), m_rows(std::move(rows))
  {
    for (std::size_t i = 0; i < m_rows.size(); ++i) m_rows[i].force = &forces[i];
  }
  UInt32 getNumRows() const override { return static_cast<UInt32>(m_rows.size()); }
  void rows(Real, std::vector<ConstraintRow>& buffer) override
  {
    buffer.insert(buffer.end(), m_rows.begin(), m_rows.end());
  }

  std::vector<Real> forces;

private:
  std::vector<ConstraintRow> m_rows;
};

class RowsConstraint : public Constraint
{
public:
  RowsConstraint(RigidBody* body1, RigidBody* body2, std::vector<ConstraintRow> rows)
      : Constraint(body1, body2), m_rows(new Rows(std::move(rows)))
  {
    addElementaryConstraint("rows", m_rows.get());
  }
  const std::vector<Real>& forces() const { return m_rows->forces; }

private:
  kel::ref_ptr<Rows> m_rows;
};

/// Bodies that are bound in pairs by motors along any directions, some with too little force.
struct Tangle
{
  static constexpr Real STEP = 1.0 / 60;
  static constexpr int BODIES = 12;
  static constexpr int PAIRS = 14; // more than hold the bodies: some rows say what others say
  Scene scene{STEP};
  std::mt19937 random;
  std::vector<RigidBody*> bodies;
  std::vector<RowsConstraint*> constraints;
  std::vector<std::vector<ConstraintRow>> rows;

  explicit Tangle(unsigned seed, UInt32 solveType) : random(seed)
  {
    scene.simulation->setUniformGravity(Vec3());
    for (int i = 0; i < BODIES; ++i) {
      bodies.push_back(scene.addBody(new Box(0.1, 0.2, 0.3), Vec3(2 * i, 0, 0), std::exp2(number() * 5)));
      bodies.back()->setVelocity(direction() * 3);
      // Only a body that is alike in all directions keeps the angular velocity of the solution as it turns.
      bodies.back()->getMassProperties()->setInertiaTensor(Vec3(1, 1, 1));
    }
    for (int i = 0; i < PAIRS; ++i) {
      RigidBody* first = bodies[i % BODIES];
      RigidBody* second = i % 5 == 4 ? nullptr : bodies[(i * 7 + 1) % BODIES];
      addPair(first, second == first ? nullptr : second, solveType);
    }
  }

  Real number() { return std::uniform_real_distribution<Real>(-1, 1)(random); }
  Vec3 direction() { return Vec3(number(), number(), number()); }
  void addPair(RigidBody* first, RigidBody* second, UInt32 solveType)
  {
    std::vector<ConstraintRow> list(4);
    for (ConstraintRow& row : list) {
      row.form = ConstraintRow::NON_HOLONOMIC;
      row.target = number();
      row.compliance = 1e-4;
      row.bodies[0] = first;
      row.bodies[1] = second;
      row.linear[0] = direction();
      row.linear[1] = -row.linear[0];
      row.angular[0] = direction();
      row.angular[1] = direction();
      row.lowerForce = number() < 0 ? 0 : -50 * (1 + number());
      row.upperForce = number() < 0 ? 1e30 : 50 * (1 + number());
    }
    auto* constraint = new RowsConstraint(first, second, list);
    constraint->setSolveType(solveType);
    scene.simulation->add(constraint);
    constraints.push_back(constraint);
    rows.push_back(std::move(list));
  }
  /// By how much the solution misses the rows and their bounds, m/s; counts the forces at a bound.
  Real error(int& atBound) const
  {
    Real largest = 0;
    for (std::size_t c = 0; c < rows.size(); ++c)
      for (std::size_t i = 0; i < rows[c].size(); ++i) {
        const ConstraintRow& row = rows[c][i];
        const Real force = constraints[c]->forces()[i];
        Real miss = row.compliance * force - row.target;
        for (int side = 0; side < 2; ++side)
          if (const RigidBody* body = row.bodies[side])
            miss += row.linear[side] * body->getVelocity() + row.angular[side] * body->getAngularVelocity();
        EXPECT_GE(force, row.lowerForce - 1e-6);
        EXPECT_LE(force, row.upperForce + 1e-6);
        const bool atLower = force <= row.lowerForce + 1e-6;
        const bool atUpper = force >= row.upperForce - 1e-6;
        atBound += atLower || atUpper;
        if (atLower) miss = std::min(miss, Real(0));
        if (atUpper) miss = std::max(miss, Real(0));
        largest = std::max(largest, std::fabs(miss));
      }
    return largest;
  }
};

TEST(Solver, DirectSolutionMeetsRowsAndBounds)
{
  int atBound = 0;
  for (unsigned seed = 0; seed < 200; ++seed) {
    Tangle tangle(seed, Constraint::DIRECT);
    tangle.scene.step(1);
    EXPECT_LT(tangle.error(atBound), 1e-6) << seed;
    EXPECT_EQ(tangle.scene.simulation->getSolver()->getNumFallbacks(), 0u) << seed;
    EXPECT_EQ(tangle.scene.simulation->getSolver()->getNumDirectRows(), 4u * Tangle::PAIRS);
  }
  EXPECT_GT(atBound, 200 * Tangle::PAIRS);
}

TEST(Solver, EverySolveTypeFindsTheSameForces)
{
  const auto solve = [](UInt32 solveType) {
    Tangle tangle(7, solveType);
    tangle.scene.simulation->getSolver()->setNumRestingIterations(200000);
    tangle.scene.step(1);
    std::vector<Real> forces;
    for (const RowsConstraint* constraint : tangle.constraints)
      forces.insert(forces.end(), constraint->forces().begin(), constraint->forces().end());
    return forces;
  };
  const auto direct = solve(Constraint::DIRECT);
  for (const UInt32 solveType : {Constraint::ITERATIVE, Constraint::DIRECT_AND_ITERATIVE}) {
    const auto other = solve(solveType);
    for (std::size_t i = 0; i < direct.size(); ++i) EXPECT_NEAR(other[i], direct[i], 1e-3 * 50);
  }
}

/// Boxes on the ground, one on the other.
struct Stack
{
  Scene scene;
  std::vector<RigidBody*> boxes;

  explicit Stack(std::initializer_list<Real> masses)
  {
    scene.addGeometry(new Plane);
    for (const Real mass : masses)
      boxes.push_back(
          scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(0, 0, 0.5 + static_cast<Real>(boxes.size())), mass));
  }
  Real largestDepth() const
  {
    Real depth = 0;
    for (const auto& contact : scene.simulation->getSpace()->getGeometryContacts())
      for (std::size_t i = 0; i < contact.getNumPoints(); ++i)
        depth = std::max(depth, contact.getPoint(i).depth());
    return depth;
  }
};

TEST(Solver, TenBoxesStayStacked)
{
  for (const bool iterative : {false, true}) {
    Stack stack{100, 100, 100, 100, 100, 100, 100, 100, 100, 100};
    stack.scene.simulation->getSolver()->setForceIterative(iterative);
    const RigidBody& top = *stack.boxes.back();
    stack.scene.step(120);
    const Vec3 before = top.getPosition();
    stack.scene.step(28 * 60);
    const Vec3 drift = top.getPosition() - (iterative ? Vec3(0, 0, 9.5) : before);
    EXPECT_LT(drift.length(), iterative ? 0.02 : 1e-6);
    EXPECT_EQ(stack.scene.simulation->getSolver()->getNumFallbacks(), 0u);
  }
}

TEST(Solver, LightBoxCarriesAHeavyOne)
{
  for (const Real ratio : {1e3, 1e6}) {
    Stack stack{1, ratio};
    Real depth = 0;
    for (int i = 0; i < 600; ++i) {
      stack.scene.step(1);
      depth = std::max(depth, stack.largestDepth());
    }
    EXPECT_LT(depth, 1e-7 * ratio) << ratio;
    EXPECT_NEAR(stack.boxes[1]->getPosition().z(), 1.5, 2e-7 * ratio);
    EXPECT_EQ(stack.scene.simulation->getSolver()->getNumFallbacks(), 0u);
  }
}

TEST(Solver, PyramidStands)
{
  constexpr int ROWS = 10;
  Scene scene;
  scene.addGeometry(new Plane);
  RigidBody* top = nullptr;
  for (int row = 0; row < ROWS; ++row)
    for (int i = 0; i < ROWS - row; ++i)
      top = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(1.02 * (i - (ROWS - row) / 2.0), 0, 0.5 + row), 50);
  UInt32 fallbacks = 0;
  for (int i = 0; i < 300; ++i) {
    scene.step(1);
    fallbacks += scene.simulation->getSolver()->getNumFallbacks();
  }
  EXPECT_EQ(fallbacks, 0u);
  EXPECT_NEAR(top->getPosition().z(), 9.5, 1e-3);
  EXPECT_LT(top->getVelocity().length(), 1e-3);
}

TEST(Solver, TooManyRowsFallBackToSweeps)
{
  Scene scene;
  scene.addGeometry(new Plane);
  RigidBody* top = nullptr;
  for (int layer = 0; layer < 4; ++layer)
    for (int i = 0; i < 49; ++i)
      top = scene.addBody(new Box(0.5, 0.5, 0.5), Vec3(i % 7, i / 7, 0.5 + layer), 1);
  scene.step(120);
  const kel::Solver& solver = *scene.simulation->getSolver();
  EXPECT_GT(solver.getNumRows(), 1800u);
  EXPECT_EQ(solver.getNumFallbacks(), 1u);
  EXPECT_EQ(solver.getNumDirectRows(), 0u);
  EXPECT_NEAR(top->getPosition().z(), 3.5, 0.02);
}

} // namespace
