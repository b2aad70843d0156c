#include "LineItemTest.h"
#include "traceLines.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace imex::test {
namespace {

class ImExRequestLineItemTrace : public LineItemTest {
 protected:
  /// The trace of reading the file, through a request whose events nobody answers, and of nothing else.
  Texts traceOfRun() {
    ImExRequest quiet;
    quiet.DataOrigin("AGENT");
    quiet.DataType(kind.dataType);
    quiet.Delimiter("PIPE");
    quiet.CheckedFileName(importPath());
    host.trace->lines.clear();
    kind.run(quiet);
    return host.trace->lines;
  }

  std::string probe() const { return "ImExModule checkFileExists(fileName = " + importPath() + ")"; }

  /// The stores of a row into its record, from a column counted from 1 on.
  Texts stores(std::size_t first) const;
};
IMEX_FOR_EACH_LINE_ITEM_KIND(ImExRequestLineItemTrace);

Texts ImExRequestLineItemTrace::stores(std::size_t first) const {
  const Texts properties = {"quantity",     "AType",
                            "Brand",        "CatalogNumber",
                            "Column1Price", "Column1Commission",
                            "Column2Price", "Column2Commission",
                            "Column3Price", "Column3Commission"};
  std::vector<Texts> parts;
  for (std::size_t column = first; column <= kind.columns; ++column)
    parts.push_back(pair(kind.record + " " + properties[column - 1] + "()"));
  return concatenated(parts);
}

TEST_P(ImExRequestLineItemTrace, aGoodFile_isTracedWhole) {
  importFile(goodRow() + "\r\n" + goodRow());
  const Texts skipped = kKey;

  EXPECT_EQ(traceOfRun(), concatenated({{traceLine('>')},
                                        pair(probe()),
                                        kKey,
                                        kSplit,
                                        stores(1),
                                        skipped,
                                        kKey,
                                        kSplit,
                                        stores(1),
                                        {traceLine('<')}}));
}

TEST_P(ImExRequestLineItemTrace, aFieldError_isTracedAsItsRecordAndTheArgumentsOfTheEvent) {
  importFile(badRow());
  const Texts arguments = concatenated({kKey, pair("ImExRequest tabCount()"), pair("ImExRequest DelimiterAscii()")});

  EXPECT_EQ(traceOfRun(),
            concatenated(
                {{traceLine('>')}, pair(probe()), kKey, kSplit, kErrorRecord, stores(2), arguments, {traceLine('<')}}));
}

TEST_P(ImExRequestLineItemTrace, tooManyLines_leaveTheErrorRecordThatNobodyIsShown) {
  importFile(goodRows(501));
  std::vector<Texts> parts = {{traceLine('>')}, pair(probe())};
  for (int i = 0; i < 501; ++i)
    parts.insert(parts.end(), {kKey, kSplit, stores(1)});
  parts.insert(parts.end(), {kErrorRecord, {traceLine('<')}});

  EXPECT_EQ(traceOfRun(), concatenated(parts));
  expectedBoxes = {limitBox(501)};
}

TEST_P(ImExRequestLineItemTrace, aHaltedImport_hasNoExitLine) {
  importFile(row(Texts(kind.columns + 1, "x")));

  EXPECT_EQ(traceOfRun(), concatenated({{traceLine('>')}, pair(probe()), kKey, kSplit}));
  expectedBoxes = {kHaltedBox};
}

TEST_P(ImExRequestLineItemTrace, aMissingFile_hasNoExitLine) {
  EXPECT_EQ(traceOfRun(), (Texts{traceLine('>'), "> " + probe()}));
  expectedBoxes = {kMissingBox};
}

TEST_P(ImExRequestLineItemTrace, whicheverTraceCallFails_theFileIsClosed) {
  importFile(badRow() + goodRow());
  bool hasFailed = true;
  int failing = 0;
  while (hasFailed) {
    ++failing;
    hasFailed = false;
    host.trace->onTrace = [&, calls = 0]() mutable {
      if (++calls != failing)
        return;
      hasFailed = true;
      throw RuntimeError(1009, "TraceLog", "The trace is full");
    };
    (void)serialise();
    EXPECT_TRUE(isEverythingClosed()) << failing;
  }
  EXPECT_GT(failing, 40);
  host.trace->onTrace = [] {};
  host.trace->lines.clear();
  host.messageBox.boxes.clear();
}

TEST_P(ImExRequestLineItemTrace, withoutATraceLog_nothingElseChanges) {
  host.services.createTraceLog = nullptr;
  host.install();
  importFile(goodRow());

  EXPECT_EQ(serialise(), recordsOf({goodFields(kind)}));
}

} // namespace
} // namespace imex::test
