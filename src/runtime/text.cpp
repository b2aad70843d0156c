#include "runtime/text.h"

#include "runtime/bytes.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace imex {

namespace {

constexpr char32_t kLastCodePoint = 0x10FFFF;

constexpr bool isContinuation(unsigned char byte) {
  return (byte & 0xC0U) == 0x80U;
}

constexpr bool isSurrogate(char32_t value) {
  return value >= 0xD800 && value <= 0xDFFF;
}

struct CaseRange {
  char32_t first;
  char32_t last;
  char32_t step; ///< 1: every code point of the range has the distance; 2: every other one, from the first on
  std::int32_t distance;
};

constexpr std::array kUpperCase{
#include "runtime/upper_case.inc"
};

/// Of a code point beyond ASCII.
char32_t upperCase(char32_t value) {
  const auto* range = std::upper_bound(kUpperCase.begin(), kUpperCase.end(), value,
                                       [](char32_t v, const CaseRange& r) { return v < r.first; });
  if (range == kUpperCase.begin())
    return value;
  --range;
  if (value > range->last || (value - range->first) % range->step != 0)
    return value;
  return static_cast<char32_t>(static_cast<std::int32_t>(value) + range->distance);
}

/// The number of bytes that a sequence with this first byte should have, 0 where no sequence starts with it.
constexpr std::size_t sequenceLength(unsigned char first) {
  if (first < 0x80)
    return 1;
  if (first >= 0xC2 && first <= 0xDF)
    return 2;
  if (first >= 0xE0 && first <= 0xEF)
    return 3;
  if (first >= 0xF0 && first <= 0xF4)
    return 4;
  return 0;
}

constexpr char upperCaseOfAscii(char c) {
  return static_cast<char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c);
}

void appendUpperCaseOfAscii(std::string& result, std::string_view ascii) {
  constexpr std::size_t kStep = sizeof(ByteVector);
  const std::size_t begin = result.size();
  result += ascii;
  const auto raise = [](char* place) {
    const ByteVector bytes = bytesAt(place);
    // All bits are set where it is a small letter.
    const ByteVector capital = bytes - (ByteVector((bytes >= 'a') & (bytes <= 'z')) & ('a' - 'A'));
    std::memcpy(place, &capital, sizeof capital);
  };
  char* at = result.data() + begin;
  char* const end = result.data() + result.size();
  if (ascii.size() >= kStep) {
    for (; at + kStep <= end; at += kStep)
      raise(at);
    raise(end - kStep); // the last ones, some of them once more
    return;
  }
  for (; at != end; ++at)
    *at = upperCaseOfAscii(*at);
}

} // namespace

CodePoint codePointAt(std::string_view text, std::size_t position) {
  const auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[position + i]); };
  const unsigned char first = byteAt(0);
  const CodePoint invalid{first, 1, false};
  const std::size_t bytes = sequenceLength(first);
  if (bytes == 1)
    return {first, 1, true};
  if (bytes == 0 || position + bytes > text.size())
    return invalid;

  char32_t value = first & (0x7FU >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    if (!isContinuation(byteAt(i)))
      return invalid;
    value = (value << 6U) | (byteAt(i) & 0x3FU);
  }
  const bool overlong = (bytes == 3 && value < 0x800) || (bytes == 4 && value < 0x10000);
  if (overlong || isSurrogate(value) || value > kLastCodePoint)
    return invalid;
  return {value, bytes, true};
}

void appendUtf8(std::string& text, char32_t value) {
  const auto push = [&](char32_t byte) { text.push_back(static_cast<char>(byte)); };
  if (value < 0x80) {
    push(value);
  } else if (value < 0x800) {
    push(0xC0 | (value >> 6U));
    push(0x80 | (value & 0x3FU));
  } else if (value < 0x10000) {
    push(0xE0 | (value >> 12U));
    push(0x80 | ((value >> 6U) & 0x3FU));
    push(0x80 | (value & 0x3FU));
  } else {
    push(0xF0 | (value >> 18U));
    push(0x80 | ((value >> 12U) & 0x3FU));
    push(0x80 | ((value >> 6U) & 0x3FU));
    push(0x80 | (value & 0x3FU));
  }
}

std::size_t length(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t ascii = findNonAscii(text, i);
    count += ascii - i;
    i = ascii;
    if (i == text.size())
      break;
    i += codePointAt(text, i).bytes;
    ++count;
  }
  return count;
}

void appendUpperCase(std::string& result, std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t ascii = findNonAscii(text, i);
    appendUpperCaseOfAscii(result, text.substr(i, ascii - i));
    for (i = ascii; i < text.size() && static_cast<unsigned char>(text[i]) >= 0x80;) {
      const CodePoint c = codePointAt(text, i);
      if (c.valid)
        appendUtf8(result, upperCase(c.value));
      else
        result.push_back(text[i]);
      i += c.bytes;
    }
  }
}

std::string upperCase(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  appendUpperCase(result, text);
  return result;
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
  return upperCase(a) == upperCase(b);
}

bool isAscii(std::string_view text) {
  return findNonAscii(text) == text.size();
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos)
    return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string without(std::string_view text, std::string_view unwanted) {
  std::string result(text);
  std::erase_if(result, [&](char c) { return unwanted.find(c) != std::string_view::npos; });
  return result;
}

std::string character(long code) {
  if (code < 0 || code > static_cast<long>(kLastCodePoint) || isSurrogate(static_cast<char32_t>(code)))
    throw RuntimeError(ErrorNumber::invalidProcedureCall);
  std::string result;
  appendUtf8(result, static_cast<char32_t>(code));
  return result;
}

} // namespace imex
