#include "harness/fuzz.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Runs a target over every file of the folders that it is given: its corpus, and what was found before. A target that
// is built by a compiler without a fuzzer is a test by that.

namespace {

std::string bytesOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  if (std::filesystem::is_directory(folder)) {
    for (const auto& entry : std::filesystem::directory_iterator(folder))
      files.push_back(entry.path());
  }
  return files;
}

} // namespace

int main(int count, char** arguments) {
  int inputs = 0;
  for (int i = 1; i < count; ++i) {
    for (const std::filesystem::path& path : filesIn(arguments[i])) {
      const std::string bytes = bytesOf(path);
      std::cerr << path.filename().string() << '\n'; // the last one named is the one that failed
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  std::cout << inputs << " inputs\n";
  return inputs > 0 ? EXIT_SUCCESS : EXIT_FAILURE; // a test over nothing proves nothing
}
