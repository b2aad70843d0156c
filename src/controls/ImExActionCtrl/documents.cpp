#include "controls/ImExActionCtrl/documents.h"

#include <array>
#include <cstdio>

namespace imex {

std::string newFileName(const host::LocalTime& time) {
  std::array<char, 64> name = {};
  std::snprintf(name.data(), name.size(), "%02d%02d%04d%02d%02d.txt", time.month, time.day, time.year, time.hour,
                time.minute);
  return name.data();
}

std::string documentationPath(std::string_view installationDirectory, std::string_view prefix,
                              std::string_view dataType, std::string_view dataOrigin) {
  std::string path(installationDirectory);
  path.append("\\docs\\").append(prefix).append(dataType).append(dataOrigin).append(".html");
  return path;
}

std::string templateLine(const Strings& columns) {
  std::string line;
  for (const std::string& column : columns)
    line.append(column).append("\t");
  if (!line.empty())
    line.pop_back(); // names stand between tabs, so the last one has none behind it
  return line;
}

} // namespace imex
