#include "commands.h"

#include "lineItems.h"
#include "requests.h"

namespace imex::cli {

ExitStatus runCheck(const Options& options, const ConsoleHost& host) {
  if (areLineItems(options))
    return runLineItems(options, host);
  ImExRequest request;
  fill(request, options);
  Results results;
  Ending ending = kAccepted;
  if (const auto problem = problemWith(request, options, host)) {
    ending = *problem;
  } else {
    results.lines = failingLines(request, host);
    ending = results.lines.empty() ? kAccepted : kRefused;
  }
  results.outcome = ending.outcome;
  print(results, options);
  return ending.status;
}

} // namespace imex::cli
