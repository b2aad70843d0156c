#include "Sink.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

namespace imex::bench {

namespace {

constexpr std::size_t kBlock = std::size_t{256} * 1024;
constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr std::string_view kLastChunk = "\r\n0\r\n\r\n";

void require(bool isGood, const char* what) {
  if (!isGood)
    throw std::runtime_error(what);
}

sockaddr_in loopback(int port) {
  sockaddr_in address = {};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

void sendAll(int socket, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0)
      return; // the other side has seen enough
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// What is known of a request while its bytes arrive.
struct Arrival {
  std::string head;
  std::string tail; ///< the last bytes
  std::size_t bodySize = 0;
  std::size_t expected = 0;
  bool isChunked = false;

  bool isHeadComplete() const { return head.find(kHeadEnd) != std::string::npos; }
  bool isComplete() const {
    return isHeadComplete() && (isChunked ? tail.ends_with(kLastChunk) : bodySize >= expected);
  }

  void take(std::string_view bytes) {
    if (!isHeadComplete()) {
      head += bytes;
      const std::size_t end = head.find(kHeadEnd);
      if (end == std::string::npos)
        return;
      bytes.remove_prefix(bytes.size() - (head.size() - end - kHeadEnd.size()));
      head.resize(end + kHeadEnd.size());
      isChunked = head.find("chunked") != std::string::npos;
      const std::size_t length = head.find("Content-Length: ");
      expected = length == std::string::npos ? 0 : std::strtoull(head.c_str() + length + 16, nullptr, 10);
    }
    bodySize += bytes.size();
    if (!isChunked)
      return;
    tail += bytes.substr(bytes.size() - std::min(bytes.size(), kLastChunk.size()));
    tail.erase(0, tail.size() - std::min(tail.size(), kLastChunk.size()));
  }
};

} // namespace

Sink::Sink(std::string_view answerBody)
    : m_answer("HTTP/1.1 200 OK\r\nContent-Type: text/xml; charset=utf-8\r\nConnection: close\r\nContent-Length: " +
               std::to_string(answerBody.size()) + "\r\n\r\n" + std::string(answerBody)),
      m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  auto* const generic = reinterpret_cast<sockaddr*>(&address);
  require(m_listener >= 0 && ::bind(m_listener, generic, size) == 0 && ::listen(m_listener, 16) == 0 &&
              ::getsockname(m_listener, generic, &size) == 0,
          "no port for the sink");
  m_port = ntohs(address.sin_port);
  m_thread = std::thread([this] { serve(); });
}

Sink::~Sink() {
  ::shutdown(m_listener, SHUT_RDWR);
  m_thread.join();
  ::close(m_listener);
}

void Sink::serve() {
  for (;;) {
    const int connection = ::accept(m_listener, nullptr, nullptr);
    if (connection < 0)
      return;
    answer(connection);
    ::close(connection);
  }
}

void Sink::answer(int connection) {
  static thread_local const auto buffer = std::make_unique<char[]>(kBlock);
  Arrival request;
  while (!request.isComplete()) {
    const ssize_t count = ::recv(connection, buffer.get(), kBlock, 0);
    if (count <= 0)
      return;
    request.take({buffer.get(), static_cast<std::size_t>(count)});
  }
  m_requestSize = request.head.size() + request.bodySize;
  sendAll(connection, m_answer);
  ::shutdown(connection, SHUT_WR);
}

std::string requestHead(std::size_t bodySize) {
  return "POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: text/xml; charset=utf-8\r\n"
         "SOAPAction: \"urn:ImportExportService\"\r\nContent-Length: " +
         std::to_string(bodySize) + "\r\n\r\n";
}

std::size_t exchangeRaw(int port, std::string_view head, std::string_view body) {
  static const auto buffer = std::make_unique<char[]>(kBlock);
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address = loopback(port);
  require(socket >= 0 && ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0,
          "no connection to the sink");
  sendAll(socket, head);
  sendAll(socket, body);
  std::size_t size = 0;
  for (ssize_t count = 1; count > 0; size += static_cast<std::size_t>(std::max<ssize_t>(count, 0)))
    count = ::recv(socket, buffer.get(), kBlock, 0);
  ::close(socket);
  return size;
}

} // namespace imex::bench
