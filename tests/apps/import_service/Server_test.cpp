#include "import_service/Server.h"

#include "apps/import_service/Connection.h"
#include "apps/import_service/ServerTest.h"
#include "apps/import_service/requests.h"
#include "import_service/ExitCode.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <algorithm>
#include <optional>
#include <thread>

namespace imex::import_service::test {

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

TEST_F(ServerTest, aBodyThatCannotBeRead_isRefused) {
  const std::string answer = exchange(port(), "POST /secured HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n"
                                              "Transfer-Encoding: chunked\r\n\r\nno size\r\n");
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 400 ");
  EXPECT_EQ(element(answer, "faultstring"), "The body of the request cannot be read.");
}

TEST_F(ServerTest, aBodyInAContentEncoding_isRefusedUnread) {
  const std::string head =
      " HTTP/1.1\r\nHost: localhost\r\nContent-Encoding: gzip\r\nContent-Length: 5\r\n\r\n\x1F\x8B...";
  const std::string answer = exchange(port(), "POST /secured" + head);
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 415 ");
  EXPECT_EQ(element(answer, "faultstring"), "The request must be sent without a content encoding.");
  EXPECT_EQ(exchange(port(), "POST /elsewhere" + head).substr(0, 13), "HTTP/1.1 404 ");
}

TEST_F(ServerTest, theHead_isLimited) {
  limits.head = 500;
  restart();
  const std::string start = "GET /health HTTP/1.1\r\nConnection: close\r\nX: ";
  const std::string end = "\r\n\r\n";
  const auto answerTo = [&](std::size_t size) {
    return exchange(port(), start + std::string(size - start.size() - end.size(), 'x') + end).substr(0, 13);
  };
  EXPECT_EQ(answerTo(499), "HTTP/1.1 200 ");
  EXPECT_EQ(answerTo(500), "HTTP/1.1 200 ");
  EXPECT_EQ(answerTo(501), "HTTP/1.1 400 ");
}

TEST_F(ServerTest, aBodyWithoutEnd_isGivenUp) {
  const Connection connection(port());
  connection.send("POST /secured HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n");
  const std::string chunk = "400\r\n" + std::string(0x400, 'x') + "\r\n";
  while (connection.send(chunk)) {
  }
  EXPECT_TRUE(client().Get("/health"));
}

TEST_F(ServerTest, bodiesTogether_areLimited) {
  const std::string request = requestOfSize(1'000);
  for (const std::size_t limit : {999U, 1'000U, 1'001U}) {
    limits.allBodies = limit;
    restart();
    const httplib::Response response = post("/secured", request);
    EXPECT_EQ(response.status, limit < 1'000 ? 503 : 200) << limit;
    if (limit < 1'000) {
      EXPECT_EQ(element(response.body, "faultstring"),
                "Nothing was imported: the service is busy. Send the file again later.");
    }
  }
}

TEST_F(ServerTest, aConnectionTooMany_isTurnedAwayUntilOneEnds) {
  limits.connections = 2;
  restart();
  const Connection first(port());
  std::optional<Connection> second(port());
  const std::string busy = Connection(port()).rest();
  EXPECT_EQ(busy.substr(0, 34), "HTTP/1.1 503 Service Unavailable\r\n");
  EXPECT_EQ(element(busy, "faultcode"), "SOAP-ENV:Server");
  EXPECT_EQ(element(busy, "faultstring"), "Nothing was imported: the service is busy. Send the file again later.");
  second.reset();
  httplib::Result answer = client().Get("/health");
  while (!answer || answer->status == 503)
    answer = client().Get("/health");
  EXPECT_EQ(answer->status, 200);
}

/// A client that sends a little now and then, for ever.
class SlowClientTest : public ServerTest {
 protected:
  SlowClientTest() {
    limits.patience = std::chrono::milliseconds(200);
    limits.connections = 1;
    restart();
  }

  /// The one connection that there is can be had again.
  void expectToBeServed() const {
    httplib::Result answer = client().Get("/health");
    while (!answer || answer->status == 503)
      answer = client().Get("/health");
    EXPECT_EQ(answer->status, 200);
  }
};

TEST_F(SlowClientTest, thatSendsNothing_isCutOff) {
  EXPECT_EQ(Connection(port()).rest(), "");
  expectToBeServed();
}

TEST_F(SlowClientTest, inTheHead_isCutOff) {
  const Connection connection(port());
  connection.send("GET /health HTTP/1.1\r\nX: ");
  connection.dribble(std::string(1'900, 'x'));
  EXPECT_EQ(connection.rest().substr(0, 13), "HTTP/1.1 400 ");
  expectToBeServed();
}

TEST_F(SlowClientTest, inTheRequestLine_isToldAndCutOff) {
  const Connection connection(port());
  connection.send("GET /hea");
  EXPECT_EQ(connection.rest(), "HTTP/1.1 400 Bad Request\r\nConnection: close\r\nContent-Length: 0\r\n\r\n");
  expectToBeServed();
}

TEST_F(SlowClientTest, inTheBody_isToldAndCutOff) {
  const Connection connection(port());
  connection.send("POST /secured HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1999\r\n\r\n");
  connection.dribble(std::string(1'900, 'x'));
  const std::string answer = connection.rest();
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 400 ");
  EXPECT_EQ(element(answer, "faultstring"), "The body of the request cannot be read.");
  expectToBeServed();
}

TEST_F(SlowClientTest, thatKeepsItsPace_isServed) {
  limits.leastBytesPerSecond = 1;
  restart();
  const std::string body = requestOfSize(900);
  const Connection connection(port());
  connection.send("POST /secured HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\nContent-Length: 900\r\n\r\n");
  // Each byte earns a second; together they take far longer than the patience.
  connection.dribble(body);
  EXPECT_EQ(connection.rest().substr(0, 13), "HTTP/1.1 200 ");
}

TEST_F(SlowClientTest, thatDoesNotTakeItsAnswer_isCutOff) {
  limits.body = 16UL * 1024 * 1024;
  limits.leastBytesPerSecond = 1'000'000'000;
  restart();
  RequestParts parts;
  parts.lines.assign(200'000, "C1|A");
  const std::string body = requestXml(parts);
  const Connection connection(port());
  connection.send("POST /secured HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(body.size()) +
                  "\r\n\r\n" + body);
  expectToBeServed();
}

TEST_F(ServerTest, clientsAtTheSameTime_areAllServed) {
  constexpr int kClients = 64;
  std::vector<std::thread> clients;
  clients.reserve(kClients);
  for (int i = 0; i < kClients; ++i)
    clients.emplace_back([this, i] {
      EXPECT_EQ(element(send(customer('C' + std::to_string(i) + "|ACME|")), "reply"), "1 line imported.");
    });
  for (std::thread& thread : clients)
    thread.join();
  EXPECT_EQ(health(), "{\"rows\":{\"CUSTOMERAGENT\":64},\"status\":\"ok\"}\n");
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
