#pragma once

#include "apps/import_service/requests.h"
#include "import_service/Server.h"
#include "import_service/Store.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <cstddef>
#include <optional>
#include <string>

namespace imex::import_service::test {

inline constexpr const char* kXml = "text/xml; charset=utf-8";
inline constexpr std::size_t kSmallBody = 2'000;

/// The service behind a real socket on the loopback address.
class ServerTest : public testing::Test {
 protected:
  ServerTest() { start(); }

  void start() {
    store.emplace(StoreUrl::parse("sqlite://" + (folder / "rows.db")));
    service.emplace(smallFormats(), Users{"agent1", "agent2"}, *store, [](const std::string&) {});
    server.emplace(*service, limits);
    server->start("127.0.0.1", 0);
  }

  void restart() {
    server.reset();
    service.reset();
    store.reset();
    start();
  }

  int port() const { return std::stoi(server->url().substr(server->url().rfind(':') + 1)); }

  httplib::Client client() const { return httplib::Client(server->url()); }

  httplib::Response post(const std::string& path, const std::string& body) const {
    const httplib::Result result = client().Post(path, body, kXml);
    EXPECT_TRUE(result) << to_string(result.error());
    return result ? result.value() : httplib::Response();
  }

  std::string send(const RequestParts& parts, const std::string& path = "/secured", int status = 200) const {
    const httplib::Response response = post(path, requestXml(parts));
    EXPECT_EQ(response.status, status);
    EXPECT_EQ(response.get_header_value("Content-Type"), kXml);
    return response.body;
  }

  std::string health() const { return client().Get("/health")->body; }

  static RequestParts customer(const std::string& line) {
    RequestParts parts;
    parts.lines = {line};
    return parts;
  }

  static Limits smallLimits() {
    Limits limits;
    limits.body = kSmallBody;
    return limits;
  }

  Limits limits = smallLimits();
  imex::test::TemporaryFolder folder;
  std::optional<Store> store;
  std::optional<ImportService> service;
  std::optional<Server> server;
};

} // namespace imex::import_service::test
