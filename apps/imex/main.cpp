#include "VisibleControls.h"
#include "commands.h"

#include "module/ImExModule.h"
#include "runtime/RuntimeError.h"
#include "startup/startup.h"

#include <csignal>
#include <iostream>
#include <optional>

namespace {

using namespace imex;
using namespace imex::cli;

ExitStatus run(const Options& options, const ConsoleHost& host) {
  ImExModule::initialize();
  switch (options.command) {
  case Command::importFile:
    return runImport(options, host);
  case Command::check:
    return runCheck(options, host);
  case Command::columnTemplate:
    return runTemplate(options);
  case Command::formats:
    return runFormats(options);
  }
  return ExitStatus::wrongUse;
}

/// Everything but what becomes of the output.
int runProgram(int argc, char** argv) {
  const ParsedOptions parsed = parseOptions(argc, argv);
  if (parsed.exitStatus)
    return *parsed.exitStatus;
  useLocaleOfUser();
  std::optional<VisibleControls> results;
  if (!parsed.options.asJson) // JSON has its own way to write them
    results.emplace(std::cout);
  try {
    const ConsoleHost host(parsed.options);
    return static_cast<int>(run(parsed.options, host));
  } catch (...) {
    const RuntimeError error = currentError();
    std::cerr << "imex: " << error.description() << '\n';
    return static_cast<int>(error.source() == "FileTraceLog" ? ExitStatus::cannotOpenFile : ExitStatus::exchangeFailed);
  }
}

} // namespace

int main(int argc, char** argv) {
  keepStandardStreams();
  // A file that grows past a limit of the user's is an error like a full disk and must not end the program.
  std::signal(SIGXFSZ, SIG_IGN);
  std::ios::sync_with_stdio(false); // results go out in large pieces; before an error they all go out
  const VisibleControls errors(std::cerr);
  const int status = runProgram(argc, argv);
  if (std::cout.flush())
    return status;
  std::cerr << "imex: the results cannot be written to standard output\n";
  return static_cast<int>(ExitStatus::cannotWriteResults);
}
