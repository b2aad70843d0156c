#include "import_service/Server.h"

#include "apps/import_service/requests.h"
#include "import_service/ExitCode.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <thread>

namespace imex::import_service::test {

using imex::test::TemporaryFolder;

constexpr const char* kXml = "text/xml; charset=utf-8";
constexpr std::size_t kSmallBody = 2'000;

/// The service behind a real socket on the loopback address.
class ServerTest : public testing::Test {
 protected:
  ServerTest() { start(); }

  void start() {
    store.emplace(StoreUrl::parse("sqlite://" + (folder / "rows.db")));
    service.emplace(smallFormats(), Users{"agent1", "agent2"}, *store, [](const std::string&) {});
    server.emplace(*service, kSmallBody);
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

  TemporaryFolder folder;
  std::optional<Store> store;
  std::optional<ImportService> service;
  std::optional<Server> server;
};

TEST_F(ServerTest, bothRoads_reachTheSameStore) {
  EXPECT_EQ(element(send(customer("C1|ACME|")), "reply"), "1 line imported.");
  RequestParts parts = customer("C2|B|");
  parts.method = "importData";
  parts.userId = "agent2";
  EXPECT_EQ(element(send(parts), "reply"), "1 line imported.");
  EXPECT_EQ(health(), "{\"rows\":{\"CUSTOMERAGENT\":2},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, theUnsecuredAddress_takesBallasts) {
  RequestParts parts = customer("B1");
  parts.method = "importBallastsInstant";
  parts.space = "urn:UnsecuredImportExportService";
  parts.dataType = "BALLASTS";
  parts.dataOrigin = "HALVIK";
  EXPECT_EQ(element(send(parts, "/unsecured"), "reply"), "1 line imported.");
  EXPECT_EQ(element(send(parts, "/secured", 500), "faultcode"), "SOAP-ENV:Client");
}

TEST_F(ServerTest, anUnknownUser_isRefusedAndStoresNothing) {
  RequestParts parts = customer("C1|ACME|");
  parts.userId = "stranger";
  EXPECT_EQ(element(send(parts, "/secured", 500), "faultstring"), "The user \"stranger\" is not known.");
  EXPECT_EQ(health(), "{\"rows\":{},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, aBodyThatIsNoRequest_isAFault) {
  for (const char* body : {"", "hello", "<a/>", "{\"a\": 1}"}) {
    const httplib::Response response = post("/secured", body);
    EXPECT_EQ(response.status, 500) << body;
    EXPECT_EQ(element(response.body, "faultcode"), "SOAP-ENV:Client") << body;
  }
}

TEST_F(ServerTest, aRefusedImport_leavesTheStoreAsItWas) {
  send(customer("C1|ACME|"));
  RequestParts parts = customer("C2|B|");
  parts.lines.emplace_back("C3||");
  EXPECT_EQ(element(send(parts), "reply"), "Nothing was imported: 1 of 2 lines has errors.");
  EXPECT_EQ(health(), "{\"rows\":{\"CUSTOMERAGENT\":1},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, theStore_outlivesARestart) {
  send(customer("C1|ACME|"));
  restart();
  const std::string answer = send(customer("C1|ACME|"));
  EXPECT_EQ(element(answer, "warnings"),
            "<item>The record with Code \"C1\" is already stored and will be updated.</item>");
  EXPECT_EQ(health(), "{\"rows\":{\"CUSTOMERAGENT\":1},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, health_isJson) {
  const httplib::Result result = client().Get("/health");
  ASSERT_TRUE(result);
  EXPECT_EQ(result->status, 200);
  EXPECT_EQ(result->get_header_value("Content-Type"), "application/json");
  EXPECT_EQ(result->body, "{\"rows\":{},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, anotherPath_isNotFound) {
  const std::string text = "There is nothing here. Requests go to /secured and /unsecured.\n";
  httplib::Client http = client();
  for (const char* path : {"/", "/secured/", "/SECURED", "/health/x", "/a%0Ab"}) {
    EXPECT_EQ(http.Get(path)->status, 404) << path;
    EXPECT_EQ(http.Post(path, "<a/>", kXml)->status, 404) << path;
    EXPECT_EQ(http.Put(path, "<a/>", kXml)->status, 404) << path;
  }
  EXPECT_EQ(http.Get("/")->body, text);
}

TEST_F(ServerTest, anotherMethod_isNotAllowed) {
  httplib::Client http = client();
  const httplib::Result get = http.Get("/secured");
  EXPECT_EQ(get->status, 405);
  EXPECT_EQ(get->get_header_value("Allow"), "POST");
  EXPECT_EQ(get->body, "/secured takes POST.\n");
  EXPECT_EQ(http.Put("/unsecured", "<a/>", kXml)->status, 405);
  EXPECT_EQ(http.Patch("/unsecured", "<a/>", kXml)->status, 405);
  EXPECT_EQ(http.Delete("/unsecured")->status, 405);
  EXPECT_EQ(http.Options("/secured")->status, 405);
  const httplib::Result post = http.Post("/health", "<a/>", kXml);
  EXPECT_EQ(post->status, 405);
  EXPECT_EQ(post->get_header_value("Allow"), "GET, HEAD");
}

TEST_F(ServerTest, aConnectionThatIsKept_goesOnAfterARefusal) {
  httplib::Client http = client();
  http.set_keep_alive(true);
  EXPECT_EQ(http.Post("/elsewhere", requestXml(customer("C1|ACME|")), kXml)->status, 404);
  EXPECT_EQ(http.Post("/secured", "hello", kXml)->status, 500);
  EXPECT_EQ(http.Post("/secured", requestXml(customer("C1|ACME|")), kXml)->status, 200);
}

/// A good request of exactly this many bytes.
std::string requestOfSize(std::size_t size) {
  RequestParts parts;
  parts.lines = {"C1|ACME|"};
  parts.userName = "";
  parts.userName = std::string(size - requestXml(parts).size(), 'N');
  return requestXml(parts);
}

TEST_F(ServerTest, aBodyOfTheGreatestSize_isTaken) {
  EXPECT_EQ(post("/secured", requestOfSize(kSmallBody)).status, 200);
}

TEST_F(ServerTest, aLongerBody_isRefused) {
  const httplib::Response response = post("/secured", requestOfSize(kSmallBody + 1));
  EXPECT_EQ(response.status, 413);
  EXPECT_EQ(element(response.body, "faultcode"), "SOAP-ENV:Client");
  EXPECT_EQ(element(response.body, "faultstring"), "The request has more than 2000 bytes.");
  EXPECT_EQ(health(), "{\"rows\":{},\"status\":\"ok\"}\n");
}

httplib::Result postInChunks(httplib::Client http, const std::string& body) {
  return http.Post(
      "/secured",
      [body](std::size_t offset, httplib::DataSink& sink) {
        if (offset < body.size())
          sink.write(body.data() + offset, std::min<std::size_t>(300, body.size() - offset));
        else
          sink.done();
        return true;
      },
      kXml);
}

TEST_F(ServerTest, aBodyInChunks_isMeasuredTheSame) {
  EXPECT_EQ(postInChunks(client(), requestOfSize(kSmallBody))->status, 200);
  const httplib::Result longer = postInChunks(client(), requestOfSize(kSmallBody + 1));
  ASSERT_TRUE(longer);
  EXPECT_EQ(longer->status, 413);
  EXPECT_EQ(element(longer->body, "faultstring"), "The request has more than 2000 bytes.");
}

/// Sends these bytes and returns all that comes back until the server closes the connection.
std::string exchange(int port, const std::string& bytes) {
  const int connection = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  EXPECT_EQ(connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_EQ(send(connection, bytes.data(), bytes.size(), 0), static_cast<ssize_t>(bytes.size()));
  std::string answer;
  std::array<char, 1024> buffer{};
  for (ssize_t size = 1; size > 0; answer.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))))
    size = recv(connection, buffer.data(), buffer.size(), 0);
  close(connection);
  return answer;
}

TEST_F(ServerTest, aBodyThatCannotBeRead_isRefused) {
  const std::string answer = exchange(port(), "POST /secured HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n"
                                              "Transfer-Encoding: chunked\r\n\r\nno size\r\n");
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 400 ");
  EXPECT_EQ(element(answer, "faultstring"), "The body of the request cannot be read.");
}

TEST_F(ServerTest, clientsAtTheSameTime_areAllServed) {
  constexpr int kClients = 8;
  std::vector<std::thread> clients;
  clients.reserve(kClients);
  for (int i = 0; i < kClients; ++i)
    clients.emplace_back([this, i] {
      EXPECT_EQ(element(send(customer('C' + std::to_string(i) + "|ACME|")), "reply"), "1 line imported.");
    });
  for (std::thread& thread : clients)
    thread.join();
  EXPECT_EQ(health(), "{\"rows\":{\"CUSTOMERAGENT\":8},\"status\":\"ok\"}\n");
}

TEST_F(ServerTest, aPortInUse_isRefused) {
  const std::string url = server->url();
  Server second(*service);
  try {
    second.start("127.0.0.1", port());
    FAIL();
  } catch (const StartError& error) {
    EXPECT_EQ(error.code(), ExitCode::unavailable);
    EXPECT_EQ(error.what(), "Cannot listen at " + url + ": the address is in use or not of this machine.");
  }
}

TEST_F(ServerTest, afterAStop_nobodyAnswers) {
  const std::string url = server->url();
  server->stop();
  server->stop();
  EXPECT_FALSE(httplib::Client(url).Get("/health"));
}

} // namespace imex::import_service::test
