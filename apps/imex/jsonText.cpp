#include "jsonText.h"

#include "hiddenCharacters.h"
#include "runtime/bytes.h"
#include "runtime/text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <string_view>

namespace imex::cli {

namespace {

void appendEscaped(std::string& text, char32_t character) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  text += "\\u";
  for (const unsigned shift : {12U, 8U, 4U, 0U})
    text += kDigits[(character >> shift) & 0xFU];
}

} // namespace

std::string jsonText(const nlohmann::ordered_json& object) {
  constexpr auto kReplace = nlohmann::ordered_json::error_handler_t::replace;
  const std::string all = object.dump(2, ' ', false, kReplace); // which writes those below U+0020 as it should
  const auto needsALook = [](auto c) { return (isControlOrNonAscii(c) & (c != '\n')) | (c == 0x7F); };
  std::string text;
  text.reserve(all.size() + 1);
  for (std::size_t at = 0; at < all.size();) {
    const std::size_t plain = findByte(all, needsALook, at);
    text.append(all, at, plain - at);
    at = plain;
    if (at >= all.size())
      break;
    const CodePoint character = codePointAt(all, at);
    if (isHidden(character.value))
      appendEscaped(text, character.value);
    else
      text.append(all, at, character.bytes);
    at += character.bytes;
  }
  return text += '\n';
}

} // namespace imex::cli
