#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace imex::platform {

// What XML 1.0 says about text, apart from its structure.

/// The encodings in which an answer is understood. ISO-8859-1 is read as Windows-1252, which differs from it only in
/// bytes that stand for nothing printable there.
enum class XmlEncoding { utf8, windows1252, utf16, utf16LittleEndian, utf16BigEndian };

/// The encoding of this name, in any case; nothing for a name that is not known.
std::optional<XmlEncoding> xmlEncoding(std::string_view name);

/// A document in UTF-8, without a byte order mark. `encoding` names its encoding; empty means what the byte order mark
/// says, else the XML declaration, else UTF-8. Error 1005 for an unknown encoding and for bytes that are not of it.
std::string xmlInUtf8(std::string_view data, std::string_view encoding);

/// Error 1008 for a text with a character that XML cannot carry, or with bytes that are not UTF-8. The description
/// gives the first one's code and its position in characters, counted from 1; `element` is the name of the element.
void requireXmlText(std::string_view text, std::string_view element);

/// Appends a text that passes requireXmlText() as the content of an element. A carriage return becomes "&#13;", because
/// a parser would turn it into a line feed.
void appendXmlText(std::string& xml, std::string_view text);

/// Whether the text, as most are, is ASCII that passes requireXmlText() and that appendXmlText() appends as it is.
bool isPlainXmlText(std::string_view text);

/// Appends such a text as the value of an attribute in double quotes.
void appendXmlAttribute(std::string& xml, std::string_view text);

/// The text that `xml`, the content of an element without markup and with good references, stands for. Line ends
/// become line feeds.
std::string resolvedXmlText(std::string_view xml);

/// The number of bytes of the character at `position` of a text in UTF-8; 0 where it is none of XML.
std::size_t xmlCharacterSize(std::string_view text, std::size_t position);

/// The number of bytes of the reference that a text starts with, to one of the five characters of XML or by a number; 0
/// where it starts with none.
std::size_t referenceSize(std::string_view xml);

/// Whether xmlInUtf8() would take `data` as UTF-8. False for an encoding that is not known.
bool isInUtf8(std::string_view data, std::string_view encoding);

/// Whether `name` can name an element, without a prefix.
bool isXmlName(std::string_view name);

/// Error 1005 for a document (UTF-8) with a document type declaration, a character that XML forbids, or a reference
/// that is neither one of the five of XML nor the number of a character. The parser lets all of these pass.
void requireCleanMarkup(std::string_view xml);

} // namespace imex::platform
