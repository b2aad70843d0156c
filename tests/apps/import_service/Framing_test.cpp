#include "import_service/Framing.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace imex::import_service::test {

/// The framing of a request line of this version with these headers.
Framing framing(const std::string& headers, const std::string& version = "1.1") {
  return framingOf("POST /secured HTTP/" + version + "\r\n" + headers + "\r\n");
}

TEST(Framing, withoutAHeaderOfItsLength_thereIsNoBody) {
  EXPECT_EQ(framing(""), Framing::noBody);
  EXPECT_EQ(framing("Host: a\r\nSOAPAction: \r\nX:\r\nY:\ta\t\r\n"), Framing::noBody);
  EXPECT_EQ(framing("Content-Length: 0\r\n"), Framing::noBody);
  EXPECT_EQ(framing("Content-Length: 000\r\n"), Framing::noBody);
}

TEST(Framing, oneHeaderOfItsLength_saysWhereItEnds) {
  EXPECT_EQ(framing("Content-Length: 5\r\n"), Framing::length);
  EXPECT_EQ(framing("Host: a\r\ncontent-LENGTH:\t 050 \t\r\nX: y\r\n"), Framing::length);
  EXPECT_EQ(framing("Content-Length: 5\r\n", "1.0"), Framing::length);
  EXPECT_EQ(framing("Transfer-Encoding: chunked\r\n"), Framing::chunks);
  EXPECT_EQ(framing("transfer-encoding:Chunked\r\n"), Framing::chunks);
}

struct UnsoundHead {
  const char* what;
  std::string headers;
};

void PrintTo(const UnsoundHead& head, std::ostream* out) {
  *out << head.what;
}

class FramingIsUnsound : public testing::TestWithParam<UnsoundHead> {};

TEST_P(FramingIsUnsound, ofThisHead) {
  EXPECT_EQ(framing(GetParam().headers), Framing::unsound);
  EXPECT_EQ(framing("Host: a\r\n" + GetParam().headers), Framing::unsound);
}

INSTANTIATE_TEST_SUITE_P(
    Framing, FramingIsUnsound,
    testing::Values(
        UnsoundHead{"letters", "Content-Length: abc\r\n"}, UnsoundHead{"hex", "Content-Length: 0x10\r\n"},
        UnsoundHead{"letters behind", "Content-Length: 5a\r\n"}, UnsoundHead{"plus", "Content-Length: +5\r\n"},
        UnsoundHead{"minus", "Content-Length: -1\r\n"}, UnsoundHead{"decimals", "Content-Length: 5.0\r\n"},
        UnsoundHead{"two numbers", "Content-Length: 5 5\r\n"}, UnsoundHead{"list", "Content-Length: 5, 5\r\n"},
        UnsoundHead{"percent-encoded", "Content-Length: %35\r\n"}, UnsoundHead{"empty length", "Content-Length:\r\n"},
        UnsoundHead{"blank length", "Content-Length: \t \r\n"},
        UnsoundHead{"two lengths", "Content-Length: 5\r\nX: y\r\ncontent-length: 6\r\n"},
        UnsoundHead{"equal lengths", "Content-Length: 5\r\nContent-Length: 5\r\n"},
        UnsoundHead{"length and chunks", "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n"},
        UnsoundHead{"chunks and length", "Transfer-Encoding: chunked\r\nContent-Length: 0\r\n"},
        UnsoundHead{"two encodings", "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n"},
        UnsoundHead{"list of encodings", "Transfer-Encoding: gzip, chunked\r\n"},
        UnsoundHead{"unknown encoding", "Transfer-Encoding: xchunked\r\n"},
        UnsoundHead{"longer encoding", "Transfer-Encoding: chunkedx\r\n"},
        UnsoundHead{"no encoding", "Transfer-Encoding: identity\r\n"},
        UnsoundHead{"empty encoding", "Transfer-Encoding: \r\n"}, UnsoundHead{"no colon", "Content-Length 5\r\n"},
        UnsoundHead{"no name", ": 5\r\n"}, UnsoundHead{"blank behind the name", "Content-Length : 5\r\n"},
        UnsoundHead{"blank before the name", " Content-Length: 5\r\n"}, UnsoundHead{"continued", "X: a\r\n b: c\r\n"},
        UnsoundHead{"quoted name", "\"X\": a\r\n"}, UnsoundHead{"line feed alone", "X: a\nContent-Length: 5\r\n"},
        UnsoundHead{"carriage return alone", "X: a\rContent-Length: 5\r\n"},
        UnsoundHead{"NUL", std::string("X: a\0b\r\n", 8)}, UnsoundHead{"escape", "X: \x1B[31m\r\n"},
        UnsoundHead{"delete", "X: \x7F\r\n"}));

TEST(Framing, chunksInAnOldVersion_areUnsound) {
  EXPECT_EQ(framing("Transfer-Encoding: chunked\r\n", "1.0"), Framing::unsound);
}

TEST(Framing, aHeadWithoutItsEnd_isUnsound) {
  const std::string head = "GET / HTTP/1.1\r\nHost: a\r\n\r\n";
  for (std::size_t size = 0; size < head.size(); ++size)
    EXPECT_EQ(framingOf(head.substr(0, size)), Framing::unsound) << size;
  EXPECT_EQ(framingOf(head), Framing::noBody);
}

TEST(Framing, everyLetter_mayBeInAValue) {
  EXPECT_EQ(framing("X: \x80\xFF \"(),/:;<=>?@[\\]{}\r\n"), Framing::noBody);
  EXPECT_EQ(framing("!#$%&'*+-.^_`|~09azAZ: a\r\n"), Framing::noBody);
}

} // namespace imex::import_service::test
