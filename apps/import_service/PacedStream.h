#pragma once

#include "import_service/Limits.h"

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

namespace imex::import_service {

/// The bytes of one request and its answer on a socket, against the clock: the head has `patience`, the body
/// `patience` and a second for every `leastBytesPerSecond`, and so has the answer. When the time is over, or when the
/// client has sent more than the limits allow, reading and writing fail, and the server gives the connection up.
///
/// The socket is the caller's. What was read behind the end of a request is kept for the next one.
class PacedStream : public httplib::Stream {
 public:
  PacedStream(int socket, const Limits& limits);

  /// Waits for the first byte of another request; false where none comes in this time.
  bool awaitRequest(std::chrono::milliseconds time);

  /// The clock and the count begin anew with a request's head, its body.
  void beginHead();
  void beginBody();

  /// The head as it came, as far as it has been read.
  const std::string& head() const { return m_head; }

  /// Whether a read has failed or the limit of bytes is reached: what comes next on the socket is no new request.
  bool isSpent() const { return m_isSpent; }

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* bytes, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return m_socket; }

 private:
  using Clock = std::chrono::steady_clock;

  /// A direction of the traffic.
  struct Traffic {
    Clock::time_point start = Clock::now();
    std::size_t bytes = 0;
  };

  std::chrono::milliseconds timeLeft(const Traffic& traffic, bool growsWithBytes) const;
  bool waitFor(short event, std::chrono::milliseconds time) const;
  std::chrono::milliseconds readingTimeLeft() const { return timeLeft(m_in, m_isInBody); }
  bool fill();

  int m_socket;
  const Limits& m_limits;
  bool m_isInBody = false;
  bool m_isSpent = false;
  Traffic m_in;
  std::string m_head;
  std::size_t m_greatestIn = 0;
  std::array<char, 16UL * 1024> m_buffer{};
  std::size_t m_first = 0;
  std::size_t m_last = 0;
};

} // namespace imex::import_service
