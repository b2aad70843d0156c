#include "requests.h"

#include "formats.h"
#include "module/ImExModule.h"
#include "request/shared.h"
#include "runtime/paths.h"

#include <algorithm>
#include <array>
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
  const int errorsBefore = host.errorCount();
  if (request.checkFileForEdit())
    return std::nullopt;
  // The box says that something is wrong; which file it is and why follows here.
  if (host.lastPrompt() != kCannotOpenFile)
    return kRefused;
  return tellUnreadable(options, host.errorCount() != errorsBefore ? host.lastError() : std::nullopt);
}

void addFailingLines(std::vector<LineResult>& lines, ImExRequest& request, const ConsoleHost& host) {
  ImExModule::InputFile file(request.CheckedFileName());
  std::string_view line;
  for (int number = 1; file.readLine(line); ++number) {
    const int errorsBefore = host.errorCount();
    const StringsPtr findings = request.simpleClientValidation(line, request.DelimiterAscii(), request.tabCount());
    LineResult failing{number, false, {findings->begin(), findings->end()}, {}};
    if (host.errorCount() != errorsBefore)
      failing.errors.push_back("The line cannot be checked: " + reasonOf(*host.lastError()));
    if (!failing.errors.empty())
      lines.push_back(std::move(failing));
  }
}

} // namespace

std::optional<Ending> problemWith(ImExRequest& request, const Options& options, const ConsoleHost& host) {
  if (const auto problem = formatProblem(options))
    return problem;
  return fileProblem(request, options, host);
}

bool isOfFile(const RuntimeError& error) {
  constexpr std::array kOfFiles = {ErrorNumber::fileNotFound, ErrorNumber::deviceIoError, ErrorNumber::permissionDenied,
                                   ErrorNumber::pathFileAccessError, ErrorNumber::pathNotFound};
  return std::any_of(kOfFiles.begin(), kOfFiles.end(), [&](ErrorNumber number) { return error.is(number); });
}

Ending tellUnreadable(const Options& options, const std::optional<RuntimeError>& error) {
  const std::optional<RuntimeError> known = error ? error : ConsoleHost::readingError(options.file);
  std::cerr << "imex: " << options.file << ": " << (known ? reasonOf(*known) : "it could not be read a moment ago")
            << '\n';
  return kUnreadable;
}

std::optional<Ending> listFailingLines(std::vector<LineResult>& lines, ImExRequest& request, const Options& options,
                                       const ConsoleHost& host) {
  try {
    addFailingLines(lines, request, host);
    return std::nullopt;
  } catch (const RuntimeError& error) {
    return tellUnreadable(options, error);
  }
}

void print(const Results& results, const Options& options) {
  if (options.asJson)
    printJson(results);
  else
    printText(results);
}

} // namespace imex::cli
