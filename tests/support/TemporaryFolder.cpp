#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace imex::test {

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "imex-test-XXXXXX").string();
  if (::mkdtemp(pattern.data()) == nullptr)
    throw std::runtime_error("no temporary folder: " + pattern);
  m_path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
  const std::filesystem::path file = m_path / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream.flush())
    throw std::runtime_error("cannot write " + file.string());
  return file.string();
}

std::string TemporaryFolder::read(std::string_view name) const {
  return readFile(m_path / name);
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream)
    throw std::runtime_error("cannot read " + path.string());
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

} // namespace imex::test
