#include "platform/files/DiskFiles.h"

#include "runtime/RuntimeError.h"
#include "runtime/text.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace imex::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSource = "DiskFiles";
constexpr mode_t kNewFileMode = 0666; // less the process's mask

[[noreturn]] void raise(ErrorNumber number) {
  throw RuntimeError(number, kSource);
}

/// The one place that turns the platform's failures into the component's.
[[noreturn]] void raiseErrno(int code, const fs::path& path = {}) {
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

/// An open descriptor, closed when it goes.
class Descriptor {
 public:
  explicit Descriptor(int fd) : m_fd(fd) {}
  Descriptor(Descriptor&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() { (void)release(); }

  int get() const { return m_fd; }

  /// Closes it and returns what close() says.
  int release() {
    const int fd = std::exchange(m_fd, -1);
    return fd < 0 ? 0 : ::close(fd);
  }

 private:
  int m_fd;
};

/// Opens a regular file. Anything else is refused before a read could block.
Descriptor openFile(const fs::path& path, int flags) {
  Descriptor descriptor(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, kNewFileMode));
  if (descriptor.get() < 0)
    raiseErrno(errno, path);
  struct stat status = {};
  if (::fstat(descriptor.get(), &status) != 0)
    raiseErrno(errno, path);
  if (!S_ISREG(status.st_mode))
    raise(ErrorNumber::pathFileAccessError);
  return descriptor;
}

class DiskSource : public ByteSource {
 public:
  explicit DiskSource(Descriptor descriptor) : m_descriptor(std::move(descriptor)) {}

  std::size_t read(char* buffer, std::size_t size) override {
    ssize_t count = 0;
    do {
      count = ::read(m_descriptor.get(), buffer, size);
    } while (count < 0 && errno == EINTR);
    if (count < 0)
      raiseErrno(errno);
    return static_cast<std::size_t>(count);
  }

  void rewind() override {
    if (::lseek(m_descriptor.get(), 0, SEEK_SET) < 0)
      raiseErrno(errno);
  }

 private:
  Descriptor m_descriptor;
};

class DiskSink : public ByteSink {
 public:
  explicit DiskSink(Descriptor descriptor) : m_descriptor(std::move(descriptor)) {}

  void write(std::string_view bytes) override {
    while (!bytes.empty()) {
      const ssize_t count = ::write(m_descriptor.get(), bytes.data(), bytes.size());
      if (count >= 0)
        bytes.remove_prefix(static_cast<std::size_t>(count));
      else if (errno != EINTR)
        raiseErrno(errno);
    }
  }

  void close() override {
    if (m_descriptor.release() != 0 && errno != EINTR)
      raiseErrno(errno);
  }

 private:
  Descriptor m_descriptor;
};

/// The entry of `folder` whose name is `name` but for case; `name` itself where there is none or the exact one is
/// there. Of several, the first by name, so that the answer does not depend on the folder's order.
std::string nameInFolder(const fs::path& folder, const std::string& name) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(folder / name, ignored)))
    return name;
  std::string found;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder.empty() ? "." : folder, ignored)) {
    std::string candidate = entry.path().filename().string();
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
  const fs::path asWritten{std::string(path)};
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

std::unique_ptr<ByteSource> DiskFiles::openForInput(std::string_view path) {
  return std::make_unique<DiskSource>(openFile(nativePath(path), O_RDONLY));
}

std::unique_ptr<ByteSink> DiskFiles::openForOutput(std::string_view path) {
  return std::make_unique<DiskSink>(openFile(nativePath(path), O_WRONLY | O_CREAT | O_TRUNC));
}

bool DiskFiles::isSameFile(std::string_view a, std::string_view b) const {
  std::error_code ignored;
  return fs::equivalent(nativePath(a), nativePath(b), ignored);
}

void DiskFiles::changeDirectory(std::string_view path) {
  const fs::path native = nativePath(path);
  if (::chdir(native.c_str()) != 0)
    raiseErrno(errno, native);
}

void DiskFiles::makeDirectory(std::string_view path) {
  const fs::path native = nativePath(path);
  std::error_code error;
  if (fs::exists(native, error))
    raise(ErrorNumber::pathFileAccessError);
  fs::create_directories(native, error);
  if (error)
    raiseErrno(error.value(), native);
}

std::string DiskFiles::workingDirectory() const {
  return (cacheDirectory() / "corvana" / "temp" / "").string();
}

} // namespace imex::platform
