#include "import_service/XmlGuard.h"

#include "import_service/Fault.h"
#include "import_service/wording.h"
#include "runtime/encoding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

namespace imex::import_service {

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";
constexpr std::array<std::string_view, 5> kNamedReferences{"amp", "lt", "gt", "quot", "apos"};

/// No reference that is allowed is longer: "#x10FFFF" with a few leading zeros.
constexpr std::size_t kLongestReference = 12;

[[noreturn]] void refuse(std::string_view what, std::size_t byte) {
  throw ClientFault("The request is not well-formed XML: " + std::string(what) + " at byte " + std::to_string(byte) +
                    ".");
}

bool isXmlCharacter(std::uint32_t code) {
  if (code < 0x20)
    return code == '\t' || code == '\n' || code == '\r';
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return !isSurrogate && code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

bool isForbidden(std::string_view xml, std::size_t byte) {
  const auto c = static_cast<unsigned char>(xml[byte]);
  if (c < 0x20)
    return !isXmlCharacter(c);
  const std::string_view sequence = xml.substr(byte, 3);
  return c == 0xEF && (sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF");
}

void requireCharacters(std::string_view xml) {
  Utf8Validator validator;
  if (!validator.feed(xml) || !validator.isComplete())
    throw ClientFault("The request is not in UTF-8.");
  for (std::size_t byte = 0; byte < xml.size(); ++byte)
    if (isForbidden(xml, byte))
      refuse("a character that XML forbids", byte);
}

bool isCharacterNumber(std::string_view digits, int base) {
  std::uint32_t code = 0;
  const char* end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, code, base);
  return error == std::errc{} && stop == end && isXmlCharacter(code);
}

std::string_view withoutBlanksBehind(std::string_view text) {
  return text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
}

/// The name of the attribute whose value begins behind this part of a tag.
std::string_view nameBefore(std::string_view tag) {
  tag = withoutBlanksBehind(tag);
  if (tag.ends_with('='))
    tag = withoutBlanksBehind(tag.substr(0, tag.size() - 1));
  return tag.substr(tag.find_last_of(" \t\r\n\"'") + 1);
}

/// Walks over the markup once, from front to back.
class Guard {
 public:
  explicit Guard(std::string_view xml) : m_xml(xml) {}

  void walk();

 private:
  void countPiece();
  void takeText(std::size_t end);
  void takeReference();
  void takeMarkup();
  void takeStartTag();
  void takeEndTag();
  void takeAttributeValue(char quote);
  void requireDifferentNames();
  void skipBehind(std::string_view end, std::string_view what);
  bool startsWith(std::string_view token) const { return m_xml.substr(m_at).starts_with(token); }

  std::string_view m_xml;
  std::size_t m_at = 0;
  int m_depth = 0;
  int m_roots = 0;
  int m_pieces = 0;
  std::vector<std::string_view> m_attributes; ///< the names of those of the tag
};

void Guard::walk() {
  if (startsWith(kUtf8Mark))
    m_at += kUtf8Mark.size();
  while (m_at < m_xml.size()) {
    takeText(std::min(m_xml.find_first_of("<&", m_at), m_xml.size()));
    if (m_at == m_xml.size())
      break;
    if (m_xml[m_at] == '<')
      takeMarkup();
    else
      takeReference();
  }
  if (m_depth > 0)
    refuse("an element without its end", m_at);
  if (m_roots == 0)
    refuse("no element", m_at);
}

void Guard::countPiece() {
  if (++m_pieces > kMostPieces)
    throw ClientFault("The request has more than " + std::to_string(kMostPieces) +
                      " elements, attributes and comments.");
}

void Guard::takeText(std::size_t end) {
  const std::size_t outside = m_depth == 0 ? m_xml.find_first_not_of(kWhiteSpace, m_at) : end;
  if (outside < end)
    refuse("text outside the root element", outside);
  m_at = end;
}

void Guard::takeReference() {
  if (m_depth == 0)
    refuse("text outside the root element", m_at);
  const std::string_view rest = m_xml.substr(m_at + 1, kLongestReference);
  const std::size_t length = rest.find(';');
  const std::string_view name = rest.substr(0, length);
  const bool isNamed = std::find(kNamedReferences.begin(), kNamedReferences.end(), name) != kNamedReferences.end();
  const bool isNumber = name.starts_with("#x") ? isCharacterNumber(name.substr(2), 16)
                                               : name.starts_with('#') && isCharacterNumber(name.substr(1), 10);
  if (length == std::string_view::npos || !(isNamed || isNumber))
    refuse("a reference that stands for nothing", m_at);
  m_at += length + 2;
}

void Guard::takeMarkup() {
  if (!startsWith("</"))
    countPiece();
  if (startsWith("<?"))
    skipBehind("?>", "an instruction without its end");
  else if (startsWith("<!--"))
    skipBehind("-->", "a comment without its end");
  else if (startsWith("<![CDATA[") && m_depth > 0)
    skipBehind("]]>", "a CDATA section without its end");
  else if (startsWith("<!DOCTYPE"))
    throw ClientFault("The request has a document type declaration, which a SOAP message must not have.");
  else if (startsWith("</"))
    takeEndTag();
  else
    takeStartTag();
}

void Guard::takeStartTag() {
  const std::size_t start = m_at;
  m_attributes.clear();
  if (m_depth == 0 && ++m_roots > 1)
    refuse("a second root element", start);
  for (++m_at; m_at < m_xml.size() && m_xml[m_at] != '>'; ++m_at) {
    const char c = m_xml[m_at];
    if (c == '<')
      refuse("a tag inside a tag", m_at);
    if (c == '"' || c == '\'') {
      m_attributes.push_back(nameBefore(m_xml.substr(start, m_at - start)));
      takeAttributeValue(c);
    }
  }
  if (m_at >= m_xml.size())
    refuse("a tag without its end", start);
  requireDifferentNames();
  if (++m_depth > kDeepestElement)
    throw ClientFault("The request has elements more than " + std::to_string(kDeepestElement) + " deep.");
  if (m_xml[m_at - 1] == '/')
    --m_depth;
  ++m_at;
}

void Guard::requireDifferentNames() {
  if (m_attributes.size() < 2)
    return;
  std::stable_sort(m_attributes.begin(), m_attributes.end());
  const auto twice = std::adjacent_find(m_attributes.begin(), m_attributes.end());
  if (twice != m_attributes.end())
    refuse("an attribute that its tag has twice", static_cast<std::size_t>(std::next(twice)->data() - m_xml.data()));
}

/// Leaves m_at at the closing quote.
void Guard::takeAttributeValue(char quote) {
  countPiece();
  const std::size_t start = m_at++;
  // The root's own attributes are inside the root.
  ++m_depth;
  while (m_at < m_xml.size() && m_xml[m_at] != quote) {
    if (m_xml[m_at] == '&')
      takeReference();
    else
      ++m_at;
  }
  --m_depth;
  if (m_at >= m_xml.size())
    refuse("an attribute without its end", start);
}

void Guard::takeEndTag() {
  if (--m_depth < 0)
    refuse("an end without its element", m_at);
  skipBehind(">", "a tag without its end");
}

void Guard::skipBehind(std::string_view end, std::string_view what) {
  const std::size_t found = m_xml.find(end, m_at + 2);
  if (found == std::string_view::npos)
    refuse(what, m_at);
  m_at = found + end.size();
}

} // namespace

void requireSoundXml(std::string_view xml) {
  requireCharacters(xml);
  Guard(xml).walk();
}

} // namespace imex::import_service
