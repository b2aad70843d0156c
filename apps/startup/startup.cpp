#include "startup/startup.h"

#include <filesystem>
#include <locale>
#include <stdexcept>

namespace imex {

void useLocaleOfUser() {
  try {
    std::locale::global(std::locale(""));
  } catch (const std::runtime_error&) { // there is no such locale on this machine
  }
}

std::string absolutePath(const std::string& path) {
  if (path.empty())
    return path;
  std::string full = std::filesystem::absolute(path).string();
  while (full.size() > 1 && full.back() == '/')
    full.pop_back();
  return full;
}

} // namespace imex
