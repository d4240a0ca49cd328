#include "kel/HighAccuracyTimer.h"
#include <gtest/gtest.h>
#include <thread>

using namespace kel;

namespace {

template <class T> class TimerTest : public testing::Test
{
public:
  static void pass() { std::this_thread::sleep_for(std::chrono::milliseconds(3)); }
};
using Timers = testing::Types<Timer, HighAccuracyTimer>;
TYPED_TEST_SUITE(TimerTest, Timers);

TYPED_TEST(TimerTest, AddsUpTheTimesThatItRuns)
{
  TypeParam timer;
  EXPECT_FALSE(timer.isRunning());
  this->pass();
  EXPECT_EQ(timer.getTime(), 0);
  timer.start();
  this->pass();
  timer.start();
  EXPECT_GE(timer.getTime(), 0.003 - 1e-6);
  timer.stop();
  const double first = timer.getTime();
  this->pass();
  timer.stop();
  EXPECT_EQ(timer.getTime(), first);
  timer.start();
  EXPECT_GE(timer.getTime(), first);
  this->pass();
  timer.stop();
  EXPECT_GE(timer.getTime(), first + 0.003 - 1e-6);
}

TYPED_TEST(TimerTest, ShowsOnlyTheTicksUpToTheLastStop)
{
  TypeParam timer(true);
  EXPECT_TRUE(timer.isRunning());
  this->pass();
  EXPECT_EQ(timer.getNumTicks(), 0U);
  timer.stop();
  const UInt64 ticks = timer.getNumTicks();
  EXPECT_GT(ticks, 0U);
  timer.start();
  this->pass();
  EXPECT_EQ(timer.getNumTicks(), ticks);
  timer.reset();
  EXPECT_EQ(timer.getNumTicks(), 0U);
  EXPECT_FALSE(timer.isRunning());
  timer.reset(true);
  EXPECT_TRUE(timer.isRunning());
}

TEST(Timer, FactorsAreTheLengthsOfTicks)
{
  Timer coarse(true);
  HighAccuracyTimer fine(true);
  TimerTest<Timer>::pass();
  fine.stop();
  coarse.stop();
  EXPECT_DOUBLE_EQ(coarse.getTime(), double(coarse.getNumTicks()) * Timer::s_clockSpeed);
  EXPECT_DOUBLE_EQ(fine.getTime(), double(fine.getNumTicks()) * HighAccuracyTimer::s_highAccuracyClockSpeed);
  EXPECT_GE(fine.getNumTicks(), 3000000U);
  EXPECT_GE(coarse.getTime(), fine.getTime() - 2e-6) << "it ran before and after";
}

} // namespace
