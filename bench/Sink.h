#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <thread>

namespace imex::bench {

/// An HTTP server on this machine that swallows each request, its body sized or in chunks, and gives one answer. It
/// runs in a thread of its own and takes one connection after the other.
class Sink {
 public:
  explicit Sink(std::string_view answerBody);
  ~Sink();
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  int port() const { return m_port; }
  std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/"; }
  /// The size of the last request, with its head.
  std::size_t requestSize() const { return m_requestSize; }

 private:
  void serve();
  void answer(int connection);

  std::string m_answer;
  int m_listener;
  int m_port;
  std::atomic<std::size_t> m_requestSize = 0;
  std::thread m_thread;
};

/// The head that a finished request of this size is sent with.
std::string requestHead(std::size_t bodySize);

/// Sends a finished request over a connection of its own and takes the whole answer, which is not kept. Returns the
/// number of bytes of the answer.
std::size_t exchangeRaw(int port, std::string_view head, std::string_view body);

} // namespace imex::bench
