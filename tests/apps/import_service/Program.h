#pragma once

#include <array>
#include <csignal>
#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

namespace imex::import_service::test {

/// The application directory that comes with the sources.
inline const std::string kShare = IMEX_SOURCE_DIR "/share";

/// The program in a process of its own, its standard output and standard error in pipes.
class Program {
 public:
  explicit Program(std::vector<std::string> arguments);
  ~Program() { stop(SIGKILL); }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The next line of standard output, read as soon as it is there; empty at the end.
  std::string line();

  /// Waits for the end and returns the exit code; -1 where the program was killed.
  int wait();

  void stop(int signal);

  /// All of standard error, after wait().
  std::string errors() const;

 private:
  [[noreturn]] void run(std::vector<std::string>& arguments, int output, int errorOutput);

  pid_t m_process = -1;
  std::array<int, 2> m_output{};
  std::array<int, 2> m_errors{};
};

/// The exit code and the standard error of a start that fails.
std::pair<int, std::string> failure(std::vector<std::string> arguments);

/// What stands behind `start`. Fails the running test where the text does not start with it.
std::string behind(const std::string& text, const std::string& start);

} // namespace imex::import_service::test
