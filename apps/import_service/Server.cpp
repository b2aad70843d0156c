#include "import_service/Server.h"

#include "import_service/AnswerWriter.h"
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

constexpr std::time_t kReadSeconds = 30;
/// Short, because an idle connection delays stop() for as long.
constexpr std::time_t kKeepAliveSeconds = 1;

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

/// A body must be read before it is refused: the next request on the connection begins behind it.
void refuseWithBody(const httplib::Request& request, httplib::Response& response,
                    const httplib::ContentReader& readContent) {
  readContent([](const char*, std::size_t) { return true; });
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
  Http(ImportService& importService, std::size_t limit) : service(importService), greatestBody(limit) {}

  void route(const Endpoint& endpoint);
  void answer(const Endpoint& endpoint, httplib::Response& response, const httplib::ContentReader& readContent);
  void refuseBody(httplib::Response& response, bool isTooLarge) const;
  int bind(const std::string& host, int port);

  ImportService& service;
  std::size_t greatestBody;
  httplib::Server server;
  std::thread thread;
  std::atomic<bool> hasEnded = false;
  std::string url;
};

void Server::Http::refuseBody(httplib::Response& response, bool isTooLarge) const {
  const std::string limit = std::to_string(greatestBody);
  const ClientFault fault(isTooLarge ? "The request has more than " + limit + " bytes."
                                     : "The body of the request cannot be read.");
  set(response, {isTooLarge ? kTooLarge : kBadRequest, writeFault(fault)}, kXml);
}

void Server::Http::answer(const Endpoint& endpoint, httplib::Response& response,
                          const httplib::ContentReader& readContent) {
  std::string body;
  bool isTooLarge = false;
  const bool isWhole = readContent([&](const char* data, std::size_t size) {
    isTooLarge = isTooLarge || size > greatestBody - body.size();
    if (!isTooLarge)
      body.append(data, size);
    return true; // what is too much is read and dropped, so that the caller comes to read the answer
  });
  // The library reads past a body whose announced length is too large, and sets this status.
  isTooLarge = isTooLarge || response.status == kTooLarge;
  if (isWhole && !isTooLarge)
    set(response, service.answer(endpoint, std::move(body)), kXml);
  else
    refuseBody(response, isTooLarge);
}

void Server::Http::route(const Endpoint& endpoint) {
  server.Post(std::string(endpoint.path),
              [this, endpoint](const httplib::Request&, httplib::Response& response,
                               const httplib::ContentReader& readContent) { answer(endpoint, response, readContent); });
}

int Server::Http::bind(const std::string& host, int port) {
  if (port == 0)
    return server.bind_to_any_port(host);
  return server.bind_to_port(host, port) ? port : -1;
}

Server::Server(ImportService& service, std::size_t greatestBody)
    : m_http(std::make_unique<Http>(service, greatestBody)) {
  httplib::Server& server = m_http->server;
  server.set_payload_max_length(greatestBody);
  server.set_read_timeout(kReadSeconds);
  server.set_keep_alive_timeout(kKeepAliveSeconds);
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
