#pragma once

#include "import_service/Judge.h"

#include <string>
#include <vector>

namespace imex::import_service {

/// The outcome of one import: a file is stored as a whole or not at all.
struct ImportResult {
  bool isAccepted = false;
  bool hasErrors = false;   ///< on any line
  bool hasWarnings = false; ///< on any line
  std::string reply;        ///< one sentence about the whole file
  std::vector<Verdict> verdicts;
};

/// Decides over the file: it is accepted when it has lines, no line has an error and, unless warnings are allowed, no
/// line has a warning. The reply says "12 lines imported." or "Nothing was imported: " and why.
ImportResult decide(std::vector<Verdict> verdicts, bool allowWarnings);

} // namespace imex::import_service
