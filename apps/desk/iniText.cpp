#include "desk/iniText.h"

#include "runtime/encoding.h"
#include "runtime/text.h"

#include <algorithm>
#include <cstddef>

namespace imex::desk {

namespace {

bool needsQuotes(const std::string& value) {
  const bool isQuoted = value.size() >= 2 && value.front() == '"' && value.back() == '"';
  return isQuoted || trimmed(value).size() != value.size();
}

std::string lineOf(const IniSetting& setting) {
  const std::string quote = needsQuotes(setting.value) ? "\"" : "";
  return setting.key + " = " + quote + setting.value + quote;
}

/// The lines of an INI file.
class Lines {
 public:
  explicit Lines(std::string_view text);

  void set(const IniSetting& setting);
  std::string text() const;

 private:
  struct Line {
    std::string text;
    std::string section; ///< that it is in, or that it begins
    std::string key;     ///< empty for a line that is no setting
  };

  void read(std::string_view line);
  std::size_t endOf(const std::string& section);

  std::vector<Line> m_lines;
  std::string m_section;
};

Lines::Lines(std::string_view text) {
  if (text.starts_with(kUtf8Mark))
    text.remove_prefix(kUtf8Mark.size());
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    read(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
}

void Lines::read(std::string_view line) {
  const std::string_view content = trimmed(line);
  const std::size_t equals = content.find('=');
  const bool isSection = content.starts_with('[') && content.ends_with(']');
  const bool isComment = content.empty() || content.front() == ';' || content.front() == '#';
  const bool isSetting = !isComment && content.front() != '[' && equals != std::string_view::npos && equals > 0;
  if (isSection)
    m_section = trimmed(content.substr(1, content.size() - 2));
  if (isSetting)
    m_lines.push_back({std::string(content), m_section, std::string(trimmed(content.substr(0, equals)))});
  else
    m_lines.push_back({(isSection || isComment ? "" : "; ") + std::string(content), m_section, {}});
}

/// The place behind the section's last line that is not blank; a section that is not there is begun.
std::size_t Lines::endOf(const std::string& section) {
  for (std::size_t end = m_lines.size(); end > 0; --end) {
    if (equalsIgnoringCase(m_lines[end - 1].section, section) && !m_lines[end - 1].text.empty())
      return end;
  }
  if (!m_lines.empty())
    m_lines.push_back({{}, m_lines.back().section, {}});
  m_lines.push_back({"[" + section + "]", section, {}});
  return m_lines.size();
}

void Lines::set(const IniSetting& setting) {
  bool isSet = false;
  for (Line& line : m_lines) {
    if (equalsIgnoringCase(line.section, setting.section) && equalsIgnoringCase(line.key, setting.key)) {
      line.text = lineOf(setting);
      isSet = true;
    }
  }
  if (isSet)
    return;
  const auto place = static_cast<std::ptrdiff_t>(endOf(setting.section));
  m_lines.insert(m_lines.begin() + place, {lineOf(setting), setting.section, setting.key});
}

/// A first line that begins with the mark, behind blanks or a mark of the file's, is not to be read as without it.
std::string Lines::text() const {
  const bool isMarked = !m_lines.empty() && m_lines.front().text.starts_with(kUtf8Mark);
  std::string text(isMarked ? kUtf8Mark : std::string_view());
  for (const Line& line : m_lines)
    text += line.text + '\n';
  return text;
}

} // namespace

std::string withSettings(std::string_view text, const std::vector<IniSetting>& settings) {
  Lines lines(text);
  for (const IniSetting& setting : settings)
    lines.set(setting);
  return lines.text();
}

} // namespace imex::desk
