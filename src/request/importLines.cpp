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

std::string lineAsSent(std::string_view line, std::string_view dataType, std::string_view dataOrigin,
                       Integer delimiterAscii) {
  const SentFormat* format = find(dataType, dataOrigin);
  std::string text = upperCase(line);
  if (format != nullptr && format->isWithoutQuotes)
    text = without(text, "'\"");
  return text + character(delimiterAscii);
}

} // namespace imex
