#pragma once

#include <httplib.h>

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace imex::import_service {

/// Threads that each serve one connection at a time. They are started as they are needed, up to a greatest number; a
/// connection that finds them all at work is refused on the spot.
class Workers : public httplib::TaskQueue {
 public:
  /// Whether the task that runs on this thread is to refuse its connection.
  static bool isRefusing();

  explicit Workers(std::size_t greatestNumber) : m_greatestNumber(greatestNumber) {}

  void enqueue(std::function<void()> task) override;

  /// Waits for the tasks that are at work, and for those that wait.
  void shutdown() override;

 private:
  bool accept(std::function<void()>& task);
  void work();

  std::size_t m_greatestNumber;
  std::mutex m_mutex;
  std::condition_variable m_hasWork;
  std::deque<std::function<void()>> m_tasks;
  std::size_t m_atWork = 0; ///< tasks that wait or run
  bool m_isEnding = false;
  std::vector<std::thread> m_threads;
};

} // namespace imex::import_service
