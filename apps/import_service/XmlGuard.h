#pragma once

#include <string_view>

namespace imex::import_service {

/// Elements may lie this deep inside one another, the root included.
inline constexpr int kDeepestElement = 32;

/// Elements, attributes, comments, instructions and CDATA sections together; a parser takes many times their own bytes
/// for each. No file of the desktop application comes near.
inline constexpr int kMostPieces = 2'000'000;

/// Refuses, by a ClientFault that names the byte, what a lenient XML parser lets pass: bytes that are not UTF-8,
/// characters that XML forbids, a document type, references other than the five of XML and character numbers, text or
/// a second element outside the root, elements nested deeper than kDeepestElement, more pieces than kMostPieces, two
/// attributes of the same name in a tag, and an end that comes too early. Whether start and end tags have the same name
/// and attributes are well formed is left to the parser.
void requireSoundXml(std::string_view xml);

} // namespace imex::import_service
