#include "platform/system/system.h"

#include "runtime/RuntimeError.h"

#include <algorithm>
#include <limits>
#include <system_error>
#include <utility>

#include <windows.h>

namespace imex::platform::system {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kSource = "DiskFiles";
constexpr std::intptr_t kNone = -1;        // as INVALID_HANDLE_VALUE
constexpr DWORD kDiskQuotaExceeded = 1295; // not every edition of the system's headers names it

[[noreturn]] void raise(ErrorNumber number) {
  throw RuntimeError(number, kSource);
}

bool isDirectory(const fs::path& path) {
  const DWORD attributes = ::GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

[[noreturn]] void raiseError(DWORD code, const fs::path& path) {
  switch (code) {
  case ERROR_FILE_NOT_FOUND:
  case ERROR_PATH_NOT_FOUND:
  case ERROR_INVALID_NAME: // a name that no file can have
  case ERROR_INVALID_DRIVE:
  case ERROR_BAD_NETPATH:
  case ERROR_BAD_NET_NAME: {
    const bool hasFolder = !path.has_parent_path() || isDirectory(path.parent_path());
    raise(hasFolder ? ErrorNumber::fileNotFound : ErrorNumber::pathNotFound);
  }
  case ERROR_DIRECTORY: // a file where a folder is wanted
    raise(ErrorNumber::pathNotFound);
  case ERROR_ACCESS_DENIED:
  case ERROR_SHARING_VIOLATION:
  case ERROR_LOCK_VIOLATION:
  case ERROR_WRITE_PROTECT:
    raise(ErrorNumber::permissionDenied);
  case ERROR_ALREADY_EXISTS:
  case ERROR_FILE_EXISTS:
  case ERROR_PIPE_BUSY:
    raise(ErrorNumber::pathFileAccessError);
  case ERROR_DISK_FULL:
  case ERROR_HANDLE_DISK_FULL:
  case kDiskQuotaExceeded:
  case ERROR_FILE_TOO_LARGE:
    raise(ErrorNumber::diskFull);
  case ERROR_NOT_ENOUGH_MEMORY:
  case ERROR_OUTOFMEMORY:
    raise(ErrorNumber::outOfMemory);
  default:
    raise(ErrorNumber::deviceIoError);
  }
}

HANDLE handleOf(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

/// As much of `size` as one call takes.
DWORD portionOf(std::size_t size) {
  return static_cast<DWORD>(std::min<std::size_t>(size, std::numeric_limits<DWORD>::max()));
}

std::intptr_t open(const fs::path& path, DWORD access, DWORD sharing, DWORD creation, DWORD flags = 0) {
  const HANDLE handle =
      ::CreateFileW(path.c_str(), access, sharing, nullptr, creation, FILE_ATTRIBUTE_NORMAL | flags, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    const DWORD code = ::GetLastError();
    if (isDirectory(path)) // no one code tells, it depends on how the path is written
      raise(ErrorNumber::pathFileAccessError);
    raiseError(code, path);
  }
  return reinterpret_cast<std::intptr_t>(handle);
}

bool isLink(HANDLE file) {
  FILE_ATTRIBUTE_TAG_INFO info = {};
  return ::GetFileInformationByHandleEx(file, FileAttributeTagInfo, &info, sizeof info) != 0 &&
         (info.FileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && IsReparseTagNameSurrogate(info.ReparseTag);
}

std::wstring toWide(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0'); // never longer than the UTF-8
  const int count = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), size);
  wide.resize(static_cast<std::size_t>(count));
  return wide;
}

/// Like CreateDirectoryW, and those above it that are missing.
bool createDirectories(const fs::path& path) {
  if (::CreateDirectoryW(path.c_str(), nullptr) != 0)
    return true;
  if (::GetLastError() != ERROR_PATH_NOT_FOUND || !path.has_relative_path())
    return false;
  createDirectories(path.parent_path());
  return ::CreateDirectoryW(path.c_str(), nullptr) != 0;
}

/// A text of the user's settings for numbers, empty where there is none.
std::wstring setting(LCTYPE type) {
  std::wstring text(16, L'\0'); // the longest is shorter
  const int size = ::GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, type, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(std::max(size, 1) - 1)); // without the zero behind it
  return text;
}

class UserNumbers : public std::numpunct<wchar_t> {
 protected:
  wchar_t do_decimal_point() const override { return *m_decimal.c_str(); }
  wchar_t do_thousands_sep() const override { return *m_thousands.c_str(); }

 private:
  std::wstring m_decimal = setting(LOCALE_SDECIMAL);
  std::wstring m_thousands = setting(LOCALE_STHOUSAND);
};

class UserMoney : public std::moneypunct<wchar_t, false> {
 protected:
  string_type do_curr_symbol() const override { return m_sign; }

 private:
  std::wstring m_sign = setting(LOCALE_SCURRENCY);
};

} // namespace

fs::path nativePath(std::string_view path) {
  return fs::path(toWide(path)).make_preferred();
}

std::string textOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

void raiseLastFailure(const fs::path& path) {
  raiseError(::GetLastError(), path);
}

File File::forInput(const fs::path& path) {
  File file(open(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, OPEN_EXISTING));
  file.requireRegular(path);
  return file;
}

File File::forOutput(const fs::path& path, host::Owner owner) {
  // A link is opened itself then, and told from a file by its tag. Files that are kept elsewhere have tags as well.
  const DWORD flags = owner == host::Owner::component ? FILE_FLAG_OPEN_REPARSE_POINT : 0;
  File file(open(path, GENERIC_WRITE | FILE_READ_ATTRIBUTES, FILE_SHARE_READ, OPEN_ALWAYS, flags));
  file.requireRegular(path);
  if (owner == host::Owner::component && isLink(handleOf(file.m_handle)))
    raise(ErrorNumber::pathFileAccessError);
  if (::SetEndOfFile(handleOf(file.m_handle)) == 0) // CREATE_ALWAYS would refuse a hidden file
    raiseLastFailure(path);
  return file;
}

File::File(File&& other) noexcept : m_handle(std::exchange(other.m_handle, kNone)) {}

File::~File() {
  if (m_handle != kNone)
    ::CloseHandle(handleOf(m_handle));
}

void File::requireRegular(const fs::path&) const {
  if (::GetFileType(handleOf(m_handle)) != FILE_TYPE_DISK)
    raise(ErrorNumber::pathFileAccessError);
}

std::size_t File::read(char* buffer, std::size_t size) {
  DWORD count = 0;
  if (::ReadFile(handleOf(m_handle), buffer, portionOf(size), &count, nullptr) == 0)
    raiseLastFailure();
  return count;
}

void File::write(std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD count = 0;
    if (::WriteFile(handleOf(m_handle), bytes.data(), portionOf(bytes.size()), &count, nullptr) == 0)
      raiseLastFailure();
    bytes.remove_prefix(count);
  }
}

void File::rewind() {
  if (::SetFilePointerEx(handleOf(m_handle), {}, nullptr, FILE_BEGIN) == 0)
    raiseLastFailure();
}

void File::close() {
  const std::intptr_t handle = std::exchange(m_handle, kNone);
  if (handle != kNone && ::CloseHandle(handleOf(handle)) == 0)
    raiseLastFailure();
}

void changeDirectory(const fs::path& path) {
  if (::SetCurrentDirectoryW(path.c_str()) == 0)
    raiseLastFailure(path);
}

void makeDirectories(const fs::path& path) {
  if (!createDirectories(path.has_filename() ? path : path.parent_path()))
    raiseLastFailure(path);
}

void expectFilling(void*, std::size_t) noexcept {}

std::string workingDirectory() {
  return "c:\\temp\\";
}

std::locale userLocale() {
  return {std::locale(std::locale::classic(), new UserNumbers), new UserMoney};
}

void prepareConsole() {
  ::SetConsoleOutputCP(CP_UTF8);
}

} // namespace imex::platform::system
