#include "import_service/ImportResult.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

namespace imex::import_service::test {

/// A file, each line a letter: "." nothing, "w" a warning, "e" an error, "b" both.
struct Decision {
  std::string_view lines;
  bool allowWarnings;
  bool isAccepted;
  std::string_view reply;
};

void PrintTo(const Decision& decision, std::ostream* out) {
  *out << decision.lines << (decision.allowWarnings ? " with warnings allowed" : "");
}

std::vector<Verdict> verdictsOf(std::string_view lines) {
  std::vector<Verdict> verdicts;
  for (const char c : lines) {
    Verdict& verdict = verdicts.emplace_back();
    if (c == 'e' || c == 'b')
      verdict.errors = {"error"};
    if (c == 'w' || c == 'b')
      verdict.warnings = {"warning"};
  }
  return verdicts;
}

class ImportResultDecides : public testing::TestWithParam<Decision> {};

TEST_P(ImportResultDecides, overTheFile) {
  const ImportResult result = decide(verdictsOf(GetParam().lines), GetParam().allowWarnings);
  EXPECT_EQ(result.isAccepted, GetParam().isAccepted);
  EXPECT_EQ(result.reply, GetParam().reply);
  EXPECT_EQ(result.verdicts.size(), GetParam().lines.size());
  EXPECT_EQ(result.hasErrors, GetParam().lines.find_first_of("eb") != std::string_view::npos);
  EXPECT_EQ(result.hasWarnings, GetParam().lines.find_first_of("wb") != std::string_view::npos);
}

INSTANTIATE_TEST_SUITE_P(
    ImportResult, ImportResultDecides,
    testing::Values(Decision{"", false, false, "Nothing was imported: no lines were sent."},
                    Decision{".", false, true, "1 line imported."}, Decision{"...", true, true, "3 lines imported."},
                    Decision{"..w", true, true, "3 lines imported, 1 of them with warnings."},
                    Decision{"..w", false, false,
                             "Nothing was imported: 1 of 3 lines has warnings, which this import does not allow."},
                    Decision{"ww.", false, false,
                             "Nothing was imported: 2 of 3 lines have warnings, which this import does not allow."},
                    Decision{"e", false, false, "Nothing was imported: 1 of 1 line has errors."},
                    Decision{"e.e", true, false, "Nothing was imported: 2 of 3 lines have errors."},
                    Decision{"b..", false, false, "Nothing was imported: 1 of 3 lines has errors."},
                    Decision{"ew.", true, false, "Nothing was imported: 1 of 3 lines has errors."},
                    Decision{
                        "eww", false, false,
                        "Nothing was imported: 1 of 3 lines has errors and 2 have warnings, which this import does not "
                        "allow."}));

} // namespace imex::import_service::test
