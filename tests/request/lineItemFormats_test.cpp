#include "LineItemTest.h"
#include "module/ImExModule.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

class ImExRequestLineItemFormats : public LineItemTest {};
IMEX_FOR_EACH_LINE_ITEM_KIND(ImExRequestLineItemFormats);

TEST_P(ImExRequestLineItemFormats, anUnknownFormat_haltsAtTheFirstLineThatIsNotEmpty) {
  configure(kind.dataType, "NOBODY");
  importFile("\r\n" + goodRow());

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  expectedErrors = {kUnknownFormat, kUnknownFormat}; // one for each line
  expectedBoxes = {kHaltedBox};
}

TEST_P(ImExRequestLineItemFormats, anUnknownFormatAndAFileOfEmptyLines_giveNoRecords) {
  configure(kind.dataType, "NOBODY");
  importFile("\r\n");

  EXPECT_EQ(serialise(), kNoRecords);

  expectedErrors = {kUnknownFormat};
}

TEST_P(ImExRequestLineItemFormats, aFormatOfFewerColumns_isAnError) {
  static_assert(kInvoiceColumns == 4);
  configure("INVOICE", "AGENT");
  importFile(row({"1", "A", "B", "C"}));

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  EXPECT_EQ(traceOf("CatalogNumber()").size(), 2U);
  expectedErrors = {errorRecord("9 ImEx: Subscript out of range")};
  expectedBoxes = {failureBox("9 - Subscript out of range")};
}

TEST_P(ImExRequestLineItemFormats, aFormatOfMoreColumns_leavesTheOthersUnread) {
  configure("PRODUCT", "AGENT");
  Texts fields = {"24", "F1", "NORVANE", "NV-1X4", "73.75", "0.05", "70.75", "0.045", "67.00", "0.04", "not read"};
  ASSERT_EQ(fields.size(), static_cast<std::size_t>(kProductColumns));
  importFile(row(fields));
  const Items items = serialise();

  fields.resize(kind.columns);
  EXPECT_EQ(items, recordsOf({fields}));
}

TEST_P(ImExRequestLineItemFormats, theFormatIsLookedUpForEachLine) {
  importFile(goodRow() + goodRow());
  // The first line's split changes the format that the second line is measured by.
  host.trace->onTrace = [this] {
    if (!host.trace->lines.empty() && host.trace->lines.back() == "> ImExModule Parse()")
      request.DataOrigin("NOBODY");
  };

  EXPECT_EQ(serialise(), kNoResult);

  expectedErrors = {kUnknownFormat};
  expectedBoxes = {kHaltedBox};
}

/// Catalogues that TestHost writes otherwise.
class ImExRequestLineItemCatalogues : public testing::Test {
 protected:
  void configure() {
    request.DataOrigin("AGENT");
    request.DataType("PROJECTLINEITEM");
    request.Delimiter("PIPE");
    host.trace->lines.clear();
    host.messageBox.boxes.clear();
  }

  void importFile(std::string_view bytes) { request.CheckedFileName(host.folder.write("import.txt", bytes)); }

  TestHost host;
  ImExRequest request;
};

TEST_F(ImExRequestLineItemCatalogues, aFormatOfNoColumns_haltsAtTheFirstLineThatIsNotEmpty) {
  host.writeFormat("formatagentproject.dat", {});
  ImExModule::initialize();
  configure();
  importFile("\r\nx\r\n");

  EXPECT_EQ(request.serializeProjectLineItemFile(), nullptr);

  EXPECT_EQ(host.messageBox.boxes, std::vector{kHaltedBox});
  EXPECT_EQ(host.trace->errors(), Texts());
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(ImExRequestLineItemCatalogues, aFormatOfEightColumns_failsAtTheNinth) {
  host.writeFormat("formatagentproject.dat", columnNames(8));
  ImExModule::initialize();
  configure();
  importFile("1|F1|B|C|1|0.1|2|0.2\r\n");

  EXPECT_EQ(request.serializeProjectLineItemFile(), nullptr);

  EXPECT_EQ(host.messageBox.boxes, std::vector{failureBox("9 - Subscript out of range")});
  EXPECT_EQ(host.trace->errors(), Texts{"! ImExRequest serializeProjectLineItemFile 9 ImEx: Subscript out of range"});
  EXPECT_EQ(host.trace->lines[host.trace->lines.size() - 2], "< ImportProjectLineItemBean Column2Commission()");
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(ImExRequestLineItemCatalogues, aFormatThatIsCountedButNotListed_isAnErrorOnceFieldsFail) {
  // Two starts that fail leave the counts of the first and no lists.
  std::filesystem::remove(host.folder / "app/docs/formathalvikballasts.dat");
  ImExModule::initialize();
  ImExModule::initialize();
  configure();
  importFile("-1|F1|B|C|1|0.1|2|0.2|3|0.3\r\n");

  EXPECT_EQ(request.serializeProjectLineItemFile(), nullptr);

  EXPECT_EQ(host.messageBox.boxes, std::vector{failureBox("91 - Object variable not set")});
  EXPECT_EQ(host.trace->errors(),
            Texts{"! ImExRequest serializeProjectLineItemFile 91 ImExRequest: Object variable not set"});
}

} // namespace
} // namespace imex::test
