#include "startup/startup.h"

#include "platform/system/system.h"

#include <filesystem>
#include <locale>

namespace imex {

void useLocaleOfUser() {
  std::locale::global(platform::system::userLocale());
  platform::system::prepareConsole();
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
