#include "docs/Document.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace imex::test {
namespace {

using Lines = std::vector<std::string>;

std::size_t indentOf(const std::string& line) {
  return std::min(line.find_first_not_of(' '), line.size());
}

/// The lines without the blanks that all of them begin with.
Lines movedLeft(Lines lines) {
  std::size_t indent = std::string::npos;
  for (const std::string& line : lines) {
    if (!line.empty())
      indent = std::min(indent, indentOf(line));
  }
  for (std::string& line : lines)
    line.erase(0, std::min(indent, line.size()));
  return lines;
}

/// Whether the quoted lines stand in the file, one after the other and letter for letter.
bool isQuotedFrom(const Lines& file, const Lines& quote) {
  const Lines wanted = movedLeft(quote);
  for (std::size_t first = 0; first + wanted.size() <= file.size(); ++first) {
    const auto from = file.begin() + static_cast<std::ptrdiff_t>(first);
    if (movedLeft({from, from + static_cast<std::ptrdiff_t>(wanted.size())}) == wanted)
      return true;
  }
  return false;
}

/// A file that a target of the build compiles.
bool isCompiled(const std::string& file) {
  return file.starts_with("examples/") && (file.ends_with(".cpp") || file.ends_with(".h"));
}

TEST(Documents, codeIsThatOfTheExamples) {
  std::size_t count = 0;
  for (const Document& document : allDocuments()) {
    for (const CodeBlock& block : document.blocks()) {
      if (block.language != "cpp")
        continue;
      const std::string place = document.path().string() + ", line " + std::to_string(block.line);
      ASSERT_TRUE(isCompiled(block.origin)) << place << " does not say which example it is from";
      EXPECT_TRUE(isQuotedFrom(linesOf(block.origin), block.lines)) << place << " is not in " << block.origin;
      ++count;
    }
  }
  EXPECT_LT(10U, count) << "the quotes were not found";
}

} // namespace
} // namespace imex::test
