#include "support/golden.h"

#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace imex::test {

std::string golden(std::string_view name, std::string_view actual) {
  const std::filesystem::path path = std::filesystem::path(IMEX_SOURCE_DIR) / "tests" / name;
  if (std::getenv("IMEX_APPROVE") != nullptr)
    std::ofstream(path, std::ios::binary) << actual;
  return readFile(path);
}

} // namespace imex::test
