#include "import_service/wording.h"

#include "runtime/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace imex::import_service {

namespace {

constexpr std::size_t kLongestShown = 40;

struct Range {
  char32_t first;
  char32_t last;
};

/// What moves a terminal's cursor, ends a line, or shows what follows in another order than it has.
constexpr std::array<Range, 6> kUnprintable{
    {{0, 0x1F}, {0x7F, 0x9F}, {0x200E, 0x200F}, {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}}};

bool isPrintable(char32_t code) {
  return std::none_of(kUnprintable.begin(), kUnprintable.end(),
                      [code](const Range& range) { return code >= range.first && code <= range.last; });
}

std::string spelled(std::string_view mark, char32_t code) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.begin(), digits.end(), static_cast<std::uint32_t>(code), 16).ptr;
  std::transform(digits.begin(), end, digits.begin(), [](char c) { return c >= 'a' ? static_cast<char>(c - 32) : c; });
  return "\\" + std::string(mark) + '{' + std::string(digits.begin(), end) + '}';
}

} // namespace

std::string shortened(std::string_view value) {
  std::size_t end = 0;
  for (std::size_t shown = 0; shown < kLongestShown && end < value.size(); ++shown)
    end += codePointAt(value, end).bytes;
  return std::string(value.substr(0, end)) + (end < value.size() ? "..." : "");
}

std::string inQuotes(std::string_view value) {
  return '"' + shortened(value) + '"';
}

std::string counted(std::size_t count, std::string_view noun) {
  return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string listed(const std::vector<std::string>& items) {
  std::string text;
  for (const std::string& item : items)
    text += (text.empty() ? "" : ", ") + item;
  return text;
}

std::string printable(std::string_view text) {
  std::string line;
  for (std::size_t at = 0; at < text.size();) {
    const CodePoint character = codePointAt(text, at);
    if (!character.valid || !isPrintable(character.value))
      line += spelled(character.valid ? "u" : "x", character.value);
    else
      line += text.substr(at, character.bytes);
    at += character.bytes;
  }
  return line;
}

std::string jsonArray(const std::vector<std::string_view>& texts) {
  constexpr auto kReplace = nlohmann::json::error_handler_t::replace;
  return nlohmann::json(texts).dump(-1, ' ', false, kReplace);
}

} // namespace imex::import_service
