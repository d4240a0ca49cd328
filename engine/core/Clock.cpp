#include "kel/Clock.h"
#include <algorithm>
#include <cmath>

namespace kel {

Clock::Clock(const Name& name, Real frequency) : Component(name) { setFrequency(frequency); }

Clock::~Clock()
{
  // Slaves of slaves go with them one by one: a long row must not exhaust the stack.
  std::vector<ref_ptr<Clock>> orphans = std::move(m_slaves);
  while (!orphans.empty()) {
    const ref_ptr<Clock> orphan = std::move(orphans.back());
    orphans.pop_back();
    orphan->m_reference = nullptr;
    if (orphan->getReferenceCount() > 1) continue;
    orphans.insert(orphans.end(), orphan->m_slaves.begin(), orphan->m_slaves.end());
    orphan->m_slaves.clear();
  }
}

void Clock::tick(bool runTasks)
{
  const Real timeStep = m_modulation / m_frequency;
  makeFrame(m_time + timeStep, timeStep, runTasks);
}

void Clock::stepTo(TimeStamp time)
{
  if (std::isfinite(time)) makeFrame(time, time - m_time, true);
}

void Clock::stepForward(Real timeStep)
{
  if (std::isfinite(timeStep)) makeFrame(m_time + timeStep, timeStep, true);
}

void Clock::makeFrame(TimeStamp time, Real timeStep, bool runTasks)
{
  if (!m_enabled) return;
  moveOn(time, timeStep, runTasks);
  std::vector<Move> moved;
  moveSlaves(timeStep, runTasks, moved);
  while (!moved.empty()) {
    const Move next = std::move(moved.back());
    moved.pop_back();
    next.clock->moveSlaves(next.timeStep, runTasks, moved);
  }
}

void Clock::moveOn(TimeStamp time, Real timeStep, bool runTasks)
{
  m_time = time;
  m_timeStep = timeStep;
  ++m_frame;
  if (!runTasks) return;
  const auto tasks = m_tasks; // they may add and remove each other
  for (const ref_ptr<Task>& task : tasks) task->execute();
}

void Clock::moveSlaves(Real elapsed, bool runTasks, std::vector<Move>& moved) const
{
  const auto slaves = m_slaves;
  for (const ref_ptr<Clock>& slave : slaves) {
    if (slave->m_reference != this) continue; // a task has taken it away
    const Real periods = slave->takePeriods(elapsed);
    if (periods == 0) continue;
    const Real timeStep = periods * slave->m_modulation;
    slave->moveOn(slave->m_time + timeStep, timeStep, runTasks);
    moved.push_back({slave, timeStep});
  }
}

Real Clock::takePeriods(Real elapsed)
{
  if (!m_enabled || !std::isfinite(elapsed)) return 0;
  constexpr Real rounding = 1e-9; // of a period, for sums of steps that miss it
  m_waiting += elapsed;
  const Real periods = std::floor(m_waiting * m_frequency + rounding) / m_frequency;
  if (!(periods > 0)) return 0;
  const bool fits = std::isfinite(periods);
  m_waiting = fits ? m_waiting - periods : 0;
  return fits ? periods : 0;
}

void Clock::addFrameTask(Task* task)
{
  if (task && std::find(m_tasks.begin(), m_tasks.end(), task) == m_tasks.end()) m_tasks.emplace_back(task);
}

void Clock::removeFrameTask(Task* task) { std::erase(m_tasks, task); }

void Clock::addSlave(Clock* slave)
{
  if (!slave || slave->m_reference == this) return;
  for (const Clock* clock = this; clock; clock = clock->m_reference)
    if (clock == slave) return;
  const ref_ptr<Clock> keep(slave);
  if (slave->m_reference) slave->m_reference->removeSlave(slave);
  slave->m_reference = this;
  slave->m_waiting = 0;
  m_slaves.push_back(keep);
}

void Clock::removeSlave(Clock* slave)
{
  const auto found = std::find(m_slaves.begin(), m_slaves.end(), slave);
  if (found == m_slaves.end()) return;
  slave->m_reference = nullptr;
  m_slaves.erase(found);
}

void Clock::setFrequency(Real frequency)
{
  if (!(frequency > 0) || !std::isfinite(frequency)) return;
  m_frequency = frequency;
  m_timeStep = m_modulation / m_frequency;
}

void Clock::setTimeModulation(Real modulation)
{
  if (!(modulation >= 0) || !std::isfinite(modulation)) return;
  m_modulation = modulation;
  m_timeStep = m_modulation / m_frequency;
}

} // namespace kel
