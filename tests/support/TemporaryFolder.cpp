#include "support/TemporaryFolder.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace imex::test {

namespace {

/// The path of a name in UTF-8.
std::filesystem::path pathOf(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

std::string textOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

} // namespace

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do // a name may be taken
    m_path = std::filesystem::temp_directory_path() / ("imex-test-" + std::to_string(random()));
  while (!std::filesystem::create_directory(m_path));
  std::filesystem::permissions(m_path, std::filesystem::perms::owner_all);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::operator/(std::string_view name) const {
  return textOf(m_path / pathOf(name));
}

std::string TemporaryFolder::write(std::string_view name, std::string_view bytes) const {
  const std::filesystem::path file = m_path / pathOf(name);
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream.flush())
    throw std::runtime_error("cannot write " + textOf(file));
  return textOf(file);
}

std::string TemporaryFolder::link(std::string_view name, std::string_view target) const {
  std::error_code error;
  std::filesystem::create_symlink(m_path / pathOf(target), m_path / pathOf(name), error);
  if (error == std::errc::function_not_supported)
    std::filesystem::create_hard_link(m_path / pathOf(target), m_path / pathOf(name), error);
  if (error)
    throw std::runtime_error("cannot link " + std::string(name));
  return *this / name;
}

std::string TemporaryFolder::read(std::string_view name) const {
  return readFile(m_path / pathOf(name));
}

std::string readFile(const std::filesystem::path& path) {
  std::ifstream stream(path, std::ios::binary);
  if (!stream)
    throw std::runtime_error("cannot read " + textOf(path));
  std::ostringstream bytes;
  bytes << stream.rdbuf();
  return bytes.str();
}

} // namespace imex::test
