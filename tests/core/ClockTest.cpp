#include "kel/Clock.h"
#include <gtest/gtest.h>
#include <limits>

using namespace kel;

namespace {

/// Notes when it ran, and may do something more then.
class Recorder : public Task
{
public:
  explicit Recorder(const Clock& clock) : Task("recorder"), m_clock(clock) {}
  std::vector<Real> times;
  std::function<void()> more;

protected:
  ~Recorder() override = default;
  void run() override
  {
    times.push_back(m_clock.getTime());
    if (more) more();
  }

private:
  const Clock& m_clock;
};

ref_ptr<Clock> makeClock(Real frequency) { return new Clock("clock", frequency); }

TEST(Clock, GoesOnInFrames)
{
  const ref_ptr<Clock> clock = makeClock(10);
  EXPECT_EQ(clock->getTimeStep(), 0.1);
  clock->tick();
  EXPECT_EQ(clock->getTime(), 0.1);
  clock->stepForward(0.5);
  EXPECT_EQ(clock->getTimeStep(), 0.5);
  clock->stepTo(0.3);
  EXPECT_EQ(clock->getTime(), 0.3) << "exactly, and back";
  EXPECT_EQ(clock->getFrame(), 3U);
  clock->setTime(9);
  EXPECT_EQ(clock->getFrame(), 3U);
  clock->setEnable(false);
  clock->tick();
  clock->stepForward(1);
  clock->stepTo(1);
  EXPECT_EQ(clock->getTime(), 9);
  EXPECT_EQ(clock->getFrame(), 3U);
}

TEST(Clock, ModulationScalesTicksOnly)
{
  const ref_ptr<Clock> clock = makeClock(10);
  clock->setTimeModulation(0.5);
  clock->tick();
  EXPECT_EQ(clock->getTime(), 0.05);
  clock->stepForward(1);
  EXPECT_EQ(clock->getTime(), 1.05);
  clock->setTimeModulation(0);
  clock->tick();
  EXPECT_EQ(clock->getTime(), 1.05);
  EXPECT_EQ(clock->getFrame(), 3U);
  const Real inf = std::numeric_limits<Real>::infinity(), nan = std::numeric_limits<Real>::quiet_NaN();
  for (const Real bad : {-1.0, 0.0, inf, nan}) {
    clock->setTimeModulation(bad);
    clock->setFrequency(bad);
    EXPECT_EQ(clock->getTimeModulation(), 0);
    EXPECT_EQ(clock->getFrequency(), 10);
  }
  for (const Real bad : {inf, nan}) {
    clock->stepForward(bad);
    clock->stepTo(bad);
  }
  EXPECT_EQ(clock->getTime(), 1.05);
  EXPECT_EQ(makeClock(0)->getFrequency(), 60);
}

TEST(Clock, SlavesMakeAFrameForEachOfTheirPeriods)
{
  const ref_ptr<Clock> clock = makeClock(60), slow = makeClock(30), fast = makeClock(240),
                       odd = makeClock(25);
  for (const auto& slave : {slow, fast, odd}) clock->addSlave(slave.get());
  slow->setTimeModulation(2);
  for (int i = 0; i < 6000; ++i) clock->tick();
  EXPECT_EQ(slow->getFrame(), 3000U);
  EXPECT_NEAR(slow->getTime(), 200, 1e-9);
  EXPECT_EQ(fast->getFrame(), 6000U) << "one frame of four periods";
  EXPECT_NEAR(fast->getTime(), 100, 1e-9);
  EXPECT_NEAR(fast->getTimeStep(), 4.0 / 240, 1e-15);
  EXPECT_EQ(odd->getFrame(), 2500U);
  EXPECT_NEAR(odd->getTime(), 100, 1e-9);
}

TEST(Clock, SlavesOfSlavesFollowAndDisabledOnesStand)
{
  const ref_ptr<Clock> top = makeClock(10), middle = makeClock(10), bottom = makeClock(10);
  top->addSlave(middle.get());
  middle->addSlave(bottom.get());
  middle->setTimeModulation(0.5);
  for (int i = 0; i < 4; ++i) top->tick();
  EXPECT_NEAR(middle->getTime(), 0.2, 1e-12);
  EXPECT_NEAR(bottom->getTime(), 0.2, 1e-12);
  EXPECT_EQ(bottom->getFrame(), 2U);
  middle->setEnable(false);
  top->tick();
  EXPECT_NEAR(bottom->getTime(), 0.2, 1e-12);
  middle->setEnable(true);
  top->stepForward(1e300);
  top->stepForward(1e308);
  top->stepForward(1e308);
  EXPECT_GE(middle->getTime(), 4e299) << "however far, at once";
}

TEST(Clock, RefusesCyclesAndLeavesItsFormerReference)
{
  const ref_ptr<Clock> a = makeClock(1), b = makeClock(1), c = makeClock(1);
  a->addSlave(b.get());
  b->addSlave(c.get());
  c->addSlave(a.get());
  a->addSlave(a.get());
  a->addSlave(nullptr);
  EXPECT_EQ(a->getReference(), nullptr);
  a->addSlave(c.get());
  EXPECT_EQ(c->getReference(), a.get());
  b->tick();
  EXPECT_EQ(c->getFrame(), 0U);
  a->removeSlave(c.get());
  a->removeSlave(c.get());
  EXPECT_EQ(c->getReference(), nullptr);
  EXPECT_EQ(c->getReferenceCount(), 1U);
}

TEST(Clock, HoldsItsSlavesAndNotItsReference)
{
  ref_ptr<Clock> clock = makeClock(1);
  const ref_ptr<Clock> slave = makeClock(1);
  clock->addSlave(slave.get());
  EXPECT_EQ(slave->getReferenceCount(), 2U);
  clock = nullptr;
  EXPECT_EQ(slave->getReference(), nullptr);
  EXPECT_EQ(slave->getReferenceCount(), 1U);

  ref_ptr<Clock> row = makeClock(1); // in a long row none is destroyed within another one
  for (int i = 0; i < 1000000; ++i) {
    const ref_ptr<Clock> above = makeClock(1);
    above->addSlave(row.get());
    row = above;
  }
  row->tick();
  row = nullptr;
}

TEST(Clock, RunsItsTasksInTheOrderOfTheirAddition)
{
  const ref_ptr<Clock> clock = makeClock(10), slave = makeClock(10);
  clock->addSlave(slave.get());
  const ref_ptr<Recorder> first = new Recorder(*clock), second = new Recorder(*clock),
                          below = new Recorder(*slave);
  clock->addFrameTask(first.get());
  clock->addFrameTask(first.get());
  clock->addFrameTask(second.get());
  clock->addFrameTask(nullptr);
  slave->addFrameTask(below.get());
  first->more = [&] { clock->removeFrameTask(first.get()); };
  clock->tick();
  EXPECT_EQ(first->times, std::vector<Real>{0.1});
  clock->tick();
  EXPECT_EQ(first->times.size(), 1U);
  EXPECT_EQ(second->times, (std::vector<Real>{0.1, 0.2}));
  EXPECT_EQ(below->times.size(), 2U);
  second->setEnable(false);
  clock->tick(false);
  clock->tick();
  EXPECT_EQ(second->times.size(), 2U);
  EXPECT_EQ(below->times.size(), 3U);
  below->more = [&] { clock->removeSlave(slave.get()); };
  clock->tick();
  clock->tick();
  EXPECT_EQ(below->times.size(), 4U);
}

} // namespace
