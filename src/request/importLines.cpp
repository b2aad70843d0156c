#include "request/importLines.h"

#include "runtime/text.h"

#include <algorithm>
#include <array>

namespace imex {

namespace {

struct SentFormat {
  std::string_view dataType;
  std::string_view dataOrigin;
  bool isWithoutQuotes;
  bool isOnSendRoad;
};

// Every format of the table is sent on the instant road.
constexpr std::array<SentFormat, 6> kSentFormats = {{
    {"CUSTOMER", "AGENT", false, true},
    {"CUSTOMER", "HALVIK", false, false},
    {"PRODUCT", "AGENT", true, true},
    {"INVOICE", "AGENT", false, true},
    {"COMMISSION", "AGENT", false, true},
    {"BALLASTS", "HALVIK", false, true},
}};

const SentFormat* find(std::string_view dataType, std::string_view dataOrigin) {
  const auto* found = std::find_if(kSentFormats.begin(), kSentFormats.end(), [&](const SentFormat& format) {
    return format.dataType == dataType && format.dataOrigin == dataOrigin;
  });
  return found == kSentFormats.end() ? nullptr : found;
}

} // namespace

bool areLinesSent(std::string_view dataType, std::string_view dataOrigin, Road road) {
  const SentFormat* format = find(dataType, dataOrigin);
  return format != nullptr && (road == Road::instant || format->isOnSendRoad);
}

SentLines::SentLines(std::string_view dataType, std::string_view dataOrigin, Integer delimiterAscii)
    : m_delimiter(character(delimiterAscii)) {
  const SentFormat* format = find(dataType, dataOrigin);
  m_isWithoutQuotes = format != nullptr && format->isWithoutQuotes;
}

std::string_view SentLines::asSent(std::string_view line) {
  m_line.clear();
  appendUpperCase(m_line, line);
  if (m_isWithoutQuotes)
    std::erase_if(m_line, [](char c) { return c == '\'' || c == '"'; });
  return m_line += m_delimiter;
}

std::string lineAsSent(std::string_view line, std::string_view dataType, std::string_view dataOrigin,
                       Integer delimiterAscii) {
  return std::string(SentLines(dataType, dataOrigin, delimiterAscii).asSent(line));
}

} // namespace imex
