#pragma once

#include <string>

namespace imex {

/// Removes the last character, all its bytes. Does nothing to an empty text.
inline void removeLastCharacter(std::string& text) {
  const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; };
  while (text.size() > 1 && isContinuation(text.back()))
    text.pop_back();
  if (!text.empty())
    text.pop_back();
}

} // namespace imex
