#pragma once

#include "host/Files.h"
#include "runtime/export.h"

#include <filesystem>
#include <string_view>

namespace imex::platform {

/// The file system of this machine.
class IMEX_EXPORT DiskFiles : public host::Files {
 public:
  std::unique_ptr<ByteSource> openForInput(std::string_view path) override;
  using Files::openForOutput;
  std::unique_ptr<ByteSink> openForOutput(std::string_view path, host::Owner owner) override;
  bool isSameFile(std::string_view a, std::string_view b) const override;
  void changeDirectory(std::string_view path) override;
  void makeDirectory(std::string_view path) override;
  std::string workingDirectory() const override;
};

/// The path in the platform's form. A path that exists as it is written is taken so, and so is the folder of a new
/// file. Otherwise "\" is a separator like "/", and a name that is missing is taken in the case in which the folder
/// holds it, the first in byte order where it holds several; what is not found in any case keeps its name. On Windows
/// "/" becomes "\", and the system itself leaves case out of account.
IMEX_EXPORT std::filesystem::path nativePath(std::string_view path);

} // namespace imex::platform
