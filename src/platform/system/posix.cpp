#include "platform/system/system.h"

#include "runtime/RuntimeError.h"
#include "runtime/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace imex::platform::system {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSource = "DiskFiles";
constexpr mode_t kNewFileMode = 0666; // less the process's mask
constexpr int kNone = -1;

[[noreturn]] void raise(ErrorNumber number) {
  throw RuntimeError(number, kSource);
}

[[noreturn]] void raiseErrno(int code, const fs::path& path) {
  switch (code) {
  case ENOENT: {
    std::error_code ignored;
    const bool hasFolder = !path.has_parent_path() || fs::is_directory(path.parent_path(), ignored);
    raise(hasFolder ? ErrorNumber::fileNotFound : ErrorNumber::pathNotFound);
  }
  case ENOTDIR:
    raise(ErrorNumber::pathNotFound);
  case EACCES:
  case EPERM:
  case EROFS:
    raise(ErrorNumber::permissionDenied);
  case EISDIR:
  case EEXIST:
  case ELOOP: // a link where none is followed, or links in a circle
  case ENXIO: // a pipe that nobody reads, a socket
    raise(ErrorNumber::pathFileAccessError);
  case ENOSPC:
  case EDQUOT:
  case EFBIG:
    raise(ErrorNumber::diskFull);
  case ENOMEM:
    raise(ErrorNumber::outOfMemory);
  default:
    raise(ErrorNumber::deviceIoError);
  }
}

int descriptorOf(std::intptr_t handle) {
  return static_cast<int>(handle);
}

int open(const fs::path& path, int flags) {
  // Without O_NONBLOCK the opening of a pipe would wait.
  const int descriptor = ::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kNewFileMode);
  if (descriptor < 0)
    raiseErrno(errno, path);
  return descriptor;
}

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// The entry of `folder` whose name is `name` but for case; `name` itself where there is none or the exact one is
/// there. Of several, the first by name, so that the answer does not depend on the folder's order.
std::string nameInFolder(const fs::path& folder, const std::string& name) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(folder / name, ignored)))
    return name;
  std::string found;
  // The standard library's iterator ends the program where it finds no memory.
  const Folder entries(::opendir(folder.empty() ? "." : folder.c_str()));
  while (const dirent* entry = entries ? ::readdir(entries.get()) : nullptr) {
    std::string candidate = entry->d_name;
    if (equalsIgnoringCase(candidate, name) && (found.empty() || candidate < found))
      found = std::move(candidate);
  }
  return found.empty() ? name : found;
}

/// The user's cache directory by the XDG rules; the system's temporary folder where the user has no home.
fs::path cacheDirectory() {
  if (const char* cache = std::getenv("XDG_CACHE_HOME"); cache != nullptr && fs::path(cache).is_absolute())
    return cache;
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0')
    return fs::path(home) / ".cache";
  if (const passwd* entry = ::getpwuid(::getuid()); entry != nullptr && entry->pw_dir != nullptr)
    return fs::path(entry->pw_dir) / ".cache";
  return fs::temp_directory_path();
}

} // namespace

fs::path nativePath(std::string_view path) {
  std::error_code ignored;
  fs::path asWritten{std::string(path)};
  if (fs::exists(fs::symlink_status(asWritten, ignored)))
    return asWritten;
  // A new file in a folder that exists: the folder's name may hold a "\\" of its own.
  const std::string name = asWritten.filename().string();
  if (name.find('\\') == std::string::npos && fs::is_directory(asWritten.parent_path(), ignored))
    return asWritten.parent_path() / nameInFolder(asWritten.parent_path(), name);

  std::string slashed(path);
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  fs::path result;
  for (const fs::path& part : fs::path(slashed)) {
    const bool isName = !part.empty() && !part.has_root_path() && part != "." && part != "..";
    result /= isName ? fs::path(nameInFolder(result, part.string())) : part;
  }
  return result;
}

std::string textOf(const fs::path& path) {
  return path.string();
}

void raiseLastFailure(const fs::path& path) {
  raiseErrno(errno, path);
}

File File::forInput(const fs::path& path) {
  File file(open(path, O_RDONLY));
  file.requireRegular(path);
  return file;
}

File File::forOutput(const fs::path& path, host::Owner owner) {
  const bool isOwn = owner == host::Owner::component;
  File file(open(path, O_WRONLY | O_CREAT | (isOwn ? O_NOFOLLOW : O_TRUNC)));
  file.requireRegular(path);
  file.m_isCutAtEnd = isOwn;
  return file;
}

File::File(File&& other) noexcept : m_handle(std::exchange(other.m_handle, kNone)), m_isCutAtEnd(other.m_isCutAtEnd) {}

File::~File() {
  if (m_handle == kNone)
    return;
  (void)cutBehindEnd();
  ::close(descriptorOf(m_handle));
}

bool File::cutBehindEnd() const {
  if (!m_isCutAtEnd)
    return true;
  const off_t end = ::lseek(descriptorOf(m_handle), 0, SEEK_CUR);
  int result = end < 0 ? -1 : ::ftruncate(descriptorOf(m_handle), end);
  while (result != 0 && errno == EINTR)
    result = ::ftruncate(descriptorOf(m_handle), end);
  return result == 0;
}

void File::requireRegular(const fs::path& path) const {
  struct stat status = {};
  if (::fstat(descriptorOf(m_handle), &status) != 0)
    raiseLastFailure(path);
  if (!S_ISREG(status.st_mode))
    raise(ErrorNumber::pathFileAccessError);
}

std::size_t File::read(char* buffer, std::size_t size) {
  ssize_t count = 0;
  do {
    count = ::read(descriptorOf(m_handle), buffer, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0)
    raiseLastFailure();
  return static_cast<std::size_t>(count);
}

void File::write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(descriptorOf(m_handle), bytes.data(), bytes.size());
    if (count >= 0)
      bytes.remove_prefix(static_cast<std::size_t>(count));
    else if (errno != EINTR)
      raiseLastFailure();
  }
}

void File::rewind() {
  if (::lseek(descriptorOf(m_handle), 0, SEEK_SET) < 0)
    raiseLastFailure();
}

void File::close() {
  if (m_handle == kNone)
    return;
  const int cutting = cutBehindEnd() ? 0 : errno;
  const std::intptr_t handle = std::exchange(m_handle, kNone);
  if (::close(descriptorOf(handle)) != 0 && errno != EINTR)
    raiseLastFailure();
  if (cutting != 0)
    raiseErrno(cutting, {});
}

void changeDirectory(const fs::path& path) {
  if (::chdir(path.c_str()) != 0)
    raiseLastFailure(path);
}

void makeDirectories(const fs::path& path) {
  std::error_code error;
  fs::create_directories(path, error);
  if (error)
    raiseErrno(error.value(), path);
}

void expectFilling(void* bytes, std::size_t size) noexcept {
#ifdef MADV_HUGEPAGE
  constexpr std::size_t kLeast = std::size_t{4} * 1024 * 1024; // below, there is hardly a large page in it
  if (size < kLeast)
    return;
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  if (std::align(page, page, bytes, size) != nullptr) // the first whole page, and what is left from there
    static_cast<void>(::madvise(bytes, size / page * page, MADV_HUGEPAGE)); // advice, which may be ignored
#else
  static_cast<void>(bytes);
  static_cast<void>(size);
#endif
}

std::string workingDirectory() {
  return textOf(cacheDirectory() / "corvana" / "temp" / "");
}

std::locale userLocale() {
  try {
    return std::locale("");
  } catch (const std::runtime_error&) { // there is no such locale on this machine
    return std::locale::classic();
  }
}

void prepareConsole() {}

} // namespace imex::platform::system
