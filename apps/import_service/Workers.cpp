#include "import_service/Workers.h"

#include <utility>

namespace imex::import_service {

namespace {

thread_local bool isThreadRefusing = false;

} // namespace

bool Workers::isRefusing() {
  return isThreadRefusing;
}

void Workers::enqueue(std::function<void()> task) {
  if (accept(task)) {
    m_hasWork.notify_one();
    return;
  }
  isThreadRefusing = true;
  task();
  isThreadRefusing = false;
}

bool Workers::accept(std::function<void()>& task) {
  const std::lock_guard lock(m_mutex);
  if (m_atWork >= m_greatestNumber)
    return false;
  m_tasks.push_back(std::move(task));
  if (++m_atWork > m_threads.size())
    m_threads.emplace_back([this] { work(); });
  return true;
}

void Workers::work() {
  std::unique_lock lock(m_mutex);
  for (;;) {
    m_hasWork.wait(lock, [this] { return m_isEnding || !m_tasks.empty(); });
    if (m_tasks.empty())
      return;
    const std::function<void()> task = std::move(m_tasks.front());
    m_tasks.pop_front();
    lock.unlock();
    task();
    lock.lock();
    --m_atWork;
  }
}

void Workers::shutdown() {
  {
    const std::lock_guard lock(m_mutex);
    m_isEnding = true;
  }
  m_hasWork.notify_all();
  for (std::thread& thread : m_threads)
    thread.join();
}

} // namespace imex::import_service
