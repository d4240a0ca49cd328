#include "solver/Workers.h"
#include <algorithm>

namespace kel {

Workers::~Workers() { resize(0); }

void Workers::run(std::size_t count, std::size_t numThreads, const Work& work)
{
  const std::size_t helpers = std::min(numThreads, count) > 1 ? numThreads - 1 : 0;
  if (helpers == 0) {
    for (std::size_t i = 0; i < count; ++i) work(i);
    return;
  }
  if (helpers != m_threads.size()) resize(helpers);
  {
    const std::lock_guard lock(m_mutex);
    m_work = &work;
    m_count = count;
    m_exception = nullptr;
    m_next = 0;
    m_busy = m_threads.size();
    ++m_round;
  }
  m_changed.notify_all();
  takeTurns();
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_busy == 0; });
  if (m_exception) std::rethrow_exception(m_exception);
}

void Workers::resize(std::size_t numThreads)
{
  {
    const std::lock_guard lock(m_mutex);
    m_stops = true;
  }
  m_changed.notify_all();
  for (std::thread& thread : m_threads) thread.join();
  m_threads.clear();
  m_stops = false;
  for (std::size_t i = 0; i < numThreads; ++i)
    m_threads.emplace_back([this, round = m_round] { waitForWork(round); });
}

void Workers::waitForWork(std::size_t round)
{
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_changed.wait(lock, [&] { return m_stops || m_round != round; });
    if (m_stops) return;
    round = m_round;
    lock.unlock();
    takeTurns();
    lock.lock();
    if (--m_busy == 0) m_changed.notify_all();
  }
}

void Workers::takeTurns()
{
  for (std::size_t i = m_next++; i < m_count; i = m_next++) {
    try {
      (*m_work)(i);
    } catch (...) {
      const std::lock_guard lock(m_mutex);
      if (!m_exception) m_exception = std::current_exception();
    }
  }
}

} // namespace kel
