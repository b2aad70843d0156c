#include "import_service/wording.h"

#include "runtime/text.h"

#include <nlohmann/json.hpp>

namespace imex::import_service {

namespace {

constexpr std::size_t kLongestShown = 40;

} // namespace

std::string inQuotes(std::string_view value) {
  std::size_t end = 0;
  for (std::size_t shown = 0; shown < kLongestShown && end < value.size(); ++shown)
    end += codePointAt(value, end).bytes;
  const std::string_view ending = end < value.size() ? "...\"" : "\"";
  return '"' + std::string(value.substr(0, end)) + std::string(ending);
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

std::string jsonArray(const std::vector<std::string_view>& texts) {
  constexpr auto kReplace = nlohmann::json::error_handler_t::replace;
  return nlohmann::json(texts).dump(-1, ' ', false, kReplace);
}

} // namespace imex::import_service
