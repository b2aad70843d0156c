#include "LineItemTest.h"
#include "module/ImExModule.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace imex::test {
namespace {

class ImExRequestLineItems : public LineItemTest {};
IMEX_FOR_EACH_LINE_ITEM_KIND(ImExRequestLineItems);

// --- Records --------------------------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItems, aGoodFile_givesARecordForEachLineInFileOrder) {
  const Texts first = goodFields(kind);
  const Texts second = fieldsWith({{1, " 7 "}, {4, ""}, {5, "$1,000.50"}});
  importFile(row(first) + row(second));

  EXPECT_EQ(serialise(), recordsOf({first, second}));
  EXPECT_EQ(events, Texts());
}

TEST_P(ImExRequestLineItems, calledTwice_readsTheFileTwice) {
  importFile(goodRow());

  EXPECT_EQ(serialise(), recordsOf({goodFields(kind)}));
  EXPECT_EQ(serialise(), recordsOf({goodFields(kind)}));
}

TEST_P(ImExRequestLineItems, tabDelimiter_splitsAtTabs) {
  request.Delimiter("TAB");
  importFile(join(goodFields(kind), "\t") + "\r\n");

  EXPECT_EQ(serialise(), recordsOf({goodFields(kind)}));
}

TEST_P(ImExRequestLineItems, theLastLine_needsNoLineEnd) {
  importFile(goodRow() + join(goodFields(kind), "|"));

  EXPECT_EQ(serialise(), recordsOf({goodFields(kind), goodFields(kind)}));
}

TEST_P(ImExRequestLineItems, aLoneLineFeed_isPartOfItsField) {
  const Texts fields = fieldsWith({{2, "A\nB"}, {3, "C\rD"}});
  importFile(row(fields));

  EXPECT_EQ(serialise(), recordsOf({fields}));
}

TEST_P(ImExRequestLineItems, utf8WithAMark_isReadWithoutIt) {
  const Texts fields = fieldsWith({{3, "Ñandú"}});
  importFile("\xEF\xBB\xBF" + row(fields));

  EXPECT_EQ(serialise(), recordsOf({fields}));
}

TEST_P(ImExRequestLineItems, windows1252_countsCharactersAndGivesUtf8) {
  const Texts inFile = fieldsWith({{2, std::string(10, '\xE9')}, {3, "\x80uro"}});
  importFile(row(inFile));

  EXPECT_EQ(serialise(), recordsOf({fieldsWith({{2, "éééééééééé"}, {3, "€uro"}})}));
}

TEST_P(ImExRequestLineItems, aFileOfNothing_givesNoRecords) {
  importFile("");

  EXPECT_EQ(serialise(), kNoRecords);
  EXPECT_EQ(events, Texts());
}

TEST_P(ImExRequestLineItems, theRun_leavesTheSettings) {
  request.rowCount(77);
  importFile(goodRow() + badRow());

  EXPECT_EQ(serialise(), kNoRecords);

  EXPECT_EQ(request.rowCount(), 77);
  EXPECT_EQ(request.tabCount(), kind.columns);
  EXPECT_EQ(request.CheckedFileName(), importPath());
  EXPECT_EQ(request.DelimiterAscii(), 124);
}

// --- Lines that are skipped -----------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItems, aLineOfAsManyCharactersAsColumns_isSkipped) {
  importFile(rowOfLength(kind.columns));

  EXPECT_EQ(serialise(), kNoRecords);
}

TEST_P(ImExRequestLineItems, aLineOfOneCharacterMore_isCounted) {
  importFile(rowOfLength(kind.columns + 1));

  EXPECT_EQ(serialise(), recordsOf({{"", "TT"}}));
}

TEST_P(ImExRequestLineItems, charactersOfSeveralBytes_countOnce) {
  Texts skipped(kind.columns);
  skipped[1] = "€";
  Texts counted(kind.columns);
  counted[1] = "€😀";
  importFile(row(skipped) + row(counted));

  EXPECT_EQ(serialise(), recordsOf({counted}));
}

TEST_P(ImExRequestLineItems, shortLines_areSkippedWhateverTheyHold) {
  const std::string delimiters(kind.columns - 1, '|');
  const std::string wrong(kind.columns, 'x');
  importFile("\r\n" + textLines({delimiters, delimiters + "|", wrong, "-1"}) + goodRow() + "\r\n\r\n");

  EXPECT_EQ(serialise(), recordsOf({goodFields(kind)}));
}

TEST_P(ImExRequestLineItems, aFileOfSkippedLinesAlone_givesNoRecords) {
  importFile(repeated(std::string(kind.columns - 1, '|'), 3));

  EXPECT_EQ(serialise(), kNoRecords);
  EXPECT_EQ(events, Texts());
}

// --- The limit ------------------------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItems, upTo500CountedLines_areAccepted) {
  for (const int count : {499, 500}) {
    importFile(goodRows(count));
    EXPECT_EQ(serialise(), recordsOf(std::vector(static_cast<std::size_t>(count), goodFields(kind))));
  }
  EXPECT_EQ(events, Texts());
}

TEST_P(ImExRequestLineItems, the501stCountedLine_refusesTheFile) {
  importFile(goodRows(501));

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  expectedBoxes = {limitBox(501)};
}

TEST_P(ImExRequestLineItems, theNumberShown_isThatOfAllCountedLines) {
  importFile(repeated("", 30) + goodRows(618) + repeated("", 30));

  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {limitBox(618)};
}

TEST_P(ImExRequestLineItems, skippedLines_doNotCountTowardTheLimit) {
  std::string bytes;
  for (int i = 0; i < 500; ++i)
    bytes += "\r\n" + goodRow();
  importFile(bytes);

  EXPECT_EQ(serialise(), recordsOf(std::vector(500, goodFields(kind))));
}

TEST_P(ImExRequestLineItems, theLimit_goesBeforeTheErrorsOfFields) {
  importFile(badRows(501));

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  EXPECT_EQ(texts(ImExModule::getFormatColumns(formatKey())), loadedColumns());
  expectedBoxes = {limitBox(501)};
}

TEST_P(ImExRequestLineItems, theErrorsOf500Lines_areShown) {
  importFile(badRows(500));

  EXPECT_EQ(serialise(), kNoRecords);

  ASSERT_EQ(shown.size(), 1U);
  EXPECT_EQ(shown[0].count, 500);
  EXPECT_EQ(shown[0].messages.size(), 500U);
  EXPECT_EQ(shown[0].messages.back(), "500: Field Quantity cannot be negative.");
}

TEST_P(ImExRequestLineItems, lineNumbers_reach32767) {
  host.services.createTraceLog = nullptr; // a million trace lines would say nothing
  host.install();
  importFile(goodRows(32767));

  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {limitBox(32767)};
}

TEST_P(ImExRequestLineItems, lineNumbersPast32767_overflow) {
  host.services.createTraceLog = nullptr;
  host.install();
  importFile(goodRows(32768));

  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {failureBox("6 - Overflow")};
}

// --- Wrong numbers of fields ----------------------------------------------------------------------------------------

TEST_P(ImExRequestLineItems, aFieldTooManyOrTooFew_haltsTheImport) {
  Texts longer = goodFields(kind);
  longer.emplace_back("more");
  Texts trailing = goodFields(kind);
  trailing.emplace_back("");
  Texts shorter = goodFields(kind);
  shorter.pop_back();
  for (const Texts& fields : {longer, trailing, shorter, Texts{std::string(kind.columns + 1, 'x')}}) {
    importFile(goodRow() + row(fields) + goodRow());
    EXPECT_EQ(serialise(), kNoResult) << join(fields, "|");
    expectedBoxes.push_back(kHaltedBox);
  }
  EXPECT_EQ(events, Texts());
}

TEST_P(ImExRequestLineItems, aWrongRowBehindFieldErrors_haltsWithoutAnEvent) {
  importFile(badRow() + badRow() + row({"1", "2"}) + textLines({std::string(kind.columns + 1, 'x')}));

  EXPECT_EQ(serialise(), kNoResult);

  EXPECT_EQ(events, Texts());
  EXPECT_EQ(texts(ImExModule::getFormatColumns(formatKey())), loadedColumns());
  expectedBoxes = {kHaltedBox};
}

TEST_P(ImExRequestLineItems, aWrongRowBehindTooMany_haltsBeforeTheLimitIsSeen) {
  importFile(goodRows(600) + textLines({std::string(kind.columns + 1, 'x')}));

  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {kHaltedBox};
}

TEST_P(ImExRequestLineItems, theOtherDelimiter_haltsTheImport) {
  request.Delimiter("TAB");
  importFile(goodRow());

  EXPECT_EQ(serialise(), kNoResult);

  expectedBoxes = {kHaltedBox};
}

TEST_P(ImExRequestLineItems, noDelimiterAssigned_haltsTheImport) {
  ImExRequest fresh;
  fresh.DataOrigin("AGENT");
  fresh.DataType(kind.dataType);
  importFile(goodRow());
  fresh.CheckedFileName(importPath());

  EXPECT_EQ(kind.serialise(fresh), kNoResult);

  expectedBoxes = {kHaltedBox};
}

} // namespace
} // namespace imex::test
