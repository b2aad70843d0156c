#include "docs/Document.h"
#include "support/Process.h"

#include <gtest/gtest.h>

#include <set>

namespace imex::test {
namespace {

using Names = std::set<std::string>;

Names optionsIn(const std::string& text) {
  const auto found = matches(text, "(?:^|[^-\\w])(--[a-z][a-z-]*)");
  return {found.begin(), found.end()};
}

/// The options that the help of a call of a program prints.
Names optionsOf(const std::string& program, std::vector<std::string> arguments = {}) {
  arguments.emplace_back("--help");
  const Ended ended = run(program, arguments, {"QT_QPA_PLATFORM=offscreen"});
  EXPECT_EQ(0, ended.status) << program << ": " << ended.err;
  return optionsIn(ended.out);
}

Names allOptions() {
  Names names;
  for (const char* command : {"import", "check", "template", "formats"})
    names.merge(optionsOf(IMEX_PROGRAM, {command}));
  for (const char* program : {IMEX_PROGRAM, IMPORT_SERVICE_PROGRAM, CORVANA_DESK_PROGRAM})
    names.merge(optionsOf(program));
  return names;
}

TEST(Documents, everyOptionIsDescribed) {
  const Names described = optionsIn(Document("docs/cli.md").prose());
  for (const std::string& option : allOptions())
    EXPECT_TRUE(described.contains(option)) << option << " is not in docs/cli.md";
}

TEST(Documents, everyDescribedOptionExists) {
  const Names existing = allOptions();
  for (const char* name : {"docs/cli.md", "docs/service.md"}) {
    for (const std::string& option : optionsIn(Document(name).prose()))
      EXPECT_TRUE(existing.contains(option)) << option << " of " << name << " is an option of no program";
  }
}

} // namespace
} // namespace imex::test
