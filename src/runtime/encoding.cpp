#include "runtime/encoding.h"

#include "runtime/RuntimeError.h"
#include "runtime/bytes.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <optional>

namespace imex {

namespace {

// The code points of the bytes 0x80 to 0x9F; all other bytes stand for the code point of their own number.
constexpr std::array<char32_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

std::optional<char> toWindows1252(const CodePoint& c) {
  if (!c.valid)
    return std::nullopt;
  if (c.value < 0x80 || (c.value >= 0xA0 && c.value <= 0xFF))
    return static_cast<char>(c.value);
  const auto* found = std::find(kHighControls.begin(), kHighControls.end(), c.value);
  if (found == kHighControls.end())
    return std::nullopt;
  return static_cast<char>(0x80 + std::distance(kHighControls.begin(), found));
}

} // namespace

/// Takes the first byte of a character beyond ASCII.
bool Utf8Validator::start(unsigned char byte) {
  m_low = 0x80;
  m_high = 0xBF;
  if (byte >= 0xC2 && byte <= 0xDF) {
    m_pending = 1;
  } else if (byte >= 0xE0 && byte <= 0xEF) {
    m_pending = 2;
    m_low = byte == 0xE0 ? 0xA0 : 0x80;  // no overlong forms
    m_high = byte == 0xED ? 0x9F : 0xBF; // no surrogates
  } else if (byte >= 0xF0 && byte <= 0xF4) {
    m_pending = 3;
    m_low = byte == 0xF0 ? 0x90 : 0x80;
    m_high = byte == 0xF4 ? 0x8F : 0xBF; // nothing past U+10FFFF
  } else {
    return false;
  }
  return true;
}

bool Utf8Validator::accept(unsigned char byte) {
  if (m_pending == 0)
    return start(byte);
  if (byte < m_low || byte > m_high)
    return false;
  m_low = 0x80;
  m_high = 0xBF;
  --m_pending;
  return true;
}

bool Utf8Validator::feed(std::string_view bytes) {
  for (std::size_t i = 0; m_valid && i < bytes.size(); ++i) {
    if (m_pending == 0)
      i = findNonAscii(bytes, i);
    if (i < bytes.size())
      m_valid = accept(static_cast<unsigned char>(bytes[i]));
  }
  return m_valid;
}

void appendWindows1252(std::string& text, std::string_view bytes) {
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const std::size_t ascii = findNonAscii(bytes, i);
    text += bytes.substr(i, ascii - i);
    i = ascii;
    if (i == bytes.size())
      return;
    const auto byte = static_cast<unsigned char>(bytes[i]);
    appendUtf8(text, byte < 0xA0 ? kHighControls[byte - 0x80U] : char32_t{byte});
  }
}

bool canEncode(std::string_view text, Encoding encoding) {
  if (encoding != Encoding::windows1252)
    return true;
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint c = codePointAt(text, i);
    if (!toWindows1252(c))
      return false;
    i += c.bytes;
  }
  return true;
}

std::string encode(std::string_view text, Encoding encoding) {
  if (encoding != Encoding::windows1252)
    return std::string(text);
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    const CodePoint c = codePointAt(text, i);
    const std::optional<char> byte = toWindows1252(c);
    if (!byte)
      throw RuntimeError(ErrorNumber::invalidProcedureCall);
    result.push_back(*byte);
    i += c.bytes;
  }
  return result;
}

} // namespace imex
