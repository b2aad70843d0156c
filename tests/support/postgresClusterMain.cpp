#include "support/PostgresCluster.h"
#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>

using imex::test::PostgresCluster;

namespace {

/// Also ends the server of an earlier run that was broken off.
void stop(const std::string& file) {
  if (std::filesystem::exists(file))
    PostgresCluster::adopted(imex::test::readFile(file));
  std::filesystem::remove(file);
}

void start(const std::string& file, const std::string& settings) {
  stop(file);
  PostgresCluster cluster(settings);
  std::ofstream(file) << cluster.release();
}

} // namespace

/// postgres_cluster start|stop FILE [SETTINGS]: the server that the tests of a run share. FILE describes it while it
/// runs, its port in the first line.
int main(int argc, char** argv) {
  try {
    const std::string_view command = argc == 3 || argc == 4 ? argv[1] : "";
    if (command == "start")
      start(argv[2], argc == 4 ? argv[3] : "-c fsync=off");
    else if (command == "stop")
      stop(argv[2]);
    else
      throw std::runtime_error("usage: postgres_cluster start|stop FILE [SETTINGS]");
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
