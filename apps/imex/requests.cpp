#include "requests.h"

#include "formats.h"
#include "module/ImExModule.h"
#include "runtime/paths.h"

#include <iostream>

namespace imex::cli {

void fill(ImExRequest& request, const Options& options) {
  request.ImportExport("IMPORT");
  request.DataOrigin(options.dataOrigin);
  request.DataType(options.dataType);
  request.Delimiter(options.delimiter);
  request.Schedule("INSTANT");
  request.CheckedFileName(options.file);
  request.Directory(std::string(folderOf(options.file)));
  request.AllowWarnings(options.allowWarnings);
  request.AllowTruncation(options.truncate);
  request.isCentralizedAgent = options.central;
}

namespace {

std::optional<Ending> fileProblem(ImExRequest& request, const Options& options, const ConsoleHost& host) {
  if (request.checkFileForEdit())
    return std::nullopt;
  // The box says that something is wrong; which file it is and why follows here.
  std::string reason = host.openingError(options.file);
  if (reason.empty())
    reason = host.lastError();
  if (reason.empty())
    return kRefused;
  std::cerr << "imex: " << options.file << ": " << reason << '\n';
  return kUnreadable;
}

} // namespace

std::optional<Ending> problemWith(ImExRequest& request, const Options& options, const ConsoleHost& host) {
  if (const auto problem = formatProblem(options))
    return problem;
  return fileProblem(request, options, host);
}

std::vector<LineResult> failingLines(ImExRequest& request, const ConsoleHost& host) {
  std::vector<LineResult> result;
  ImExModule::InputFile file(request.CheckedFileName());
  std::string_view line;
  for (int number = 1; file.readLine(line); ++number) {
    const int errorsBefore = host.errorCount();
    const StringsPtr findings = request.simpleClientValidation(line, request.DelimiterAscii(), request.tabCount());
    LineResult failing{number, false, {findings->begin(), findings->end()}, {}};
    if (host.errorCount() != errorsBefore)
      failing.errors.push_back("The line cannot be checked: " + host.lastError());
    if (!failing.errors.empty())
      result.push_back(std::move(failing));
  }
  return result;
}

void print(const Results& results, const Options& options) {
  if (options.asJson)
    printJson(results);
  else
    printText(results);
}

} // namespace imex::cli
