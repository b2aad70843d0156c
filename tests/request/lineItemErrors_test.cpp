#include "LineItemTest.h"
#include "module/ImExModule.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

/// Says of each box whether the import file was closed when it was shown.
class WatchingBox : public host::MessageBox {
 public:
  host::Answer show(std::string_view, int, std::string_view) override {
    wasClosed.push_back(openStreamCount() == 0 && !ImExModule::openFiles().isOpen(1));
    return host::Answer::ok;
  }

  std::vector<bool> wasClosed;
};

class ImExRequestLineItemErrors : public LineItemTest {};
IMEX_FOR_EACH_LINE_ITEM_KIND(ImExRequestLineItemErrors);

// --- Fields with errors ---------------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItemErrors, fieldErrors_raiseShowErrorsWithItsSevenArguments) {
  const Texts good = goodFields(kind);
  const Texts bad = fieldsWith({{1, "100000"}, {3, "BRIGHTMOOR LTG"}, {5, "1000000"}, {6, "1.5"}});
  importFile(row(good) + "\r\n" + row(bad));

  EXPECT_EQ(serialise(), kNoRecords);

  EXPECT_EQ(events, Texts{"showErrors"});
  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].fileName, importPath());
  EXPECT_EQ(shown[0].lines, (std::vector{good, bad}));
  EXPECT_EQ(shown[0].messages,
            (Texts{"2: The amount of field Quantity with value 100000 exceeds the maximum amount 99999 .",
                   "2: The maximum length of Brand with value BRIGHTMOOR LTG has been exceeded.  The maximum length is "
                   "10.",
                   "2: The amount of field Quantity with value 1000000 exceeds the maximum amount 999999 .",
                   "2: The amount of field Column 1 commission with value 1.5 exceeds the maximum amount 1 ."}));
  EXPECT_EQ(shown[0].count, 2);
  EXPECT_EQ(shown[0].columns, kind.columns + 1);
  Texts headers = loadedColumns();
  headers.emplace_back("Errors");
  EXPECT_EQ(texts(shown[0].headers), headers);
  EXPECT_EQ(shown[0].delimiterAscii, 124);
}

TEST_P(ImExRequestLineItemErrors, everyFailingColumn_givesAMessageInColumnOrder) {
  const Texts all = {"1: Field Quantity with value a must be numeric.",
                     "1: The maximum length of Type with value 12345678901 has been exceeded.  The maximum length is "
                     "10.",
                     "1: The maximum length of Brand with value 12345678901 has been exceeded.  The maximum length is "
                     "10.",
                     "1: The maximum length of Catalog Number with value "
                     "123456789012345678901234567890123456789012345678901 has been exceeded.  The maximum length is "
                     "50.",
                     "1: Field Column 1 price with value b must be numeric.",
                     "1: Field Column 1 commission with value c must be numeric.",
                     "1: Field Column 2 price with value d must be numeric.",
                     "1: Field Column 2 commission with value e must be numeric.",
                     "1: Field Column 3 price with value f must be numeric.",
                     "1: Field Column 3 commission with value g must be numeric."};
  Texts fields = {
      "a", "12345678901", "12345678901", "123456789012345678901234567890123456789012345678901", "b", "c", "d", "e", "f",
      "g"};
  fields.resize(kind.columns);
  importFile(row(fields));

  EXPECT_EQ(serialise(), kNoRecords);

  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].messages, Texts(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(kind.columns)));
}

TEST_P(ImExRequestLineItemErrors, lineNumbersOfErrors_leaveOutSkippedLines) {
  importFile("\r\n" + badRow() + "\r\n\r\n" + goodRow() + "|\r\n" + badRow());

  EXPECT_EQ(serialise(), kNoRecords);

  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].messages,
            (Texts{"1: Field Quantity cannot be negative.", "3: Field Quantity cannot be negative."}));
  EXPECT_EQ(shown[0].count, 3);
  EXPECT_EQ(shown[0].lines.size(), 3U);
}

TEST_P(ImExRequestLineItemErrors, eachFileWithErrors_addsOneMoreErrorsColumn) {
  const std::string key = formatKey();
  Texts headers = loadedColumns();
  importFile(badRow());
  for (std::size_t run = 1; run <= 3; ++run) {
    headers.emplace_back("Errors");
    EXPECT_EQ(serialise(), kNoRecords);
    ASSERT_EQ(shown.size(), run);
    EXPECT_EQ(texts(shown.back().headers), headers);
    EXPECT_EQ(shown.back().headers, ImExModule::getFormatColumns(key));
    EXPECT_EQ(shown.back().columns, kind.columns + 1);
    EXPECT_EQ(ImExModule::getFormatColumnCount(key), kind.columns);
  }
}

TEST_P(ImExRequestLineItemErrors, aFileWithoutErrors_addsNoColumn) {
  importFile(goodRow());

  EXPECT_NE(serialise(), kNoResult);

  EXPECT_EQ(texts(ImExModule::getFormatColumns(formatKey())), loadedColumns());
}

TEST_P(ImExRequestLineItemErrors, theColumnCountShown_isThatOfTheOriginAsItIsNow) {
  request.DataOrigin("NOBODY");
  request.DataType(kind.dataType);
  request.tabCount(99);
  request.DataOrigin("AGENT");
  importFile(badRow());

  EXPECT_EQ(serialise(), kNoRecords);

  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].columns, kind.columns + 1);
  expectedErrors = {kUnknownFormat};
}

TEST_P(ImExRequestLineItemErrors, theFile_isClosedWhenShowErrorsIsRaised) {
  importFile(badRow());
  bool isClosed = false;
  request.showErrors.connect([&](auto&...) { isClosed = isEverythingClosed(); });

  EXPECT_EQ(serialise(), kNoRecords);

  EXPECT_TRUE(isClosed);
}

TEST_P(ImExRequestLineItemErrors, whatAHandlerWritesIntoTheArguments_doesNotFlowBack) {
  importFile(badRow());
  request.showErrors.connect([](std::string& fileName, RowsPtr&, ErrorBeansPtr&, Integer& count, Integer& columns,
                                StringsPtr&, Integer& delimiterAscii) {
    fileName = "other";
    count = columns = delimiterAscii = 1;
  });

  EXPECT_EQ(serialise(), kNoRecords);

  EXPECT_EQ(request.CheckedFileName(), importPath());
  EXPECT_EQ(request.tabCount(), kind.columns);
  EXPECT_EQ(request.DelimiterAscii(), 124);
}

// --- Files that cannot be read --------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItemErrors, aMissingFile_isToldInABox) {
  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  expectedBoxes = {kMissingBox};
}

TEST_P(ImExRequestLineItemErrors, aFolderOrNoName_isToldInABox) {
  request.CheckedFileName(host.folder.path().string());
  EXPECT_EQ(serialise(), kNoResult);
  request.CheckedFileName("");
  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {kMissingBox, kMissingBox};
}

TEST_P(ImExRequestLineItemErrors, fileNumber1InUse_isToldInABoxAndStaysOpen) {
  importFile(goodRow());
  const std::string other = host.folder.write("other.txt", "line\r\n");
  ImExModule::InputFile file(other, 1);

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_TRUE(ImExModule::openFiles().isOpen(1));
  std::string_view line;
  EXPECT_TRUE(file.readLine(line));
  EXPECT_EQ(line, "line");
  expectedBoxes = {kMissingBox};
}

TEST_P(ImExRequestLineItemErrors, theFile_isReadUnderNumber1) {
  importFile(goodRow());
  int reads = 0;
  host.files.before = [&](std::string_view call, std::string_view) {
    if (call != "read" || !ImExModule::openFiles().isOpen(1))
      return;
    ++reads;
    EXPECT_EQ(ImExModule::openFiles().freeNumber(), 2);
  };

  EXPECT_NE(serialise(), kNoResult);

  EXPECT_GT(reads, 0);
}

TEST_P(ImExRequestLineItemErrors, anErrorWhileReading_isRecordedAndShown) {
  importFile(badRow() + goodRow());
  failReading(2, 1, RuntimeError(ErrorNumber::deviceIoError, "Disk"));

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  EXPECT_EQ(traceOf(kind.procedure + "()"), Texts{traceLine('>')});
  expectedErrors = {errorRecord("57 Disk: Device I/O error")};
  expectedBoxes = {failureBox("57 - Device I/O error")};
}

TEST_P(ImExRequestLineItemErrors, anErrorAfterTheLastLine_givesNoResult) {
  importFile(goodRow());
  failReading(2, 2, RuntimeError(ErrorNumber::deviceIoError, "Disk"));

  EXPECT_EQ(serialise(), kNoResult);

  expectedErrors = {errorRecord("57 Disk: Device I/O error")};
  expectedBoxes = {failureBox("57 - Device I/O error")};
}

TEST_P(ImExRequestLineItemErrors, theFile_isClosedBeforeTheBoxesOfAnErrorAndOfTheLimit) {
  WatchingBox watching;
  host.services.messageBox = &watching;
  host.install();
  importFile(goodRows(501));
  EXPECT_EQ(serialise(), kNoResult);
  failReading(2, 1, RuntimeError(ErrorNumber::deviceIoError, "Disk"));
  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(watching.wasClosed, (std::vector{true, true}));
  expectedErrors = {errorRecord("57 Disk: Device I/O error")};
}

TEST_P(ImExRequestLineItemErrors, aFileThatGoesAwayAfterTheTest_isAnError) {
  importFile(goodRow());
  failReading(2, 0, RuntimeError(ErrorNumber::fileNotFound, "Disk"));

  EXPECT_EQ(serialise(), kNoResult);

  expectedErrors = {errorRecord("53 Disk: File not found")};
  expectedBoxes = {failureBox("53 - File not found")};
}

TEST_P(ImExRequestLineItemErrors, whicheverCallOfTheFileFails_thereIsOneBoxAndTheFileIsClosed) {
  importFile(badRow() + goodRow());
  bool hasFailed = true;
  std::size_t boxes = 0;
  for (int failing = 1; hasFailed; ++failing) {
    hasFailed = false;
    host.files.before = [&, calls = 0](std::string_view, std::string_view) mutable {
      if (++calls != failing)
        return;
      hasFailed = true;
      throw RuntimeError(ErrorNumber::deviceIoError, "Disk");
    };
    const Items items = serialise();
    EXPECT_EQ(items, hasFailed ? kNoResult : kNoRecords) << failing;
    EXPECT_TRUE(isEverythingClosed()) << failing;
    boxes += hasFailed ? 1 : 0;
    EXPECT_EQ(host.messageBox.boxes.size(), boxes) << failing;
  }
  EXPECT_GE(boxes, 8U); // each opening reads the bytes, rewinds and, the second time, reads them again
  EXPECT_EQ(events, Texts{"showErrors"});
  host.messageBox.boxes.clear();
  host.trace->lines.clear();
}

TEST_P(ImExRequestLineItemErrors, aLineTooLongToBeSplit_isAnError) {
  importFile(goodRow() + rowOfLength(32768));

  EXPECT_EQ(serialise(), kNoResult);

  expectedErrors = {"! ImExModule launchInternetExplorer 6 ImEx: Overflow", errorRecord("6 ImEx: Overflow")};
  expectedBoxes = {failureBox("6 - Overflow")};
}

TEST_P(ImExRequestLineItemErrors, theLongestLine_isSplit) {
  importFile(rowOfLength(32767));

  EXPECT_EQ(serialise(), kNoRecords);

  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].messages.size(), 1U);
}

// --- Errors behind the reading --------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItemErrors, anErrorInAHandler_isRecordedAndShown) {
  importFile(badRow());
  request.showErrors.connect([](auto&...) { throw RuntimeError(1234, "Host", "No editor"); });

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(traceOf(kind.procedure + "()"), Texts{traceLine('>')});
  expectedErrors = {errorRecord("1234 Host: No editor")};
  expectedBoxes = {failureBox("1234 - No editor")};
}

TEST_P(ImExRequestLineItemErrors, anErrorNumberPast16Bits_reachesTheCallerAsAnOverflow) {
  importFile(badRow());
  request.showErrors.connect([](auto&...) { throw RuntimeError(40000, "Host", "No editor"); });

  EXPECT_EQ(raisedNumber([this] { serialise(); }), 6);
}

TEST_P(ImExRequestLineItemErrors, withoutBoxes_aMissingFileReachesTheCaller) {
  host.services.messageBox = nullptr;
  host.install();

  EXPECT_EQ(raisedNumber([this] { serialise(); }), 429);

  expectedErrors = {errorRecord("429 ImEx: Component can't create object")};
}

TEST_P(ImExRequestLineItemErrors, withoutBoxes_aHaltedImportReachesTheCallerAndClosesTheFile) {
  importFile(row(Texts(kind.columns + 1, "x")));
  host.services.messageBox = nullptr;
  host.install();

  EXPECT_EQ(raisedNumber([this] { serialise(); }), 429);

  EXPECT_TRUE(isEverythingClosed());
  expectedErrors = {errorRecord("429 ImEx: Component can't create object")};
}

} // namespace
} // namespace imex::test
