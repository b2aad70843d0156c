#include "startup/startup.h"

#include "platform/system/system.h"

#include <filesystem>
#include <locale>
#include <system_error>

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

std::filesystem::path programFolder() {
  std::error_code unreadable; // where the system shows no processes
  return std::filesystem::read_symlink("/proc/self/exe", unreadable).parent_path();
}

std::string installedDirectory() {
  const std::filesystem::path folder = programFolder();
  if (folder.empty())
    return {};
  const std::filesystem::path directory = folder.parent_path() / "share" / "corvana";
  std::error_code unreadable;
  return std::filesystem::is_directory(directory / "docs", unreadable) ? directory.string() : std::string();
}

} // namespace imex
