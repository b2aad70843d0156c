#include "import_service/Framing.h"

#include <algorithm>
#include <vector>

namespace imex::import_service {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kBlanks = " \t";

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isSame(std::string_view text, std::string_view lowerCase) {
  return std::equal(text.begin(), text.end(), lowerCase.begin(), lowerCase.end(),
                    [](char a, char b) { return lower(a) == b; });
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isNameCharacter(char c) {
  const char letter = lower(c);
  return isDigit(c) || (letter >= 'a' && letter <= 'z') ||
         std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

bool isControl(char c) {
  return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
}

std::string_view trimmed(std::string_view value) {
  const std::size_t first = std::min(value.find_first_not_of(kBlanks), value.size());
  return value.substr(first, value.find_last_not_of(kBlanks) + 1 - first);
}

/// The headers of one head, as far as they say where its body ends.
class Headers {
 public:
  /// False where the line is no header.
  bool take(std::string_view line);

  Framing framing(bool isOldVersion) const;

 private:
  std::vector<std::string_view> m_lengths;
  std::vector<std::string_view> m_encodings;
};

bool Headers::take(std::string_view line) {
  const std::size_t colon = line.find(':');
  const std::string_view name = line.substr(0, colon);
  if (colon == std::string_view::npos || name.empty() || !std::all_of(name.begin(), name.end(), isNameCharacter))
    return false;
  if (isSame(name, "content-length"))
    m_lengths.push_back(trimmed(line.substr(colon + 1)));
  if (isSame(name, "transfer-encoding"))
    m_encodings.push_back(trimmed(line.substr(colon + 1)));
  return true;
}

Framing Headers::framing(bool isOldVersion) const {
  if (m_lengths.empty() && m_encodings.empty())
    return Framing::noBody;
  if (m_lengths.size() + m_encodings.size() > 1)
    return Framing::unsound;
  if (m_lengths.empty())
    return isSame(m_encodings.front(), "chunked") && !isOldVersion ? Framing::chunks : Framing::unsound;
  const std::string_view length = m_lengths.front();
  if (length.empty() || !std::all_of(length.begin(), length.end(), isDigit))
    return Framing::unsound;
  return length.find_first_not_of('0') == std::string_view::npos ? Framing::noBody : Framing::length;
}

} // namespace

Framing framingOf(std::string_view head) {
  Headers headers;
  bool isRequestLine = true;
  bool isOldVersion = false;
  for (std::size_t end = head.find(kLineEnd); end != 0; end = head.find(kLineEnd)) {
    const std::string_view line = head.substr(0, end);
    if (end == std::string_view::npos || std::any_of(line.begin(), line.end(), isControl))
      return Framing::unsound;
    if (isRequestLine)
      isOldVersion = line.ends_with(" HTTP/1.0");
    else if (!headers.take(line))
      return Framing::unsound;
    isRequestLine = false;
    head.remove_prefix(end + kLineEnd.size());
  }
  return headers.framing(isOldVersion);
}

} // namespace imex::import_service
