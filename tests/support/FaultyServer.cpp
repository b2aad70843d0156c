#include "support/FaultyServer.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <stdexcept>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace imex::test {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr std::size_t kChunk = 7; // small, so that chunk borders fall inside of names and characters

class SocketStream : public Stream {
 public:
  explicit SocketStream(int socket) : m_socket(socket) {}

  std::size_t read(char* buffer, std::size_t size) override {
    ssize_t count = 0;
    do
      count = ::recv(m_socket, buffer, size, 0);
    while (count < 0 && errno == EINTR);
    return count < 0 ? 0 : static_cast<std::size_t>(count);
  }

  bool write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count < 0 && errno == EINTR)
        continue;
      if (count <= 0)
        return false;
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

 private:
  int m_socket;
};

[[noreturn]] void fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

bool equalsInAnyCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
  });
}

/// Waits until one of the descriptors has something to read or is closed; true for each that has.
template <std::size_t N>
std::array<bool, N> waitForAny(const std::array<int, N>& descriptors) {
  std::array<pollfd, N> polled{};
  for (std::size_t i = 0; i < N; ++i)
    polled[i] = {descriptors[i], POLLIN, 0};
  while (::poll(polled.data(), N, -1) < 0 && errno == EINTR) {
  }
  std::array<bool, N> ready{};
  for (std::size_t i = 0; i < N; ++i)
    ready[i] = polled[i].revents != 0;
  return ready;
}

std::string chunked(std::string_view body) {
  std::string text;
  for (std::size_t at = 0; at < body.size(); at += kChunk) {
    const std::string_view chunk = body.substr(at, kChunk);
    text.append(std::to_string(chunk.size())).append(kLineEnd).append(chunk).append(kLineEnd);
  }
  return text + "0\r\n\r\n";
}

/// Fills the request from its head, without the blank line.
void readHead(std::string_view head, FaultyServer::Request& request) {
  request.line = head.substr(0, head.find(kLineEnd));
  std::size_t begin = request.line.size() + kLineEnd.size();
  while (begin < head.size()) {
    const std::string_view line = head.substr(begin, head.find(kLineEnd, begin) - begin);
    const std::size_t colon = line.find(':');
    const std::size_t value = line.find_first_not_of(' ', colon + 1);
    request.headers.emplace_back(line.substr(0, colon), value == std::string_view::npos ? "" : line.substr(value));
    begin += line.size() + kLineEnd.size();
  }
}

/// Binds the socket to a free port of this machine and returns its number.
int bindToFreePort(const Descriptor& socket) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (::bind(socket.number(), generic, size) != 0 || ::getsockname(socket.number(), generic, &size) != 0)
    fail("no port");
  return ntohs(address.sin_port);
}

/// Closing the socket then throws away what was not yet delivered and tells the client so.
void resetOnClose(int socket) {
  const linger noLinger{1, 0};
  ::setsockopt(socket, SOL_SOCKET, SO_LINGER, &noLinger, sizeof noLinger);
}

} // namespace

std::unique_ptr<Stream> plainStream(int socket) {
  return std::make_unique<SocketStream>(socket);
}

// --- Descriptors ----------------------------------------------------------------------------------------------------

Descriptor::~Descriptor() {
  if (m_number >= 0)
    ::close(m_number);
}

ClosedPort::ClosedPort() : m_socket(::socket(AF_INET, SOCK_STREAM, 0)), m_number(bindToFreePort(m_socket)) {}

FaultyServer::Signal::Signal() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0)
    fail("no pipe");
  in = Descriptor(ends[1]);
  out = Descriptor(ends[0]);
}

void FaultyServer::Signal::raise() const {
  while (::write(in.number(), "!", 1) < 0 && errno == EINTR) {
  }
}

void FaultyServer::Signal::take() const {
  char byte = 0;
  while (::read(out.number(), &byte, 1) < 0 && errno == EINTR) {
  }
}

// --- Requests and answers -------------------------------------------------------------------------------------------

std::optional<std::string> FaultyServer::Request::header(std::string_view name) const {
  const auto found = std::find_if(headers.begin(), headers.end(),
                                  [&](const Header& header) { return equalsInAnyCase(header.first, name); });
  return found == headers.end() ? std::nullopt : std::optional(found->second);
}

std::string FaultyServer::Answer::bytes() const {
  if (raw)
    return *raw;
  std::string text = "HTTP/1.1 " + std::to_string(status) + " Answer\r\nConnection: close\r\n";
  if (!contentType.empty())
    text += "Content-Type: " + contentType + "\r\n";
  for (const Header& header : headers)
    text += header.first + ": " + header.second + "\r\n";
  if (framing == Framing::length)
    text += "Content-Length: " + std::to_string(announcedLength.value_or(body.size())) + "\r\n";
  if (framing == Framing::chunked)
    text += "Transfer-Encoding: chunked\r\n";
  return text + "\r\n" + (framing == Framing::chunked ? chunked(body) : body);
}

FaultyServer::Answer FaultyServer::ok(std::string body) {
  Answer answer;
  answer.body = std::move(body);
  return answer;
}

FaultyServer::Answer FaultyServer::soapFault(std::string_view text) {
  Answer answer;
  answer.status = 500;
  answer.body = R"(<?xml version="1.0" encoding="UTF-8"?>)"
                R"(<soap:Envelope xmlns:soap="http://schemas.xmlsoap.org/soap/envelope/"><soap:Body><soap:Fault>)"
                "<faultcode>soap:Server</faultcode><faultstring>" +
                std::string(text) + "</faultstring></soap:Fault></soap:Body></soap:Envelope>";
  return answer;
}

FaultyServer::Answer FaultyServer::page(int status, std::string html) {
  Answer answer;
  answer.status = status;
  answer.body = std::move(html);
  answer.contentType = "text/html";
  return answer;
}

// --- The server -----------------------------------------------------------------------------------------------------

FaultyServer::FaultyServer() : FaultyServer(Answer()) {}

FaultyServer::FaultyServer(Answer answer, MakeStream makeStream)
    : m_makeStream(std::move(makeStream)), m_answers({std::move(answer)}) {
  listen();
  m_thread = std::thread([this] { run(); });
}

FaultyServer::~FaultyServer() {
  {
    const std::lock_guard lock(m_mutex);
    m_isStopping = true;
    if (m_connection >= 0)
      ::shutdown(m_connection, SHUT_RDWR); // wakes the thread from reading and writing
  }
  m_stop.raise(); // wakes it from waiting
  m_thread.join();
}

void FaultyServer::answerWith(std::vector<Answer> answers) {
  const std::lock_guard lock(m_mutex);
  m_answers = std::move(answers);
}

void FaultyServer::release() {
  m_release.raise();
}

std::string FaultyServer::address(std::string_view path, std::string_view scheme) const {
  return std::string(scheme) + "://127.0.0.1:" + std::to_string(m_port) + std::string(path);
}

std::vector<FaultyServer::Request> FaultyServer::requests() const {
  const std::lock_guard lock(m_mutex);
  return m_requests;
}

std::vector<FaultyServer::Request> FaultyServer::waitForRequests(std::size_t count) const {
  std::unique_lock lock(m_mutex);
  m_arrived.wait(lock, [&] { return m_requests.size() >= count; });
  return m_requests;
}

void FaultyServer::listen() {
  m_listener = Descriptor(::socket(AF_INET, SOCK_STREAM, 0));
  m_port = bindToFreePort(m_listener);
  if (::listen(m_listener.number(), SOMAXCONN) != 0)
    fail("no listening socket");
}

void FaultyServer::run() {
  for (;;) {
    const auto [stop, client] = waitForAny<2>({m_stop.out.number(), m_listener.number()});
    if (stop)
      return;
    const Descriptor socket(client ? ::accept(m_listener.number(), nullptr, nullptr) : -1);
    if (socket.number() >= 0)
      serve(socket.number());
  }
}

void FaultyServer::serve(int socket) {
  {
    const std::lock_guard lock(m_mutex);
    if (m_isStopping)
      return;
    m_connection = socket;
  }
  const int noDelay = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &noDelay, sizeof noDelay);
  if (const std::unique_ptr<Stream> stream = m_makeStream(socket))
    reply(*stream, socket);
  const std::lock_guard lock(m_mutex);
  m_connection = -1;
}

void FaultyServer::reply(Stream& stream, int socket) {
  Request request;
  if (!receive(stream, request))
    return;
  const Answer answer = takeAnswer();
  {
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(std::move(request));
  }
  m_arrived.notify_all();

  const std::string whole = answer.bytes();
  const std::string_view bytes = std::string_view(whole).substr(0, answer.cutAfter.value_or(whole.size()));
  const std::size_t held = std::min(answer.holdAfter.value_or(bytes.size()), bytes.size());
  bool isOpen = send(stream, bytes.substr(0, held), answer);
  if (answer.holdAfter)
    isOpen = isOpen && waitForRelease(socket);
  isOpen = isOpen && send(stream, bytes.substr(held), answer);
  while (isOpen && answer.isEndless)
    isOpen = send(stream, answer.body, answer);
  if (answer.isReset)
    resetOnClose(socket);
}

bool FaultyServer::receive(Stream& stream, Request& request) const {
  std::string bytes;
  std::array<char, 16384> buffer{};
  const auto readMore = [&] {
    const std::size_t count = stream.read(buffer.data(), buffer.size());
    bytes.append(buffer.data(), count);
    return count != 0;
  };
  std::size_t headEnd = std::string::npos;
  while ((headEnd = bytes.find(kHeadEnd)) == std::string::npos)
    if (!readMore())
      return false;
  readHead(std::string_view(bytes).substr(0, headEnd), request);

  const std::size_t bodyBegin = headEnd + kHeadEnd.size();
  const std::size_t length = std::stoul(request.header("Content-Length").value_or("0"));
  while (bytes.size() < bodyBegin + length)
    if (!readMore())
      return false;
  request.body = bytes.substr(bodyBegin);
  return true;
}

bool FaultyServer::send(Stream& stream, std::string_view bytes, const Answer& answer) const {
  const std::size_t piece = answer.isDripped ? 1 : std::max<std::size_t>(bytes.size(), 1);
  bool isOpen = true;
  for (std::size_t at = 0; isOpen && at < bytes.size(); at += piece)
    isOpen = stream.write(bytes.substr(at, piece));
  return isOpen;
}

/// True where the answer may go on, false where the client is gone or the server ends.
bool FaultyServer::waitForRelease(int socket) const {
  const auto [stop, released, client] = waitForAny<3>({m_stop.out.number(), m_release.out.number(), socket});
  if (released)
    m_release.take();
  return released && !stop && !client;
}

FaultyServer::Answer FaultyServer::takeAnswer() {
  const std::lock_guard lock(m_mutex);
  Answer answer = m_answers.front();
  if (m_answers.size() > 1)
    m_answers.erase(m_answers.begin());
  return answer;
}

} // namespace imex::test
