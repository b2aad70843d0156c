#include "controls/ImExFileEdit/savedLine.h"

#include "controls/ImExFileEdit/lastCharacter.h"
#include "runtime/text.h"

#include <cstddef>

namespace imex {

void removeLineBreaks(std::string& line, std::string_view delimiter) {
  std::size_t found = line.find(kLineBreak);
  if (found == std::string::npos)
    return;
  for (; found != std::string::npos; found = line.find(kLineBreak, found + delimiter.size()))
    line.replace(found, kLineBreak.size(), delimiter);
  removeLastCharacter(line);
}

bool isBlank(std::string_view text) {
  return text.find_first_not_of(' ') == std::string_view::npos;
}

} // namespace imex
