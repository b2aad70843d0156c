#include "harness/MemoryHost.h"
#include "harness/fuzz.h"
#include "platform/config/IniFile.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <optional>
#include <string>
#include <vector>

// Any text is the settings that a plain look at its lines finds, or error 5 that names the file and the first bad line.
// A file of these bytes is the text that they are in UTF-8 or else Windows-1252. A value in quotes comes back as it was
// written.

namespace {

using namespace imex;

constexpr std::string_view kPath = "settings.ini";

struct Setting {
  std::string section;
  std::string key;
  std::string value;
};

/// What the lines say, the plain way; `badLine` becomes the number of the first that says nothing.
std::vector<Setting> settingsOf(std::string_view text, int& badLine) {
  std::vector<Setting> settings;
  std::string section;
  int number = 0;
  while (!text.empty() && badLine == 0) {
    ++number;
    const std::size_t end = text.find('\n');
    const std::string line(trimmed(text.substr(0, end)));
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    const std::size_t equals = line.find('=');
    if (line.empty() || line[0] == ';' || line[0] == '#')
      continue;
    if (line[0] == '[' && line.back() == ']')
      section = trimmed(std::string_view(line).substr(1, line.size() - 2));
    else if (line[0] == '[' || equals == std::string::npos || trimmed(line.substr(0, equals)).empty())
      badLine = number;
    else
      settings.push_back({section, std::string(trimmed(line.substr(0, equals))), line.substr(equals + 1)});
  }
  return settings;
}

std::string valueOf(const Setting& setting) {
  const std::string value(trimmed(setting.value));
  const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return isQuoted ? value.substr(1, value.size() - 2) : value;
}

/// The last value given, whatever the case of its names.
std::string lastValue(const std::vector<Setting>& settings, const Setting& wanted) {
  std::string value;
  for (const Setting& setting : settings) {
    if (upperCase(setting.section) == upperCase(wanted.section) && upperCase(setting.key) == upperCase(wanted.key))
      value = valueOf(setting);
  }
  return value;
}

void checkText(std::string_view text) {
  constexpr std::size_t kMost = 64; // comparing each with each takes its time
  const bool isMarked = text.starts_with(kUtf8Mark);
  int badLine = 0;
  const std::vector<Setting> expected = settingsOf(isMarked ? text.substr(kUtf8Mark.size()) : text, badLine);
  try {
    const platform::IniFile settings(text, "settings");
    fuzz::require(badLine == 0, "a bad line is an error");
    for (std::size_t i = 0; i < expected.size() && expected.size() <= kMost; ++i) {
      const Setting& wanted = expected[i];
      fuzz::require(settings.value(upperCase(wanted.section), upperCase(wanted.key)) == lastValue(expected, wanted),
                    "each setting is there");
    }
  } catch (const RuntimeError& error) {
    fuzz::require(error.is(ErrorNumber::invalidProcedureCall) && badLine != 0, "only a bad line is an error");
    fuzz::require(error.description().starts_with("settings, line " + std::to_string(badLine) + ": "),
                  "the line is named");
  }
}

/// The settings of a file, nothing where it has a bad line.
std::optional<platform::IniFile> readFile(std::string_view bytes) {
  fuzz::MemoryFiles files;
  files.files[std::string(kPath)] = bytes;
  return fuzz::unless({5}, [&] { return platform::IniFile::read(files, std::string(kPath)); });
}

void checkFile(std::string_view bytes) {
  Utf8Validator validator;
  const bool isUtf8 = validator.feed(bytes) && validator.isComplete();
  std::string text(bytes);
  if (!isUtf8) {
    text.clear();
    appendWindows1252(text, bytes);
  }
  int badLine = 0;
  const bool isMarked = isUtf8 && text.starts_with(kUtf8Mark);
  const std::vector<Setting> expected = settingsOf(isMarked ? text.substr(kUtf8Mark.size()) : text, badLine);
  const auto settings = readFile(bytes);
  fuzz::require(settings.has_value() == (badLine == 0), "a file is read unless it has a bad line");
  if (settings && !expected.empty()) {
    const Setting& last = expected.back();
    fuzz::require(settings->value(last.section, last.key) == valueOf(last), "the last setting of the file is there");
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::text(data, size);
  checkText(text);
  checkFile(text);
  if (text.find('\n') == std::string_view::npos) {
    const platform::IniFile quoted("[s]\nk = \"" + std::string(text) + "\"\n", "settings");
    fuzz::require(quoted.value("S", "K") == text, "the value comes back");
  }
  return 0;
}
