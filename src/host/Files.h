#pragma once

#include "runtime/ByteStream.h"
#include "runtime/export.h"

#include <memory>
#include <string>
#include <string_view>

namespace imex::host {

/// Whose a file is that is written.
///
/// A file of the user's may be reached by a symbolic link. It is emptied before it is written: where the machine stops,
/// it has lost its end and is no mixture of what it was and what it was to be.
///
/// A file that the component names itself may not be a symbolic link, because somebody else may have put it there. It
/// is written over in place, and cut at its new end when it is closed, which saves the disk a new file each time.
enum class Owner { user, component };

/// The file system. A path may have either separator, "\" or "/"; the implementation turns it into one of the platform
/// and leaves case out of account where the exact name is missing. Failures are RuntimeErrors: 53 no such file, 76 a
/// folder of the path is missing, 75 a folder (or another thing that is no file) where a file is wanted, 70 no access,
/// 61 disk full, 57 anything else.
class IMEX_EXPORT Files {
 public:
  virtual ~Files() = default;

  /// Opens an existing file for reading. It is never changed by that.
  virtual std::unique_ptr<ByteSource> openForInput(std::string_view path) = 0;

  /// Creates a file or empties an existing one, at the latest when it is closed, and opens it for writing. In the place
  /// of a file of the component's, a symbolic link, also one that leads nowhere, is error 75, and what it leads to
  /// stays as it is; links to the folders above are followed.
  virtual std::unique_ptr<ByteSink> openForOutput(std::string_view path, Owner owner) = 0;
  std::unique_ptr<ByteSink> openForOutput(std::string_view path) { return openForOutput(path, Owner::user); }

  /// Whether two paths lead to the same existing file, by way of links too. Never raises.
  virtual bool isSameFile(std::string_view a, std::string_view b) const = 0;

  /// Makes `path` the process's current directory.
  virtual void changeDirectory(std::string_view path) = 0;

  /// Creates a directory, with the directories above it that are missing. Error 75 where it exists.
  virtual void makeDirectory(std::string_view path) = 0;

  /// Where the component keeps its temporary files: "c:\temp\" on Windows, elsewhere the folder "temp" in the user's
  /// cache directory of the application, in native form. It ends in a separator and need not exist.
  virtual std::string workingDirectory() const = 0;
};

} // namespace imex::host
