#include "startup/startup.h"

#include "platform/system/system.h"
#include "runtime/RuntimeError.h"
#include "runtime/address.h"

#include <cstdint>
#include <filesystem>
#include <locale>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace imex {

void keepStandardStreams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    // For reading only, also those to be written to: what cannot be delivered is to be an error. The lowest free number
    // is taken, which is this one.
    if (::fcntl(descriptor, F_GETFD) < 0)
      (void)::open("/dev/null", O_RDONLY);
  }
}

void useLocaleOfUser() {
  std::locale::global(platform::system::userLocale());
  platform::system::prepareConsole();
}

std::string absolutePath(const std::string& path) {
  if (path.empty())
    return path;
  std::error_code error;
  std::string full = std::filesystem::absolute(path, error).string();
  if (error)
    throw RuntimeError(static_cast<std::int32_t>(ErrorNumber::pathNotFound), "absolutePath",
                       path + ": the current directory cannot be found: " + error.message());
  while (full.size() > 1 && full.back() == '/')
    full.pop_back();
  return full;
}

std::string plainWords(const std::string& parserMessage) {
  const std::size_t required = parserMessage.find(": 1 required "); // "--config: 1 required FILE missing"
  const bool lacksValue = required != std::string::npos && parserMessage.ends_with(" missing");
  return lacksValue ? parserMessage.substr(0, required) + " needs a value" : parserMessage;
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

std::string withoutPasswords(std::string message, int argc, const char* const* argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    const std::size_t equals = argument.starts_with("--") ? argument.find('=') : std::string_view::npos;
    const std::string_view value = equals == std::string_view::npos ? argument : argument.substr(equals + 1);
    if (value.find('@') != std::string_view::npos)
      hide(message, value, shownAddress(value));
  }
  return message;
}

} // namespace imex
