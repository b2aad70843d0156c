#pragma once

#include "runtime/encoding.h"

#include <cstddef>
#include <string>
#include <vector>

namespace imex::test {

// How a file is read, once more and the plain way.

/// The bytes of a file as text, without its mark.
inline std::string decoded(const std::string& bytes) {
  Utf8Validator validator;
  validator.feed(bytes);
  if (validator.isComplete())
    return bytes.starts_with(kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes;
  std::string text;
  appendWindows1252(text, bytes);
  return text;
}

/// The parts of a text between the separators: one more than there are of these.
inline std::vector<std::string> splitAt(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t at = 0;
  for (std::size_t end = text.find(separator); end != std::string::npos; end = text.find(separator, at)) {
    parts.push_back(text.substr(at, end - at));
    at = end + separator.size();
  }
  parts.push_back(text.substr(at));
  return parts;
}

/// The lines of a file that are not empty. A line ends at CR LF or at the end.
inline std::vector<std::string> filledLines(const std::string& bytes) {
  std::vector<std::string> lines = splitAt(decoded(bytes), "\r\n");
  std::erase(lines, std::string());
  return lines;
}

} // namespace imex::test
