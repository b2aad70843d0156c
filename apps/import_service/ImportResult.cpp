#include "import_service/ImportResult.h"

#include "import_service/wording.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace imex::import_service {

namespace {

/// The lines of a file by what was found on them.
struct Tally {
  std::size_t lines = 0;
  std::size_t withErrors = 0;
  std::size_t withWarnings = 0;
  std::size_t withWarningsOnly = 0;
};

Tally tallyOf(const std::vector<Verdict>& verdicts) {
  const auto count = [&verdicts](const auto& test) {
    return static_cast<std::size_t>(std::count_if(verdicts.begin(), verdicts.end(), test));
  };
  return {verdicts.size(), count(std::mem_fn(&Verdict::hasErrors)), count(std::mem_fn(&Verdict::hasWarnings)),
          count([](const Verdict& verdict) { return verdict.hasWarnings() && !verdict.hasErrors(); })};
}

std::string have(std::size_t count) {
  return count == 1 ? " has " : " have ";
}

std::string acceptance(const Tally& tally) {
  const std::string imported = counted(tally.lines, "line") + " imported";
  if (tally.withWarnings == 0)
    return imported + ".";
  return imported + ", " + std::to_string(tally.withWarnings) + " of them with warnings.";
}

std::string refusal(const Tally& tally, bool allowWarnings) {
  if (tally.lines == 0)
    return "Nothing was imported: no lines were sent.";
  const std::size_t warned = allowWarnings ? 0 : tally.withWarningsOnly;
  const std::string ofAll = " of " + counted(tally.lines, "line");
  const std::string allowance = "warnings, which this import does not allow.";
  if (tally.withErrors == 0)
    return "Nothing was imported: " + std::to_string(warned) + ofAll + have(warned) + allowance;
  const std::string errors =
      "Nothing was imported: " + std::to_string(tally.withErrors) + ofAll + have(tally.withErrors) + "errors";
  return warned == 0 ? errors + "." : errors + " and " + std::to_string(warned) + have(warned) + allowance;
}

} // namespace

ImportResult decide(std::vector<Verdict> verdicts, bool allowWarnings) {
  const Tally tally = tallyOf(verdicts);
  ImportResult result;
  result.isAccepted = tally.lines > 0 && tally.withErrors == 0 && (allowWarnings || tally.withWarnings == 0);
  result.hasErrors = tally.withErrors > 0;
  result.hasWarnings = tally.withWarnings > 0;
  result.reply = result.isAccepted ? acceptance(tally) : refusal(tally, allowWarnings);
  result.verdicts = std::move(verdicts);
  return result;
}

} // namespace imex::import_service
