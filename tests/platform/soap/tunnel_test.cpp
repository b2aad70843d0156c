#include "platform/soap/CurlTransport.h"

#include "platform/soap/TlsStream.h"
#include "platform/soap/failure.h"
#include "support/FaultyServer.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace imex::platform {
namespace {

using test::Certificate;
using test::failure;
using test::FaultyServer;
using test::MakeStream;
using Answer = FaultyServer::Answer;

constexpr std::string_view kAddress = "https://service.example/secured";

/// A proxy that opens a tunnel to whatever it is asked for, and at the tunnel's end a server with a certificate. Both
/// are at one port: the connection goes on as the server's once the proxy has agreed.
class Tunnel {
 public:
  explicit Tunnel(Answer answer, const std::string& name = "DNS:service.example")
      : m_certificate(name), m_server(std::move(answer), opened(m_certificate.makeStream())) {}

  /// What the server at the end answers to a client that trusts its certificate's authority.
  std::string exchange() { return exchange({.caFile = m_folder.write("ca.pem", m_certificate.pem())}); }

  std::string exchange(HttpOptions options) {
    CurlTransport transport(std::move(options));
    transport.SetProxy("localhost", port());
    transport.SOAPAction("urn:x");
    transport.send(kAddress, "<message/>");
    return transport.Receive("UTF-8");
  }

  std::string port() const { return std::to_string(m_server.port()); }
  std::string place() const { return std::string(kAddress) + " through the proxy localhost:" + port(); }
  const std::vector<std::string>& heads() const { return m_heads; }
  std::vector<FaultyServer::Request> requests() const { return m_server.requests(); }

 private:
  /// The streams of `inner`, each behind an exchange of the proxy's own.
  MakeStream opened(MakeStream inner) {
    return [this, inner = std::move(inner)](int socket) -> std::unique_ptr<test::Stream> {
      const auto plain = test::plainStream(socket);
      std::string head;
      for (char byte = 0; !head.ends_with("\r\n\r\n") && plain->read(&byte, 1) == 1;)
        head += byte;
      m_heads.push_back(head);
      plain->write("HTTP/1.1 200 Connection established\r\n\r\n");
      return inner(socket);
    };
  }

  test::TemporaryFolder m_folder;
  Certificate m_certificate;
  std::vector<std::string> m_heads; ///< what the proxy was told; written while a client waits
  FaultyServer m_server;
};

TEST(CurlTransportTunnel, answerOfTheServerBehindTheProxy_arrives) {
  Tunnel tunnel(FaultyServer::ok("the body"));
  EXPECT_EQ(tunnel.exchange(), "the body");
  const FaultyServer::Request request = tunnel.requests().at(0);
  EXPECT_EQ(request.line, "POST /secured HTTP/1.1");
  EXPECT_EQ(request.header("Host"), "service.example");
  EXPECT_EQ(request.body, "<message/>");
}

TEST(CurlTransportTunnel, proxy_isToldTheServersNameAndNothingOfTheMessage) {
  Tunnel tunnel(FaultyServer::ok("the body"));
  tunnel.exchange();
  ASSERT_EQ(tunnel.heads().size(), 1U);
  const std::string head = tunnel.heads()[0];
  EXPECT_TRUE(head.starts_with("CONNECT service.example:443 HTTP/1.1\r\n")) << head;
  for (const std::string_view word : {"secured", "urn:x", "SOAPAction", "message"})
    EXPECT_EQ(head.find(word), std::string::npos) << head;
}

TEST(CurlTransportTunnel, certificateOfAnUnknownAuthority_isRefused) {
  Tunnel tunnel(FaultyServer::ok("the body"));
  EXPECT_EQ(failure([&] { tunnel.exchange({}); }), "1003 CurlTransport: No secure connection to " + tunnel.place() +
                                                       ": SSL certificate problem: self-signed certificate");
  EXPECT_TRUE(tunnel.requests().empty());
}

TEST(CurlTransportTunnel, certificateOfTheProxyInThePlaceOfTheServers_isRefused) {
  Tunnel tunnel(FaultyServer::ok("the body"), "DNS:localhost");
  EXPECT_EQ(failure([&] { tunnel.exchange(); }),
            "1003 CurlTransport: No secure connection to " + tunnel.place() +
                ": SSL: no alternative certificate subject name matches target host name 'service.example'");
  EXPECT_TRUE(tunnel.requests().empty());
}

TEST(CurlTransportTunnel, errorStatusBehindTheProxy_isTheServers) {
  for (const int status : {407, 500, 502}) {
    Tunnel tunnel(FaultyServer::page(status, "<html>no</html>"));
    EXPECT_EQ(failure([&] { tunnel.exchange(); }), "1004 CurlTransport: The server answered with HTTP status " +
                                                       std::to_string(status) + " to a request for " + tunnel.place());
  }
}

TEST(CurlTransportTunnel, answerThatIsCutBehindTheProxy_isCutOff) {
  Answer answer = FaultyServer::ok("the body");
  answer.announcedLength = answer.body.size() + 3;
  Tunnel tunnel(answer);
  EXPECT_EQ(failure([&] { tunnel.exchange(); }), "1009 CurlTransport: The answer from " + tunnel.place() +
                                                     " was cut off: transfer closed with 3 bytes remaining to read");
}

TEST(CurlTransportTunnel, serverThatClosesWithoutAnAnswer_isCutOff) {
  Answer answer;
  answer.raw = "";
  Tunnel tunnel(answer);
  EXPECT_EQ(failure([&] { tunnel.exchange(); }),
            "1009 CurlTransport: The connection to " + tunnel.place() + " was closed without an answer");
}

} // namespace
} // namespace imex::platform
