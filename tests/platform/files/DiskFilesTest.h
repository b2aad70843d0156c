#pragma once

#include "platform/files/DiskFiles.h"
#include "support/TemporaryFolder.h"
#include "support/raised.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace imex::test {

/// The adapter over a temporary folder. The current directory of the process is put back at the end.
class DiskFiles : public testing::Test {
 protected:
  DiskFiles() : m_currentDirectory(std::filesystem::current_path()) {}
  ~DiskFiles() override { std::filesystem::current_path(m_currentDirectory); }

  /// The path of a name in the folder, written with backslashes.
  std::string backslashed(std::string_view name) const { return folder.path().string() + "\\" + std::string(name); }

  /// The names that the folder holds, in order.
  Texts names() const {
    Texts result;
    for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder.path()))
      result.push_back(entry.path().filename().string());
    std::sort(result.begin(), result.end());
    return result;
  }

  /// The bytes of a file, by the adapter.
  std::string contents(std::string_view path) {
    const std::unique_ptr<ByteSource> source = files.openForInput(path);
    return readAll(*source);
  }

  /// What is left to read.
  static std::string readAll(ByteSource& source) {
    std::string bytes;
    char buffer[7];
    while (const std::size_t count = source.read(buffer, sizeof buffer))
      bytes.append(buffer, count);
    return bytes;
  }

  /// The number of the error of opening, 0 for none.
  std::int32_t errorOfInput(std::string_view path) {
    return raisedNumber([&] { files.openForInput(path); });
  }

  std::int32_t errorOfOutput(std::string_view path) {
    return raisedNumber([&] { files.openForOutput(path); });
  }

  TemporaryFolder folder;
  platform::DiskFiles files;

 private:
  std::filesystem::path m_currentDirectory;
};

} // namespace imex::test
