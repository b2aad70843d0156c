#include "apps/import_service/Connection.h"
#include "apps/import_service/ServerTest.h"
#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <ostream>
#include <sstream>

namespace imex::import_service::test {

constexpr const char* kClosed = "\r\nConnection: close\r\n";
const std::string kNoRows = "{\"rows\":{},\"status\":\"ok\"}\n";

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
    ++count;
  return count;
}

std::size_t answersIn(const std::string& text) {
  return countOf(text, "HTTP/1.1 ");
}

/// A whole import of a customer as it goes over the wire.
std::string wholeImport(const std::string& header = "Connection: close\r\n", const std::string& code = "C1") {
  RequestParts parts;
  parts.lines = {code + "|ACME|"};
  const std::string body = requestXml(parts);
  return "POST /secured HTTP/1.1\r\nHost: localhost\r\n" + header + "Content-Length: " + std::to_string(body.size()) +
         "\r\n\r\n" + body;
}

std::string asChunks(const std::string& body) {
  std::ostringstream text;
  text << std::hex << body.size() << "\r\n" << body << "\r\n0\r\n\r\n";
  return text.str();
}

/// What is sent in front of a whole import, and what it is answered with. In `head`, LENGTH is the import's size.
struct Carrier {
  std::string head;
  std::string status;
};

void PrintTo(const Carrier& carrier, std::ostream* out) {
  *out << carrier.head.substr(0, 100);
}

class HiddenImport : public ServerTest, public testing::WithParamInterface<Carrier> {};

TEST_P(HiddenImport, isNotRun) {
  std::string head = GetParam().head;
  while (head.find("LENGTH") != std::string::npos)
    head = replaced(head, "LENGTH", std::to_string(wholeImport().size()));
  const std::string answer = exchange(port(), head + wholeImport());
  EXPECT_EQ(answersIn(answer), 1U) << answer;
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 " + GetParam().status + ' ');
  EXPECT_NE(answer.find(kClosed), std::string::npos) << answer;
  EXPECT_EQ(answer.find("Keep-Alive"), std::string::npos) << answer;
  EXPECT_EQ(health(), kNoRows);
}

INSTANTIATE_TEST_SUITE_P(
    BehindAMethodWhoseBodyIsNotRead, HiddenImport,
    testing::Values(Carrier{"GET /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "200"},
                    Carrier{"HEAD /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "200"},
                    Carrier{"GET /secured HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "405"},
                    Carrier{"OPTIONS /secured HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "405"},
                    Carrier{"GET /elsewhere HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "404"},
                    Carrier{"TRACE /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "400"},
                    Carrier{"CONNECT /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "400"},
                    Carrier{"PRI /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "400"},
                    Carrier{"BREW /health HTTP/1.1\r\nContent-Length: LENGTH\r\n\r\n", "400"},
                    Carrier{"POST /secured HTTP/1.1\r\nContent-Encoding: gzip\r\nContent-Length: LENGTH\r\n\r\n",
                            "415"},
                    Carrier{"POST /other HTTP/1.1\r\nContent-Encoding: gzip\r\nContent-Length: LENGTH\r\n\r\n", "404"},
                    Carrier{"GET /health HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n" + asChunks(""), "200"},
                    Carrier{"DELETE /health HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n" + asChunks(""), "405"},
                    Carrier{"POST /health HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n" + asChunks(""), "405"},
                    Carrier{"POST /secured HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n" + asChunks("x"), "500"}));

INSTANTIATE_TEST_SUITE_P(
    BehindAnUnsoundHead, HiddenImport,
    testing::Values(
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: abc\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: 0x10\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: -1\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length:\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: 0\r\nContent-Length: LENGTH\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: LENGTH\r\nContent-Length: LENGTH\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length : LENGTH\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: LENGTH\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n\r\n",
                "400"},
        Carrier{"POST /secured HTTP/1.1\r\nContent-Length: 0\r\nTransfer-Encoding: xchunked\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.1\r\nTransfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n", "400"},
        Carrier{"POST /secured HTTP/1.0\r\nTransfer-Encoding: chunked\r\nConnection: Keep-Alive\r\n\r\n0\r\n\r\n",
                "400"},
        Carrier{"GET /health HTTP/1.1\r\nTransfer-Encoding:\r\n chunked\r\n\r\n0\r\n\r\n", "400"},
        Carrier{"GET /health HTTP/1.1\r\nX: y\nContent-Length: LENGTH\r\n\r\n", "400"},
        Carrier{"GET /health HTTP/1.1\r\nno header\r\n\r\n", "400"},
        Carrier{"GET /health HTTP/1.1\r\nRange: bytes=9-3\r\nContent-Length: LENGTH\r\n\r\n", "416"}));

/// The rest of what cannot be understood is not read as another request.
INSTANTIATE_TEST_SUITE_P(
    BehindALineThatIsNotUnderstood, HiddenImport,
    testing::Values(Carrier{"BREW / HTTP/1.1\r\n", "400"}, Carrier{"GET /health\r\n", "400"},
                    Carrier{"GET /health HTTP/9.9\r\n", "400"}, Carrier{"\r\n", "400"},
                    Carrier{"GET /health HTTP/1.1\n", "400"},
                    Carrier{"GET /health?" + std::string(8'200, 'x') + " HTTP/1.1\r\n\r\n", "414"},
                    Carrier{"GET /health HTTP/1.1\r\nX: " + std::string(8'200, 'x') + "\r\n\r\n", "400"},
                    Carrier{"GET /health HTTP/1.1\r\nX: " + std::string(70'000, 'x') + "\r\n\r\n", "400"},
                    Carrier{"GET /" + std::string(70'000, 'x') + " HTTP/1.1\r\n\r\n", "400"}));

using HostileClientTest = ServerTest;

TEST_F(HostileClientTest, anUnsoundHead_isNotAskedForItsBody) {
  const std::string answer = exchange(
      port(), "POST /secured HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 5\r\nContent-Length: 6\r\n\r\n");
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 400 ");
  EXPECT_EQ(answer.substr(answer.find("\r\n\r\n") + 4), "The request line or the headers are wrong.\n");
}

TEST_F(HostileClientTest, aLengthThatNoNumberHolds_isTooLarge) {
  const std::string head = "POST /secured HTTP/1.1\r\nContent-Length: " + std::string(40, '9') + "\r\n\r\n";
  // So much of it is read, for the caller to come to read the answer.
  const std::string answer = exchange(port(), head + std::string(2 * kSmallBody + limits.head, 'x'));
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 413 ");
  EXPECT_EQ(element(answer, "faultstring"), "The request has more than 2000 bytes.");
  EXPECT_EQ(health(), kNoRows);
}

TEST_F(HostileClientTest, aPostWithoutALength_hasAnEmptyBody) {
  const std::string fault = "The request is not well-formed XML: no element at byte 0.";
  for (const std::string header : {"", "Content-Length: 0\r\n"}) {
    const std::string post = "POST /secured HTTP/1.1\r\n" + header + "\r\n";
    const std::string code = header.empty() ? "C1" : "C2";
    const std::string answers = exchange(port(), post + post + wholeImport("Connection: close\r\n", code));
    EXPECT_EQ(answersIn(answers), 3U) << answers;
    EXPECT_EQ(elements(answers, "faultstring"), (std::vector<std::string>{fault, fault}));
    EXPECT_EQ(element(answers, "reply"), "1 line imported.");
  }
  for (const char* method : {"PUT", "PATCH", "DELETE"})
    EXPECT_EQ(exchange(port(), std::string(method) + " /secured HTTP/1.1\r\nConnection: close\r\n\r\n").substr(0, 13),
              "HTTP/1.1 405 ");
}

TEST_F(HostileClientTest, aRange_isIgnored) {
  const std::string answer = exchange(port(), wholeImport("Range: bytes=0-20\r\nConnection: close\r\n"));
  EXPECT_EQ(answer.substr(0, 13), "HTTP/1.1 200 ");
  EXPECT_EQ(element(answer, "reply"), "1 line imported.");
  const std::string rows =
      exchange(port(), "GET /health HTTP/1.1\r\nRange: bytes=0-3,5-6\r\nConnection: close\r\n\r\n");
  EXPECT_EQ(rows.substr(rows.find("\r\n\r\n") + 4), health());
}

TEST_F(HostileClientTest, theTypeOfABody_isIgnored) {
  int number = 0;
  for (const std::string type :
       {"multipart/form-data", "multipart/form-data; boundary=x", "application/x-www-form-urlencoded"}) {
    const std::string header = "Connection: close\r\nContent-Type: " + type + "\r\n";
    const std::string answer = exchange(port(), wholeImport(header, 'C' + std::to_string(++number)));
    EXPECT_EQ(element(answer, "reply"), "1 line imported.") << type;
  }
}

TEST_F(HostileClientTest, aConnection_announcesWhatItTakesAndTakesIt) {
  std::string requests;
  for (int i = 0; i < 101; ++i)
    requests += "GET /health HTTP/1.1\r\n\r\n";
  const std::string answers = exchange(port(), requests);
  EXPECT_EQ(answersIn(answers), 100U);
  EXPECT_EQ(countOf(answers, "\r\nKeep-Alive: timeout=1, max="), 99U);
  for (int left = 1; left < 100; ++left)
    EXPECT_EQ(countOf(answers, "\r\nKeep-Alive: timeout=1, max=" + std::to_string(left) + "\r\n"), 1U) << left;
  EXPECT_EQ(countOf(answers, kClosed), 1U);
  EXPECT_LT(answers.find("max=1\r\n"), answers.find(kClosed));
}

TEST_F(HostileClientTest, aConnectionThatIsNotKept_saysSo) {
  for (const char* request : {"GET /health HTTP/1.0\r\n\r\n", "GET /health HTTP/1.1\r\nConnection: close\r\n\r\n"}) {
    const std::string answer = exchange(port(), request);
    EXPECT_EQ(countOf(answer, kClosed), 1U) << answer;
    EXPECT_EQ(countOf(answer, "Keep-Alive"), 0U) << answer;
  }
}

} // namespace imex::import_service::test
