#include "import_service/Server.h"

#include "import_service/AnswerWriter.h"
#include "import_service/BoundedServer.h"
#include "import_service/ExitCode.h"
#include "import_service/Fault.h"

#include <httplib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string_view>
#include <thread>
#include <utility>

namespace imex::import_service {

namespace {

constexpr int kBadRequest = 400;
constexpr int kNotFound = 404;
constexpr int kMethodNotAllowed = 405;
constexpr int kTooLarge = 413;

constexpr int kUnsupported = 415;
constexpr int kBusy = 503;

constexpr const char* kXml = "text/xml; charset=utf-8";
constexpr const char* kJson = "application/json";
constexpr const char* kText = "text/plain; charset=utf-8";
constexpr const char* kAnyPath = R"([\s\S]*)";

struct Resource {
  std::string_view path;
  const char* methods;
};

constexpr std::array<Resource, 3> kResources{{
    {kSecured.path, "POST"},
    {kUnsecured.path, "POST"},
    {"/health", "GET, HEAD"},
}};

void set(httplib::Response& response, Answer answer, const char* contentType) {
  response.status = answer.status;
  response.body = std::move(answer.body);
  response.set_header("Content-Type", contentType);
}

/// A share of the bytes that all bodies together may have, given back with the object.
class Share {
 public:
  Share(std::atomic<std::size_t>& used, std::size_t limit) : m_used(used), m_limit(limit) {}
  ~Share() { m_used -= m_own; }
  Share(const Share&) = delete;
  Share& operator=(const Share&) = delete;

  /// Takes more; false, and nothing is taken, where that would be too much.
  bool grow(std::size_t bytes) {
    if (m_used.fetch_add(bytes) + bytes > m_limit) {
      m_used -= bytes;
      return false;
    }
    m_own += bytes;
    return true;
  }

 private:
  std::atomic<std::size_t>& m_used;
  std::size_t m_limit;
  std::size_t m_own = 0;
};

std::string busyFault() {
  return writeFault({FaultCode::server, "Nothing was imported: the service is busy. Send the file again later."});
}

/// The whole answer to a connection that is one too many.
std::string busyAnswer() {
  const std::string body = busyFault();
  return "HTTP/1.1 503 Service Unavailable\r\nContent-Type: " + std::string(kXml) +
         "\r\nRetry-After: 1\r\nConnection: close\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
         body;
}

void refuse(const httplib::Request& request, httplib::Response& response) {
  const auto* found = std::find_if(kResources.begin(), kResources.end(),
                                   [&request](const Resource& resource) { return resource.path == request.path; });
  if (found == kResources.end()) {
    set(response, {kNotFound, "There is nothing here. Requests go to /secured and /unsecured.\n"}, kText);
    return;
  }
  response.set_header("Allow", found->methods);
  set(response, {kMethodNotAllowed, request.path + " takes " + found->methods + ".\n"}, kText);
}

/// A compressed body could be of any size when it is unpacked.
bool isEncoded(const httplib::Request& request) {
  const std::string encoding = request.get_header_value("Content-Encoding");
  return !encoding.empty() && encoding != "identity";
}

/// The body is read, so that the connection can be kept: the next request begins behind it.
void refuseWithBody(const httplib::Request& request, httplib::Response& response,
                    const httplib::ContentReader& readContent) {
  if (!isEncoded(request) && readContent([](const char*, std::size_t) { return true; }))
    BoundedServer::bodyIsRead();
  refuse(request, response);
}

/// The library's own default would let two servers share a port.
void setSocketOptions(socket_t socket) {
  const int yes = 1;
  setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

std::string urlOf(const std::string& host, int port) {
  const bool isIpv6 = host.find(':') != std::string::npos;
  return "http://" + (isIpv6 ? '[' + host + ']' : host) + ':' + std::to_string(port);
}

} // namespace

struct Server::Http {
  Http(ImportService& importService, const Limits& allLimits)
      : service(importService), limits(allLimits), server(limits, busyAnswer()) {}

  void route(const Endpoint& endpoint);
  void answer(const Endpoint& endpoint, const httplib::Request& request, httplib::Response& response,
              const httplib::ContentReader& readContent);
  void refuseBody(httplib::Response& response, int status) const;
  int bind(const std::string& host, int port);

  ImportService& service;
  Limits limits;
  std::atomic<std::size_t> bodies = 0; ///< bytes of all bodies that are at work
  BoundedServer server;
  std::thread thread;
  std::atomic<bool> hasEnded = false;
  std::string url;
};

void Server::Http::refuseBody(httplib::Response& response, int status) const {
  const auto fault = [&]() -> std::string {
    switch (status) {
    case kBusy:
      return busyFault();
    case kTooLarge:
      return writeFault(ClientFault("The request has more than " + std::to_string(limits.body) + " bytes."));
    case kUnsupported:
      return writeFault(ClientFault("The request must be sent without a content encoding."));
    default:
      return writeFault(ClientFault("The body of the request cannot be read."));
    }
  };
  set(response, {status, fault()}, kXml);
}

void Server::Http::answer(const Endpoint& endpoint, const httplib::Request& request, httplib::Response& response,
                          const httplib::ContentReader& readContent) {
  if (isEncoded(request))
    return refuseBody(response, kUnsupported);
  std::string body;
  Share share(bodies, limits.allBodies);
  int refusal = 0;
  const bool isWhole = readContent([&](const char* data, std::size_t size) {
    if (refusal == 0 && size > limits.body - body.size())
      refusal = kTooLarge;
    if (refusal == 0 && !share.grow(size))
      refusal = kBusy;
    if (refusal == 0)
      body.append(data, size);
    return true; // what is too much is read and dropped, so that the caller comes to read the answer
  });
  if (isWhole)
    BoundedServer::bodyIsRead();
  // The library reads past a body whose announced length is too large, and sets this status.
  if (response.status == kTooLarge)
    refusal = kTooLarge;
  if (refusal == 0 && !isWhole)
    refusal = kBadRequest;
  if (refusal == 0)
    set(response, service.answer(endpoint, std::move(body)), kXml);
  else
    refuseBody(response, refusal);
}

void Server::Http::route(const Endpoint& endpoint) {
  server.Post(std::string(endpoint.path), [this, endpoint](const httplib::Request& request, httplib::Response& response,
                                                           const httplib::ContentReader& readContent) {
    answer(endpoint, request, response, readContent);
  });
}

int Server::Http::bind(const std::string& host, int port) {
  if (port == 0)
    return server.bind_to_any_port(host);
  return server.bind_to_port(host, port) ? port : -1;
}

Server::Server(ImportService& service, const Limits& limits) : m_http(std::make_unique<Http>(service, limits)) {
  httplib::Server& server = m_http->server;
  server.set_socket_options(setSocketOptions);
  m_http->route(kSecured);
  m_http->route(kUnsecured);
  server.Get("/health", [&service](const httplib::Request&, httplib::Response& response) {
    set(response, service.health(), kJson);
  });
  // What matches none of the above comes here.
  server.Get(kAnyPath, refuse);
  server.Options(kAnyPath, refuse);
  server.Post(kAnyPath, refuseWithBody);
  server.Put(kAnyPath, refuseWithBody);
  server.Patch(kAnyPath, refuseWithBody);
  server.Delete(kAnyPath, refuseWithBody);
}

Server::~Server() {
  stop();
}

void Server::start(const std::string& host, int port) {
  const int bound = m_http->bind(host, port);
  if (bound < 0)
    throw StartError(ExitCode::unavailable,
                     "Cannot listen at " + urlOf(host, port) + ": the address is in use or not of this machine.");
  m_http->server.widenQueue();
  m_http->url = urlOf(host, bound);
  m_http->thread = std::thread([http = m_http.get()] {
    http->server.listen_after_bind();
    http->hasEnded = true;
  });
  while (!m_http->server.is_running() && !m_http->hasEnded)
    std::this_thread::yield();
}

const std::string& Server::url() const {
  return m_http->url;
}

void Server::stop() {
  if (!m_http->thread.joinable())
    return;
  m_http->server.stop();
  m_http->thread.join();
}

} // namespace imex::import_service
