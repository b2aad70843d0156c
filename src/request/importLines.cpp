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
  std::string_view instantMethod;
};

// Every format of the table is sent on the instant road.
constexpr std::array<SentFormat, 6> kSentFormats = {{
    {"CUSTOMER", "AGENT", false, true, "importCustomersInstant"},
    {"CUSTOMER", "HALVIK", false, false, "importCustomersInstant"},
    {"PRODUCT", "AGENT", true, true, "importProductsInstant"},
    {"INVOICE", "AGENT", false, true, "importInvoicesInstant"},
    {"COMMISSION", "AGENT", false, true, "importCommissionsInstant"},
    {"BALLASTS", "HALVIK", false, true, "importBallastsInstant"},
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

std::string_view instantMethod(std::string_view dataType, std::string_view dataOrigin) {
  const SentFormat* format = find(dataType, dataOrigin);
  return format == nullptr ? std::string_view() : format->instantMethod;
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

} // namespace imex
