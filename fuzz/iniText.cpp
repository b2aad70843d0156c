#include "desk/iniText.h"

#include "harness/fuzz.h"
#include "platform/config/IniFile.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <algorithm>
#include <string>
#include <vector>

// A setting put into a file of the user's is read from it again, a second time changes nothing, every other setting
// stays, and so does every line that is none. The first line of the input is the value, the rest the file.

namespace {

using namespace imex;

const std::vector<std::string>& names() {
  static const std::vector<std::string> all = {"application", "service", "user", "directory",
                                               "secured",     "name",    "a",    "b"};
  return all;
}

std::vector<std::string> linesOf(std::string_view text) {
  if (text.starts_with(kUtf8Mark))
    text.remove_prefix(kUtf8Mark.size());
  std::vector<std::string> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    lines.emplace_back(trimmed(text.substr(0, end)));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
  }
  return lines;
}

/// Whether `texts` has these lines in this order, with others between them.
bool hasInOrder(const std::vector<std::string>& texts, const std::vector<std::string>& lines) {
  auto at = texts.begin();
  for (const std::string& line : lines) {
    at = std::find(at, texts.end(), line);
    if (at == texts.end())
      return false;
    ++at;
  }
  return true;
}

/// The lines of a comment, of a section, and blank ones: those that setting a value must not touch.
std::vector<std::string> untouched(const std::vector<std::string>& lines) {
  std::vector<std::string> result;
  for (const std::string& line : lines) {
    const bool isSection = line.starts_with('[') && line.ends_with(']');
    if (isSection || line.starts_with(';') || line.starts_with('#'))
      result.push_back(line);
  }
  return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input = fuzz::text(data, size);
  const std::size_t end = input.find('\n');
  std::string value(input.substr(0, end));
  std::erase(value, '\r');
  const std::string_view text = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);

  const std::vector<desk::IniSetting> settings = {{"service", "secured", value}};
  const std::string changed = desk::withSettings(text, settings);
  const platform::IniFile read(changed, "settings");
  fuzz::require(read.value("SERVICE", "Secured") == value, "the setting is there");
  fuzz::require(desk::withSettings(changed, settings) == changed, "a second time changes nothing");
  fuzz::require(hasInOrder(linesOf(changed), untouched(linesOf(text))), "sections and comments stay");

  const auto before = fuzz::unless({5}, [&] { return platform::IniFile(text, "settings"); });
  if (!before)
    return 0;
  for (const std::string& section : names()) {
    for (const std::string& key : names()) {
      if (section != "service" || key != "secured")
        fuzz::require(read.value(section, key) == before->value(section, key), "every other setting stays");
    }
  }
  return 0;
}
