#include "platform/files/DiskFiles.h"

#include "platform/system/system.h"
#include "runtime/RuntimeError.h"

#include <string>
#include <system_error>
#include <utility>

namespace imex::platform {

namespace fs = std::filesystem;

namespace {

class DiskSource : public ByteSource {
 public:
  explicit DiskSource(system::File file) : m_file(std::move(file)) {}

  std::size_t read(char* buffer, std::size_t size) override { return m_file.read(buffer, size); }
  void rewind() override { m_file.rewind(); }

 private:
  system::File m_file;
};

class DiskSink : public ByteSink {
 public:
  explicit DiskSink(system::File file) : m_file(std::move(file)) {}

  void write(std::string_view bytes) override { m_file.write(bytes); }
  void close() override { m_file.close(); }

 private:
  system::File m_file;
};

} // namespace

fs::path nativePath(std::string_view path) {
  return system::nativePath(path);
}

std::unique_ptr<ByteSource> DiskFiles::openForInput(std::string_view path) {
  return std::make_unique<DiskSource>(system::File::forInput(nativePath(path)));
}

std::unique_ptr<ByteSink> DiskFiles::openForOutput(std::string_view path, host::Owner owner) {
  return std::make_unique<DiskSink>(system::File::forOutput(nativePath(path), owner));
}

bool DiskFiles::isSameFile(std::string_view a, std::string_view b) const {
  std::error_code ignored;
  return fs::equivalent(nativePath(a), nativePath(b), ignored);
}

void DiskFiles::changeDirectory(std::string_view path) {
  system::changeDirectory(nativePath(path));
}

void DiskFiles::makeDirectory(std::string_view path) {
  const fs::path native = nativePath(path);
  std::error_code ignored;
  if (fs::exists(native, ignored))
    throw RuntimeError(ErrorNumber::pathFileAccessError, "DiskFiles");
  system::makeDirectories(native);
}

std::string DiskFiles::workingDirectory() const {
  return system::workingDirectory();
}

} // namespace imex::platform
