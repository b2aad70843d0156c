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
  std::optional<Ending> problem = problemWith(request, options, host);
  if (!problem)
    problem = listFailingLines(results.lines, request, options, host);
  const Ending ending = problem.value_or(results.lines.empty() ? kAccepted : kRefused);
  results.outcome = ending.outcome;
  print(results, options);
  return ending.status;
}

} // namespace imex::cli
