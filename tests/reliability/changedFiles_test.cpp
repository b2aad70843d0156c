#include "changes.h"
#include "harness/MemoryHost.h"
#include "module/ImExModule.h"
#include "runtime/text.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace imex::test {
namespace {

// The rules once more, the plain way.

/// The lines of a file: each ends at CR LF or at the end.
std::vector<std::string> linesOf(const std::string& bytes) {
  const std::string text = bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes;
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find("\r\n", at);
    lines.push_back(text.substr(at, end - at));
    at = end == std::string::npos ? text.size() : end + 2;
  }
  return lines;
}

int filledLines(const std::string& bytes) {
  int count = 0;
  for (const std::string& line : linesOf(bytes))
    count += line.empty() ? 0 : 1;
  return count;
}

const std::string kFormat = "Code\r\nFirm name\r\n\r\nStra\xC3\x9F"
                            "e\r\n \r\nCity";

class ChangedFormats : public testing::Test {
 protected:
  void expectColumns(const std::string& bytes) {
    host.loadCatalogue(bytes);
    ASSERT_EQ(filledLines(bytes), ImExModule::getFormatColumnCount("CUSTOMERAGENT")) << bytes;
    ASSERT_EQ(static_cast<std::size_t>(filledLines(bytes)), ImExModule::getFormatColumns("CUSTOMERAGENT")->count());
    ASSERT_TRUE(host.boxes.lines.empty());
    ASSERT_EQ(1, ImExModule::openFiles().freeNumber());
    ++inputs;
  }

  void TearDown() override { std::cout << "inputs: " << inputs << '\n'; }

  fuzz::MemoryHost host;
  int inputs = 0;
};

TEST_F(ChangedFormats, everyTruncation_hasAColumnForEachLineThatIsLeft) {
  expectColumns(kFormat);
  EXPECT_EQ(5, ImExModule::getFormatColumnCount("CUSTOMERAGENT"));
  forEachTruncation(kFormat, [&](const std::string& bytes) { expectColumns(bytes); });
}

TEST_F(ChangedFormats, everySingleByteChange_hasAColumnForEachLine) {
  forEachChangedByte(kFormat, [&](const std::string& bytes) { expectColumns(bytes); });
}

} // namespace
} // namespace imex::test
