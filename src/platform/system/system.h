#pragma once

#include "host/Files.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <locale>
#include <string>
#include <string_view>

namespace imex::platform::system {

// What each kind of operating system does in its own way. Everything here is defined twice, in posix.cpp and in
// windows.cpp, and one of them is built. Texts are UTF-8; paths are as nativePath() makes them. Failures are the
// RuntimeErrors of a host::Files.

/// The path in the system's form. Both separators are understood. POSIX: a path that exists as it is written is taken
/// so, and so is the folder of a new file; otherwise "\" is a separator like "/", and a name that is missing is taken
/// in the case in which the folder holds it, the first in byte order where it holds several; what is not found in any
/// case keeps its name. Windows: "/" becomes "\"; case is left to the system, which takes no account of it. What is no
/// UTF-8 becomes U+FFFD there. Never raises but for want of memory.
std::filesystem::path nativePath(std::string_view path);

/// A path as text.
std::string textOf(const std::filesystem::path& path);

/// Raises the error of the call to the system that failed last. `path` is what it was about: error 53 becomes 76 where
/// its folder is missing. Empty where a file was open.
[[noreturn]] void raiseLastFailure(const std::filesystem::path& path = {});

/// An open file, closed when it goes. Anything but a file (a folder, a pipe, a device) is error 75, without waiting for
/// somebody at its other end.
class File {
 public:
  /// Opens an existing file for reading. Windows: others may go on writing, renaming and removing it.
  static File forInput(const std::filesystem::path& path);

  /// Creates a file or empties an existing one. A file of the component's keeps what lies behind the written bytes
  /// until it is closed: emptied at once it would lose the memory and the disk blocks that it has, only to get others
  /// for nearly the same bytes, and some file systems let the program wait for the disk then. A link in its place is
  /// error 75, by the same call to the system that opens the file, so that none can come between. Windows: every file
  /// is emptied at once; while it is open others may read it, and nobody may write it.
  static File forOutput(const std::filesystem::path& path, host::Owner owner);

  File(File&& other) noexcept;
  File& operator=(File&&) = delete;
  ~File();

  /// Reads up to `size` bytes and returns how many; 0 at the end.
  std::size_t read(char* buffer, std::size_t size);

  /// Writes all of the bytes.
  void write(std::string_view bytes);

  /// Goes back to the first byte.
  void rewind();

  /// Closes it and raises what the system says to that. A second call does nothing.
  void close();

 private:
  explicit File(std::intptr_t handle) : m_handle(handle) {}
  void requireRegular(const std::filesystem::path& path) const;
  /// Takes away what lies behind the bytes that were written, where that is still there. False where the system
  /// refuses.
  bool cutBehindEnd() const;

  std::intptr_t m_handle; ///< -1 for none
  bool m_isCutAtEnd = false;
};

/// Makes `path` the process's current directory.
void changeDirectory(const std::filesystem::path& path);

/// Creates a directory that does not exist, with those above it that are missing.
void makeDirectories(const std::filesystem::path& path);

/// Asks for large pages behind memory that is about to be filled, and does nothing where they make no difference: a
/// text of many megabytes is then filled with a few steps of the system in place of thousands. `bytes` belong to the
/// caller. Never raises.
IMEX_EXPORT void expectFilling(void* bytes, std::size_t size) noexcept;

/// Where temporary files are kept, with a separator at its end: "c:\temp\" on Windows, elsewhere the folder
/// "corvana/temp" in the user's cache directory.
std::string workingDirectory();

/// The locale by whose rules the user writes numbers; the classic one where the system does not know it. On Windows,
/// whose C++ library may know the classic locale alone, this one has the separators and the currency sign of the
/// user's settings and is classic otherwise.
std::locale userLocale();

/// Lets UTF-8 texts that the program writes to a console appear as they are. Consoles elsewhere need nothing.
void prepareConsole();

} // namespace imex::platform::system
