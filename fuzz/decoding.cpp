#include "harness/fuzz.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <string>

// Bytes as characters: decoded and encoded they are the same, whole characters are what the judge of UTF-8 says they
// are, in pieces too, and capitals are as many characters as the text.

namespace {

using namespace imex;

void checkWindows1252(std::string_view bytes) {
  std::string decoded;
  appendWindows1252(decoded, bytes);
  fuzz::require(length(decoded) == bytes.size(), "each byte is a character");
  fuzz::require(canEncode(decoded, Encoding::windows1252), "each of them can go back");
  fuzz::require(encode(decoded, Encoding::windows1252) == bytes, "the bytes come back");
}

void checkUtf8(std::string_view bytes) {
  bool isValid = true;
  std::size_t characters = 0;
  std::string again;
  for (std::size_t at = 0; at < bytes.size(); ++characters) {
    const CodePoint c = codePointAt(bytes, at);
    isValid = isValid && c.valid;
    if (c.valid)
      appendUtf8(again, c.value);
    else
      again += bytes.substr(at, c.bytes);
    at += c.bytes;
  }
  fuzz::require(again == bytes, "the characters are the text");
  fuzz::require(length(bytes) == characters, "the length is their number");
  Utf8Validator whole;
  Utf8Validator inPieces;
  whole.feed(bytes);
  for (const char byte : bytes)
    inPieces.feed({&byte, 1});
  fuzz::require(whole.isComplete() == isValid && inPieces.isComplete() == isValid, "valid is valid in pieces too");
}

void checkCase(std::string_view text) {
  const std::string capitals = upperCase(text);
  fuzz::require(length(capitals) == length(text), "capitals are as many");
  fuzz::require(upperCase(capitals) == capitals, "capitals stay");
  fuzz::require(equalsIgnoringCase(text, capitals), "case does not tell them apart");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text(data, size);
  checkWindows1252(bytes);
  checkUtf8(bytes);
  checkCase(bytes);
  return 0;
}
