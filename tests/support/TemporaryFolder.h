#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace imex::test {

/// A new, empty folder that goes away with the object. Names and paths are UTF-8.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return m_path; }

  /// The full path of a name in the folder.
  std::string operator/(std::string_view name) const;

  /// Writes a file of exactly these bytes, its folders made as needed, and returns its full path.
  std::string write(std::string_view name, std::string_view bytes) const;

  /// Makes `name` another path of a file in the folder, and returns it in full: a symbolic link, and a hard link where
  /// the C++ library makes none of the other kind.
  std::string link(std::string_view name, std::string_view target) const;

  /// The bytes of a file in the folder.
  std::string read(std::string_view name) const;

 private:
  std::filesystem::path m_path;
};

/// The bytes of any file. Fails the running test where it cannot be read.
std::string readFile(const std::filesystem::path& path);

} // namespace imex::test
