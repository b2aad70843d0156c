#include "changes.h"
#include "harness/MemoryHost.h"
#include "module/ImExModule.h"
#include "plainFile.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <iostream>
#include <string>

namespace imex::test {
namespace {

const std::string kFormat = "Code\r\nFirm name\r\n\r\nStra\xC3\x9F"
                            "e\r\n \r\nCity";

class ChangedFormats : public testing::Test {
 protected:
  void expectColumns(const std::string& bytes) {
    host.loadCatalogue(bytes);
    const Texts names = filledLines(bytes);
    ASSERT_EQ(names, texts(ImExModule::getFormatColumns("CUSTOMERAGENT"))) << bytes;
    ASSERT_EQ(static_cast<int>(names.size()), ImExModule::getFormatColumnCount("CUSTOMERAGENT"));
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
  EXPECT_EQ(36, inputs);
}

TEST_F(ChangedFormats, everySingleByteChange_hasAColumnForEachLine) {
  forEachChangedByte(kFormat, [&](const std::string& bytes) { expectColumns(bytes); });
  EXPECT_EQ(8925, inputs);
}

} // namespace
} // namespace imex::test
