#include "commands.h"

#include "module/ImExModule.h"
#include "runtime/RuntimeError.h"

#include <iostream>

namespace {

using namespace imex;
using namespace imex::cli;

ExitStatus run(const Options& options, const ConsoleHost& host) {
  ImExModule::initialize();
  switch (options.command) {
  case Command::import:
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

} // namespace

int main(int argc, char** argv) {
  const ParsedOptions parsed = parseOptions(argc, argv);
  if (parsed.exitStatus)
    return *parsed.exitStatus;
  try {
    const ConsoleHost host(parsed.options);
    return static_cast<int>(run(parsed.options, host));
  } catch (...) {
    const RuntimeError error = currentError();
    std::cerr << "imex: " << error.description() << '\n';
    return static_cast<int>(error.source() == "FileTraceLog" ? ExitStatus::cannotOpenFile : ExitStatus::exchangeFailed);
  }
}
