#include "platform/soap/errors.h"

#include <curl/curl.h>
#include <gtest/gtest.h>

#include <limits>

namespace imex::platform {
namespace {

constexpr std::string_view kAddress = "https://service.example/secured";

struct Mapping {
  CURLcode code;
  int number;
  std::string_view description;
  std::int32_t timeout = 0;
};

const Mapping kMappings[] = {
    {CURLE_COULDNT_RESOLVE_HOST, 1001,
     "No connection to https://service.example/secured: the server's name is unknown"},
    {CURLE_COULDNT_RESOLVE_PROXY, 1001,
     "No connection to https://service.example/secured: the proxy's name is unknown"},
    {CURLE_COULDNT_CONNECT, 1001,
     "No connection to https://service.example/secured: nothing accepts connections there"},
    {CURLE_PROXY, 1001, "No connection to https://service.example/secured: Detail"},
    {CURLE_OPERATION_TIMEDOUT, 1002, "No complete answer from https://service.example/secured within the time-out", 1},
    {CURLE_OPERATION_TIMEDOUT, 1001, "No connection to https://service.example/secured: it cannot be reached: Detail"},
    {CURLE_SSL_CONNECT_ERROR, 1003, "No secure connection to https://service.example/secured: Detail"},
    {CURLE_PEER_FAILED_VERIFICATION, 1003, "No secure connection to https://service.example/secured: Detail"},
    {CURLE_SSL_CACERT_BADFILE, 1003, "No secure connection to https://service.example/secured: Detail"},
    {CURLE_SSL_CIPHER, 1003, "No secure connection to https://service.example/secured: Detail"},
    {CURLE_WEIRD_SERVER_REPLY, 1005, "The answer from https://service.example/secured is not an HTTP answer"},
    {CURLE_UNSUPPORTED_PROTOCOL, 1005, "The answer from https://service.example/secured is not an HTTP answer"},
    {CURLE_FILESIZE_EXCEEDED, 1007, "The answer from https://service.example/secured is too large: Detail"},
    {CURLE_GOT_NOTHING, 1009, "The connection to https://service.example/secured was closed without an answer"},
    {CURLE_SEND_ERROR, 1009, "The connection to https://service.example/secured was lost: Detail"},
    {CURLE_RECV_ERROR, 1009, "The answer from https://service.example/secured was cut off: Detail"},
    {CURLE_PARTIAL_FILE, 1009, "The answer from https://service.example/secured was cut off: Detail"},
    {CURLE_URL_MALFORMAT, 1010, "The address https://service.example/secured is not an http or https address"},
    {CURLE_OUT_OF_MEMORY, 7, "Out of memory"},
    {CURLE_FAILED_INIT, 51, "Internal error: Detail"},
};

TEST(SoapErrors, eachCodeOfTheLibrary_hasItsNumberAndText) {
  for (const Mapping& mapping : kMappings) {
    const RuntimeError error = curlError(mapping.code, kAddress, "Detail", mapping.timeout);
    EXPECT_EQ(error.number(), mapping.number) << mapping.description;
    EXPECT_EQ(error.description(), mapping.description);
    EXPECT_EQ(error.source(), "CurlTransport");
  }
}

TEST(SoapErrors, everyCodeOfTheLibrary_fits16BitsAndEndsWithoutAFullStop) {
  for (int code = 1; code < CURL_LAST; ++code) {
    const RuntimeError error = curlError(code, kAddress, "");
    EXPECT_GT(error.number(), 0) << code;
    EXPECT_LE(error.number(), std::numeric_limits<std::int16_t>::max()) << code;
    EXPECT_FALSE(error.description().empty()) << code;
    EXPECT_NE(error.description().back(), '.') << error.description();
  }
}

TEST(SoapErrors, detailOfTheLibrary_losesItsFullStopAndLineEnd) {
  EXPECT_EQ(curlError(CURLE_SSL_CONNECT_ERROR, "https://a/", "handshake failure.\n").description(),
            "No secure connection to https://a/: handshake failure");
}

TEST(SoapErrors, beginningOfAnAnswer_isOneLineOf80Characters) {
  EXPECT_EQ(notSoapError("What", "  one\r\n\ttwo\x01three \xFF ").description(), "What: \"one two three ?\"");
  EXPECT_EQ(notSoapError("What", std::string(80, 'x')).description(), "What: \"" + std::string(80, 'x') + '"');
  EXPECT_EQ(notSoapError("What", std::string(81, 'x')).description(), "What: \"" + std::string(80, 'x') + "...\"");
  std::string accents;
  for (int i = 0; i < 80; ++i)
    accents += "é";
  EXPECT_EQ(notSoapError("What", accents + "é").description(), "What: \"" + accents + "...\"");
  EXPECT_EQ(notSoapError("What", std::string(79, 'x') + " y").description(),
            "What: \"" + std::string(79, 'x') + "...\"");
}

} // namespace
} // namespace imex::platform
