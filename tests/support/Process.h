#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace imex::test {

/// What a program that has ended left behind.
struct Ended {
  int status = -1; ///< the exit status; 128 and the signal's number where a signal ended it
  std::string out;
  std::string err;
};

/// Runs a program to its end, without standard input. `environment` is added to the test's own.
Ended run(const std::string& program, const std::vector<std::string>& arguments,
          const std::vector<std::string>& environment = {});

/// A program that goes on in the background; it is told to end (SIGTERM), and waited for, when the object goes.
class BackgroundProcess {
 public:
  BackgroundProcess(const std::string& program, const std::vector<std::string>& arguments);
  ~BackgroundProcess();
  BackgroundProcess(const BackgroundProcess&) = delete;
  BackgroundProcess& operator=(const BackgroundProcess&) = delete;

  /// The next line of its standard output, waited for; empty at the end of the output.
  std::string readLine();

  /// Ends it at once, without a chance to tidy up, and tells how it ended, as Ended::status does: 137 where it was
  /// still running. A second call tells -1.
  int kill();

 private:
  int end(int signal);

  pid_t m_pid = -1;
  int m_out = -1;
};

} // namespace imex::test
