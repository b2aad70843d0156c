#include "import_service/PacedStream.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>

namespace imex::import_service {

PacedStream::PacedStream(int socket, const Limits& limits) : m_socket(socket), m_limits(limits) {
  beginHead();
}

void PacedStream::beginHead() {
  m_in = {};
  m_head.clear();
  m_isInBody = false;
  m_greatestIn = m_limits.head;
}

/// A body that is too long is read on for as much again, so that its sender comes to read the answer.
void PacedStream::beginBody() {
  m_in = {};
  m_isInBody = true;
  m_greatestIn = 2 * m_limits.body + m_limits.head;
}

std::chrono::milliseconds PacedStream::timeLeft(const Traffic& traffic, bool growsWithBytes) const {
  const auto grown = growsWithBytes ? traffic.bytes * 1'000 / m_limits.leastBytesPerSecond : 0;
  const auto end = traffic.start + m_limits.patience + std::chrono::milliseconds(grown);
  return std::max(std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()), std::chrono::milliseconds(0));
}

bool PacedStream::waitFor(short event, std::chrono::milliseconds time) const {
  pollfd wanted{m_socket, event, 0};
  int ready = 0;
  do
    ready = poll(&wanted, 1, static_cast<int>(time.count()));
  while (ready < 0 && errno == EINTR);
  return ready > 0;
}

bool PacedStream::awaitRequest(std::chrono::milliseconds time) {
  return m_first < m_last || waitFor(POLLIN, time);
}

bool PacedStream::is_readable() const {
  return m_first < m_last || waitFor(POLLIN, readingTimeLeft());
}

bool PacedStream::is_writable() const {
  return waitFor(POLLOUT, m_limits.patience);
}

bool PacedStream::fill() {
  if (readingTimeLeft().count() == 0 || !is_readable())
    return false;
  const ssize_t size = recv(m_socket, m_buffer.data(), m_buffer.size(), 0);
  m_first = 0;
  m_last = static_cast<std::size_t>(std::max<ssize_t>(size, 0));
  return size > 0;
}

ssize_t PacedStream::read(char* bytes, std::size_t size) {
  m_isSpent = m_isSpent || m_in.bytes >= m_greatestIn || (m_first == m_last && !fill());
  if (m_isSpent)
    return -1;
  const std::size_t count = std::min({size, m_last - m_first, m_greatestIn - m_in.bytes});
  std::memcpy(bytes, m_buffer.data() + m_first, count);
  if (!m_isInBody)
    m_head.append(bytes, count);
  m_first += count;
  m_in.bytes += count;
  return static_cast<ssize_t>(count);
}

/// All of it or nothing: the library writes a body in one call and does not come back for the rest.
ssize_t PacedStream::write(const char* bytes, std::size_t size) {
  Traffic out;
  while (out.bytes < size) {
    const std::chrono::milliseconds time = timeLeft(out, true);
    if (time.count() == 0 || !waitFor(POLLOUT, time))
      return -1;
    const ssize_t count = send(m_socket, bytes + out.bytes, size - out.bytes, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EAGAIN && errno != EINTR)
      return -1;
    out.bytes += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return static_cast<ssize_t>(size);
}

void PacedStream::get_remote_ip_and_port(std::string&, int&) const {}

void PacedStream::get_local_ip_and_port(std::string&, int&) const {}

} // namespace imex::import_service
