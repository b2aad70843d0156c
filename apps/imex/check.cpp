#include "commands.h"

#include "formats.h"
#include "requests.h"

namespace imex::cli {

ExitStatus runCheck(const Options& options, const ConsoleHost& host) {
  if (const auto problem = formatProblem(options))
    return *problem;
  ImExRequest request;
  fill(request, options);
  Results results;
  if (const auto problem = fileProblem(request, options, host, results)) {
    print(results, options);
    return *problem;
  }
  results.lines = failingLines(request);
  const bool isGood = results.lines.empty();
  results.outcome = isGood ? "accepted" : "refused";
  print(results, options);
  return isGood ? ExitStatus::accepted : ExitStatus::refused;
}

} // namespace imex::cli
