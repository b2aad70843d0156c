#include "platform/soap/xmlText.h"

#include "platform/soap/errors.h"
#include "runtime/bytes.h"
#include "runtime/encoding.h"
#include "runtime/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace imex::platform {

namespace {

struct EncodingName {
  std::string_view name;
  XmlEncoding encoding;
};

constexpr std::array<EncodingName, 11> kEncodings = {{
    {"UTF-8", XmlEncoding::utf8},
    {"UTF8", XmlEncoding::utf8},
    {"US-ASCII", XmlEncoding::utf8},
    {"ASCII", XmlEncoding::utf8},
    {"ISO-8859-1", XmlEncoding::windows1252},
    {"LATIN1", XmlEncoding::windows1252},
    {"WINDOWS-1252", XmlEncoding::windows1252},
    {"CP1252", XmlEncoding::windows1252},
    {"UTF-16", XmlEncoding::utf16},
    {"UTF-16LE", XmlEncoding::utf16LittleEndian},
    {"UTF-16BE", XmlEncoding::utf16BigEndian},
}};

constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";
constexpr std::string_view kLittleEndianStart("<\0", 2);
constexpr std::string_view kBigEndianStart("\0<", 2);

constexpr std::size_t kLongestReference = 12;

/// The value of `encoding` in the XML declaration; empty where there is none.
std::string_view declaredEncoding(std::string_view data) {
  if (!data.starts_with("<?xml"))
    return {};
  const std::string_view declaration = data.substr(0, data.find("?>"));
  const std::size_t key = declaration.find("encoding");
  if (key == std::string_view::npos)
    return {};
  const std::size_t open = declaration.find_first_of("\"'", key);
  if (open == std::string_view::npos)
    return {};
  const std::size_t close = declaration.find(declaration[open], open + 1);
  return close == std::string_view::npos ? std::string_view{} : declaration.substr(open + 1, close - open - 1);
}

RuntimeError unknownEncoding(std::string_view name, std::string_view data) {
  return notSoapError("The answer is in an encoding that is not supported, " + std::string(name), data);
}

XmlEncoding namedEncoding(std::string_view name, std::string_view data) {
  const std::optional<XmlEncoding> encoding = xmlEncoding(name);
  if (!encoding)
    throw unknownEncoding(name, data);
  return *encoding;
}

XmlEncoding encodingOf(std::string_view data) {
  if (data.starts_with(kUtf8Mark))
    return XmlEncoding::utf8;
  if (data.starts_with(kLittleEndianMark) || data.starts_with(kLittleEndianStart))
    return XmlEncoding::utf16LittleEndian;
  if (data.starts_with(kBigEndianMark) || data.starts_with(kBigEndianStart))
    return XmlEncoding::utf16BigEndian;
  const std::string_view name = declaredEncoding(data);
  const XmlEncoding encoding = name.empty() ? XmlEncoding::utf8 : namedEncoding(name, data);
  // A declaration that can be read byte by byte is not in UTF-16, whatever it says: such a text was converted since.
  return encoding == XmlEncoding::windows1252 ? encoding : XmlEncoding::utf8;
}

/// Reads code points from the 16-bit units of UTF-16.
class Utf16Reader {
 public:
  Utf16Reader(std::string_view bytes, bool isBigEndian) : m_bytes(bytes), m_isBigEndian(isBigEndian) {}

  bool isAtEnd() const { return m_at == m_bytes.size(); }

  /// The next code point; nothing where there is none.
  std::optional<char32_t> next() {
    const std::optional<char32_t> high = unit();
    if (!high || *high < 0xD800 || *high > 0xDFFF)
      return high;
    const std::optional<char32_t> low = *high < 0xDC00 ? unit() : std::nullopt;
    if (!low || *low < 0xDC00 || *low > 0xDFFF)
      return std::nullopt;
    return 0x10000 + ((*high - 0xD800) << 10) + (*low - 0xDC00);
  }

 private:
  std::optional<char32_t> unit() {
    if (m_bytes.size() - m_at < 2)
      return std::nullopt;
    const auto first = static_cast<unsigned char>(m_bytes[m_at]);
    const auto second = static_cast<unsigned char>(m_bytes[m_at + 1]);
    m_at += 2;
    return m_isBigEndian ? char32_t{first} << 8 | second : char32_t{second} << 8 | first;
  }

  std::string_view m_bytes;
  bool m_isBigEndian;
  std::size_t m_at = 0;
};

std::string fromUtf16(std::string_view data, bool isBigEndian) {
  const bool hasMark = data.starts_with(isBigEndian ? kBigEndianMark : kLittleEndianMark);
  Utf16Reader reader(data.substr(hasMark ? 2 : 0), isBigEndian);
  std::string text;
  text.reserve(data.size() / 2);
  while (!reader.isAtEnd()) {
    const std::optional<char32_t> c = reader.next();
    if (!c)
      throw notSoapError("The answer is not valid UTF-16", data);
    appendUtf8(text, *c);
  }
  return text;
}

std::string fromUtf8(std::string_view data) {
  Utf8Validator validator;
  validator.feed(data);
  if (!validator.isComplete())
    throw notSoapError("The answer is not valid UTF-8", data);
  return std::string(data.substr(data.starts_with(kUtf8Mark) ? kUtf8Mark.size() : 0));
}

std::string fromWindows1252(std::string_view data) {
  std::string text;
  text.reserve(data.size());
  appendWindows1252(text, data);
  return text;
}

bool isXmlCharacter(char32_t c) {
  return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c <= 0xD7FF) || (c >= 0xE000 && c <= 0xFFFD) ||
         (c >= 0x10000 && c <= 0x10FFFF);
}

/// The byte position of the first character that XML forbids; npos where there is none.
std::size_t findForbidden(std::string_view text) {
  const auto needsALook = [](auto c) { return isControlOrNonAscii(c) & (c != '\t') & (c != '\n') & (c != '\r'); };
  for (std::size_t i = findByte(text, needsALook); i < text.size(); i = findByte(text, needsALook, i)) {
    const CodePoint c = codePointAt(text, i);
    if (!c.valid || !isXmlCharacter(c.value))
      return i;
    i += c.bytes;
  }
  return std::string_view::npos;
}

std::string hex(char32_t value, std::size_t digits) {
  std::array<char, 8> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::uint32_t{value}, 16).ptr;
  const std::string text = upperCase(std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())));
  return std::string(digits - std::min(digits, text.size()), '0') + text;
}

/// "the character U+0003" or, for bytes that are no character, "the byte 0xFF".
std::string nameOf(const CodePoint& c) {
  return c.valid ? "the character U+" + hex(c.value, 4) : "the byte 0x" + hex(c.value, 2);
}

bool isAsciiLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isAsciiDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isNameStart(char c) {
  return isAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

/// Whether the text between "&" and ";" stands for one character that XML allows.
bool isReference(std::string_view body) {
  constexpr std::array<std::string_view, 5> kNames = {"amp", "lt", "gt", "quot", "apos"};
  if (std::find(kNames.begin(), kNames.end(), body) != kNames.end())
    return true;
  const bool isHex = body.starts_with("#x");
  if (!body.starts_with('#'))
    return false;
  const std::string_view digits = body.substr(isHex ? 2 : 1);
  std::uint32_t value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
  return error == std::errc() && end == digits.data() + digits.size() && isXmlCharacter(value);
}

/// The position behind the next `end` from `from` on. Where there is none, the end of the text: the parser reports it.
std::size_t behind(std::string_view text, std::string_view end, std::size_t from) {
  const std::size_t found = text.find(end, from);
  return found == std::string_view::npos ? text.size() : found + end.size();
}

/// The position behind the markup that starts at `at`. A tag ends there at once: what it holds is scanned like text.
std::size_t skipMarkup(std::string_view xml, std::size_t at) {
  const std::string_view rest = xml.substr(at);
  if (rest.starts_with("<!DOCTYPE"))
    throw notSoapError("The answer has a document type declaration, which a SOAP message must not have", xml);
  if (rest.starts_with("<!--"))
    return behind(xml, "-->", at + 4);
  if (rest.starts_with("<![CDATA["))
    return behind(xml, "]]>", at + 9);
  if (rest.starts_with("<?"))
    return behind(xml, "?>", at + 2);
  return at + 1;
}

std::size_t skipReference(std::string_view xml, std::size_t at) {
  const std::size_t size = referenceSize(xml.substr(at));
  if (size == 0)
    throw notSoapError("The answer is not well-formed XML (unknown reference at byte " + std::to_string(at) + ")", xml);
  return at + size;
}

/// Appends `text` with each byte for which `isSpecial` is true replaced.
template <class Predicate, class Replacement>
void appendReplaced(std::string& xml, std::string_view text, Predicate isSpecial, Replacement replacement) {
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t special = findByte(text, isSpecial, at);
    xml += text.substr(at, special - at);
    at = special;
    for (; at < text.size() && isSpecial(static_cast<unsigned char>(text[at])); ++at)
      xml += replacement(text[at]);
  }
}

constexpr auto isSpecialInText = [](auto c) { return (c == '&') | (c == '<') | (c == '>') | (c == '\r'); };

std::string_view escapeOf(char c) {
  switch (c) {
  case '&':
    return "&amp;";
  case '<':
    return "&lt;";
  case '>':
    return "&gt;";
  case '"':
    return "&quot;";
  case '\t':
    return "&#09;";
  case '\n':
    return "&#10;";
  default:
    return "&#13;";
  }
}

/// Appends the character of the reference whose text between "&" and ";" is `body`.
void appendReferred(std::string& text, std::string_view body) {
  constexpr std::array<std::pair<std::string_view, char>, 5> kNamed = {
      {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}}};
  for (const auto& [name, c] : kNamed) {
    if (body == name) {
      text += c;
      return;
    }
  }
  const bool isHex = body.starts_with("#x");
  const std::string_view digits = body.substr(isHex ? 2 : 1);
  std::uint32_t value = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 10);
  appendUtf8(text, value);
}

} // namespace

bool isPlainXmlText(std::string_view text) {
  const auto needsALook = [](auto c) {
    return (c == '&') | (c == '<') | (c == '>') | (isControlOrNonAscii(c) & (c != '\t') & (c != '\n'));
  };
  return findByte(text, needsALook) == text.size();
}

void appendXmlText(std::string& xml, std::string_view text) {
  appendReplaced(xml, text, isSpecialInText, escapeOf);
}

void appendXmlAttribute(std::string& xml, std::string_view text) {
  appendReplaced(
      xml, text, [](auto c) { return (c == '&') | (c == '<') | (c == '"') | (c == '\t') | (c == '\n') | (c == '\r'); },
      escapeOf);
}

std::string resolvedXmlText(std::string_view xml) {
  const auto isSpecial = [](auto c) { return (c == '&') | (c == '\r'); };
  std::string text;
  for (std::size_t at = 0; at < xml.size();) {
    const std::size_t special = findByte(xml, isSpecial, at);
    text += xml.substr(at, special - at);
    at = special;
    if (at == xml.size())
      break;
    if (xml[at] == '\r') {
      text += '\n';
      at += xml.substr(at).starts_with("\r\n") ? 2 : 1;
    } else {
      const std::size_t end = xml.find(';', at);
      appendReferred(text, xml.substr(at + 1, end - at - 1));
      at = end + 1;
    }
  }
  return text;
}

std::size_t xmlCharacterSize(std::string_view text, std::size_t position) {
  const CodePoint c = codePointAt(text, position);
  return c.valid && isXmlCharacter(c.value) ? c.bytes : 0;
}

std::size_t referenceSize(std::string_view xml) {
  const std::string_view window = xml.substr(1, kLongestReference);
  const std::string_view body = window.substr(0, window.find(';'));
  return body.size() == window.size() || !isReference(body) ? 0 : body.size() + 2;
}

bool isInUtf8(std::string_view data, std::string_view encoding) {
  const std::string_view name = encoding.empty() ? declaredEncoding(data) : encoding;
  if (data.starts_with(kUtf8Mark) || data.starts_with(kLittleEndianMark) || data.starts_with(kBigEndianMark))
    return false;
  return name.empty() || xmlEncoding(name) == XmlEncoding::utf8;
}

std::optional<XmlEncoding> xmlEncoding(std::string_view name) {
  const auto* found = std::find_if(kEncodings.begin(), kEncodings.end(),
                                   [&](const EncodingName& known) { return equalsIgnoringCase(known.name, name); });
  return found == kEncodings.end() ? std::nullopt : std::optional(found->encoding);
}

std::string xmlInUtf8(std::string_view data, std::string_view encoding) {
  switch (encoding.empty() ? encodingOf(data) : namedEncoding(encoding, data)) {
  case XmlEncoding::windows1252:
    return fromWindows1252(data);
  case XmlEncoding::utf16:
    return fromUtf16(data, !data.starts_with(kLittleEndianMark) && !data.starts_with(kLittleEndianStart));
  case XmlEncoding::utf16LittleEndian:
    return fromUtf16(data, false);
  case XmlEncoding::utf16BigEndian:
    return fromUtf16(data, true);
  case XmlEncoding::utf8:
    break;
  }
  return fromUtf8(data);
}

void requireXmlText(std::string_view text, std::string_view element) {
  const std::size_t at = findForbidden(text);
  if (at == std::string_view::npos)
    return;
  throw soapError(SoapError::unsupportedText, "PugiSoapEnvelope",
                  "The value of " + std::string(element) + " has " + nameOf(codePointAt(text, at)) + " at position " +
                      std::to_string(length(text.substr(0, at)) + 1) + ", which XML cannot carry");
}

bool isXmlName(std::string_view name) {
  if (name.empty() || !isNameStart(name.front()) || findForbidden(name) != std::string_view::npos)
    return false;
  return std::all_of(name.begin(), name.end(),
                     [](char c) { return isNameStart(c) || isAsciiDigit(c) || c == '-' || c == '.'; });
}

void requireCleanMarkup(std::string_view xml) {
  const std::size_t forbidden = findForbidden(xml);
  if (forbidden != std::string_view::npos)
    throw notSoapError("The answer has " + nameOf(codePointAt(xml, forbidden)) + ", which XML forbids", xml);
  const auto isMarkup = [](auto c) { return (c == '<') | (c == '&'); };
  for (std::size_t at = findByte(xml, isMarkup); at < xml.size(); at = findByte(xml, isMarkup, at))
    at = xml[at] == '<' ? skipMarkup(xml, at) : skipReference(xml, at);
}

} // namespace imex::platform
