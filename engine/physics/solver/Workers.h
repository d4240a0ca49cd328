#pragma once
#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace kel {

/// Threads that wait for work between steps. There are none before they are asked for.
class Workers
{
public:
  using Work = std::function<void(std::size_t)>;

  Workers() = default;
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;
  ~Workers();

  /// Calls `work` for each number below `count` once, in any order, on `numThreads` threads of which the
  /// caller's is one, and returns when all are done. Throws the first exception that `work` threw.
  void run(std::size_t count, std::size_t numThreads, const Work& work);

private:
  void resize(std::size_t numThreads);
  void waitForWork(std::size_t round);
  void takeTurns();

  std::vector<std::thread> m_threads;
  std::mutex m_mutex; // of all below but the atomic
  std::condition_variable m_changed;
  std::size_t m_round = 0; // of work
  std::size_t m_busy = 0;  // threads that have not ended the round
  bool m_stops = false;
  const Work* m_work = nullptr;
  std::size_t m_count = 0;
  std::exception_ptr m_exception;
  std::atomic<std::size_t> m_next = 0;
};

} // namespace kel
