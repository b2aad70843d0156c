#include "import_service/BoundedServer.h"

#include "import_service/Framing.h"
#include "import_service/PacedStream.h"
#include "import_service/Workers.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace imex::import_service {

namespace {

/// Short, because an idle connection delays the end of the server for as long.
constexpr std::chrono::seconds kIdleTime{1};

/// A connection serves this many requests, so that those who wait get their turn.
constexpr int kRequestsOfConnection = 100;

constexpr int kBadRequest = 400;

constexpr std::string_view kBadRequestLine =
    "HTTP/1.1 400 Bad Request\r\nConnection: close\r\nContent-Length: 0\r\n\r\n";

/// The library knows more methods, but answers them without reading their bodies, or keeps those in memory.
constexpr std::array<std::string_view, 7> kMethods{"GET", "HEAD", "POST", "PUT", "PATCH", "DELETE", "OPTIONS"};

/// The request that this thread answers.
struct Turn {
  int requestsLeft = 0; ///< that its connection may bring after it
  bool isLast = false;  ///< because there are none left, or the client wants so
  Framing framing = Framing::unsound;
  bool isReadToItsEnd = false; ///< what comes next on the connection begins another request
};

thread_local Turn turn;

/// What a connection may still send after its last answer.
constexpr std::size_t kGreatestRest = 1024UL * 1024;

/// Ends a connection so that the client comes to read the answer: closing it while bytes of the client are unread would
/// take the answer back. Waits for the client to close its side, but not for long.
void part(socket_t socket) {
  shutdown(socket, SHUT_WR);
  std::array<char, 4096> bytes{};
  const auto end = std::chrono::steady_clock::now() + kIdleTime;
  for (std::size_t dropped = 0; dropped < kGreatestRest;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd incoming{socket, POLLIN, 0};
    if (left.count() <= 0 || poll(&incoming, 1, static_cast<int>(left.count())) <= 0)
      return;
    const ssize_t size = recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (size <= 0)
      return;
    dropped += static_cast<std::size_t>(size);
  }
}

/// As above without waiting, for the thread that accepts connections.
void dropReceived(socket_t socket) {
  std::array<char, 4096> bytes{};
  for (int i = 0; i < 16 && recv(socket, bytes.data(), bytes.size(), MSG_DONTWAIT) > 0; ++i) {
  }
}

httplib::Server::HandlerResponse refuseUnsound(const httplib::Request& request, httplib::Response& response) {
  const bool hasHandlers = std::find(kMethods.begin(), kMethods.end(), request.method) != kMethods.end();
  if (turn.framing != Framing::unsound && hasHandlers)
    return httplib::Server::HandlerResponse::Unhandled;
  turn.isReadToItsEnd = false;
  response.status = kBadRequest;
  response.set_content("The request line or the headers are wrong.\n", "text/plain; charset=utf-8");
  return httplib::Server::HandlerResponse::Handled;
}

/// Takes from a request what would make the library do more than is wanted: wait for the end of the connection, answer
/// with a part, take a body apart by its type, ask for a body that will be refused.
void adapt(httplib::Request& request) {
  if (turn.framing == Framing::noBody)
    request.set_header("Content-Length", "0");
  if (turn.framing == Framing::unsound)
    request.headers.erase("Expect");
  request.headers.erase("Content-Type");
  request.ranges.clear();
}

/// The library would announce its own limits, which do not hold here.
void announceLimits(const httplib::Request&, httplib::Response& response) {
  response.headers.erase("Connection");
  response.headers.erase("Keep-Alive");
  response.headers.erase("Accept-Ranges");
  if (turn.isLast || !turn.isReadToItsEnd)
    response.set_header("Connection", "close");
  else
    response.set_header("Keep-Alive",
                        "timeout=" + std::to_string(kIdleTime.count()) + ", max=" + std::to_string(turn.requestsLeft));
}

} // namespace

BoundedServer::BoundedServer(const Limits& limits, std::string busy) : m_limits(limits), m_busy(std::move(busy)) {
  new_task_queue = [number = limits.connections] { return new Workers(number); };
  set_payload_max_length(limits.body);
  set_pre_routing_handler(refuseUnsound);
  set_post_routing_handler(announceLimits);
}

void BoundedServer::widenQueue() {
  ::listen(svr_sock_, static_cast<int>(m_limits.connections));
}

/// Of chunks, the library reads sizes that another reader may take for something else.
void BoundedServer::bodyIsRead() {
  turn.isReadToItsEnd = turn.framing != Framing::chunks;
}

bool BoundedServer::process_and_close_socket(socket_t socket) {
  if (Workers::isRefusing())
    refuse(socket);
  else
    serve(socket);
  shutdown(socket, SHUT_RDWR);
  close(socket);
  return true;
}

void BoundedServer::serve(socket_t socket) {
  PacedStream stream(socket, m_limits);
  bool goesOn = true;
  for (int left = kRequestsOfConnection; left > 0 && goesOn; --left) {
    // The first request may take its time, as far as its head may.
    const bool isFirst = left == kRequestsOfConnection;
    if (!stream.awaitRequest(isFirst ? m_limits.patience : kIdleTime) || svr_sock_ == INVALID_SOCKET)
      return;
    goesOn = answerRequest(stream, left - 1);
  }
  part(socket);
}

/// Whether another request may follow.
bool BoundedServer::answerRequest(PacedStream& stream, int requestsLeft) {
  turn = {requestsLeft};
  stream.beginHead();
  bool isClosed = false;
  const auto takeHead = [&](httplib::Request& request) {
    turn.isLast = isClosed || requestsLeft == 0;
    turn.framing = framingOf(stream.head());
    turn.isReadToItsEnd = turn.framing == Framing::noBody;
    stream.beginBody();
    adapt(request);
  };
  const bool isAnswered = process_request(stream, requestsLeft == 0, isClosed, takeHead);
  // Without a whole request line, the library gives up in silence.
  if (!stream.head().empty() && stream.head().find('\n') == std::string::npos)
    stream.write(kBadRequestLine.data(), kBadRequestLine.size());
  return isAnswered && !turn.isLast && turn.isReadToItsEnd && !stream.isSpent();
}

void BoundedServer::refuse(socket_t socket) const {
  send(socket, m_busy.data(), m_busy.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  shutdown(socket, SHUT_WR);
  dropReceived(socket);
}

} // namespace imex::import_service
