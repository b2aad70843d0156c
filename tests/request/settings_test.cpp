#include "RequestTest.h"
#include "module/ImExModule.h"
#include "request/ImExRequest.h"

#include <gtest/gtest.h>

namespace imex::test {
namespace {

class ImExRequestSettings : public RequestTest {};

TEST_F(ImExRequestSettings, freshRequest_isEmpty) {
  EXPECT_FALSE(request.isCentralizedAgent);
  EXPECT_EQ(request.SelectedData(), "");
  EXPECT_EQ(request.ImportExport(), "");
  EXPECT_EQ(request.DataType(), "");
  EXPECT_EQ(request.Schedule(), "");
  EXPECT_EQ(request.Delimiter(), "");
  EXPECT_EQ(request.Requestor(), "");
  EXPECT_EQ(request.CheckedFileName(), "");
  EXPECT_EQ(request.Directory(), "");
  EXPECT_FALSE(request.LoginReqd());
  EXPECT_FALSE(request.AllowWarnings());
  EXPECT_FALSE(request.AllowTruncation());
  EXPECT_EQ(request.tabCount(), 0);
  EXPECT_EQ(request.rowCount(), 0);
  EXPECT_EQ(request.DelimiterAscii(), 0);
}

TEST_F(ImExRequestSettings, values_areKeptAsTheyAreAssigned) {
  request.isCentralizedAgent = true;
  request.SelectedData("selected");
  request.ImportExport("IMPORT");
  request.Schedule("INSTANT");
  request.Requestor("Ann");
  request.CheckedFileName("c:\\data\\Ä.txt");
  request.LoginReqd(true);
  request.AllowWarnings(true);
  request.AllowTruncation(true);
  request.tabCount(-32768);
  request.Directory("c:\\data\\");
  request.rowCount(32767);

  EXPECT_TRUE(request.isCentralizedAgent);
  EXPECT_EQ(request.SelectedData(), "selected");
  EXPECT_EQ(request.ImportExport(), "IMPORT");
  EXPECT_EQ(request.Schedule(), "INSTANT");
  EXPECT_EQ(request.Requestor(), "Ann");
  EXPECT_EQ(request.CheckedFileName(), "c:\\data\\Ä.txt");
  EXPECT_TRUE(request.LoginReqd());
  EXPECT_TRUE(request.AllowWarnings());
  EXPECT_TRUE(request.AllowTruncation());
  EXPECT_EQ(request.tabCount(), -32768);
  EXPECT_EQ(request.Directory(), "c:\\data\\");
  EXPECT_EQ(request.rowCount(), 32767);
}

TEST_F(ImExRequestSettings, codes_areKeptEvenWhereUnknown) {
  request.DataOrigin("NOBODY");
  request.DataType("CUSTOMER");
  request.Delimiter("SEMICOLON");

  EXPECT_EQ(request.DataOrigin(), "NOBODY");
  EXPECT_EQ(request.DataType(), "CUSTOMER");
  EXPECT_EQ(request.Delimiter(), "SEMICOLON");
  expectedErrors = {kUnknownFormat, kUnknownFormat};
}

TEST_F(ImExRequestSettings, DelimiterTab_isTheTabCharacter) {
  request.Delimiter("TAB");

  EXPECT_EQ(request.Delimiter(), "TAB");
  EXPECT_EQ(request.DelimiterAscii(), 9);
}

TEST_F(ImExRequestSettings, DelimiterPipe_isTheBar) {
  request.Delimiter("PIPE");

  EXPECT_EQ(request.Delimiter(), "PIPE");
  EXPECT_EQ(request.DelimiterAscii(), 124);
}

TEST_F(ImExRequestSettings, anyOtherDelimiter_isKeptAndLeavesTheCode) {
  request.Delimiter("PIPE");

  for (const std::string text : {"tab", "Tab", "pipe", "TAB ", " TAB", "", "\t", "|", "TABPIPE"}) {
    request.Delimiter(text);
    EXPECT_EQ(request.Delimiter(), text);
    EXPECT_EQ(request.DelimiterAscii(), 124) << text;
  }
}

TEST_F(ImExRequestSettings, anUnknownDelimiterFirst_leavesTheCodeZero) {
  request.Delimiter("tab");

  EXPECT_EQ(request.DelimiterAscii(), 0);
}

struct Format {
  const char* dataType;
  const char* dataOrigin;
  int columns;
};

TEST_F(ImExRequestSettings, DataTypeAfterDataOrigin_takesTheColumnCountOfTheFormat) {
  for (const auto& [dataType, dataOrigin, columns] :
       {Format{"CUSTOMER", "AGENT", kCustomerColumns}, Format{"CUSTOMER", "HALVIK", kHalvikCustomerColumns},
        Format{"PRODUCT", "AGENT", kProductColumns}, Format{"PROJECTLINEITEM", "AGENT", kProjectColumns},
        Format{"QUOTELINEITEM", "AGENT", kQuoteColumns}, Format{"ORDERLINEITEM", "AGENT", kOrderColumns},
        Format{"INVOICE", "AGENT", kInvoiceColumns}, Format{"COMMISSION", "AGENT", kCommissionColumns},
        Format{"BALLASTS", "HALVIK", kBallastColumns}}) {
    ImExRequest fresh;
    fresh.DataOrigin(dataOrigin);
    fresh.DataType(dataType);
    EXPECT_EQ(fresh.tabCount(), columns) << dataType << dataOrigin;
  }
}

TEST_F(ImExRequestSettings, DataOriginAfterDataType_countsFromItsNextRead) {
  configure("CUSTOMER", "AGENT");

  request.DataOrigin("HALVIK");
  EXPECT_EQ(request.tabCount(), kCustomerColumns);
  EXPECT_EQ(request.DataOrigin(), "HALVIK");
  EXPECT_EQ(request.tabCount(), kHalvikCustomerColumns);
}

TEST_F(ImExRequestSettings, readingDataOrigin_replacesAnAssignedCount) {
  configure("CUSTOMER", "AGENT");
  request.tabCount(99);

  (void)request.DataOrigin();

  EXPECT_EQ(request.tabCount(), kCustomerColumns);
}

TEST_F(ImExRequestSettings, readingDataType_leavesAnAssignedCount) {
  configure("CUSTOMER", "AGENT");
  request.tabCount(99);

  (void)request.DataType();

  EXPECT_EQ(request.tabCount(), 99);
}

TEST_F(ImExRequestSettings, formatKey_isFoundInAnyCase) {
  request.DataOrigin("agent");
  request.DataType("Customer");

  EXPECT_EQ(request.tabCount(), kCustomerColumns);
}

TEST_F(ImExRequestSettings, anUnknownFormat_isRecordedOnceAndKeepsTheCount) {
  configure("CUSTOMER", "AGENT");

  request.DataType("CATALOGUE");

  EXPECT_EQ(host.trace->errors(), Texts{kUnknownFormat});
  EXPECT_EQ(request.DataType(), "CATALOGUE");
  EXPECT_EQ(request.tabCount(), kCustomerColumns);
  expectedErrors = host.trace->errors();
}

TEST_F(ImExRequestSettings, readingDataOriginOfAnUnknownFormat_isRecordedOnceAndKeepsTheCount) {
  configure("CUSTOMER", "AGENT");
  request.DataOrigin("NOBODY");

  EXPECT_EQ(request.DataOrigin(), "NOBODY");

  EXPECT_EQ(request.tabCount(), kCustomerColumns);
  expectedErrors = {kUnknownFormat};
}

TEST_F(ImExRequestSettings, FormatFileName_isBuiltFromDirectoryOriginAndType) {
  host.application.directory = "c:\\Program Files\\Corvana";
  configure("CUSTOMER", "AGENT");

  EXPECT_EQ(request.FormatFileName(), "c:\\Program Files\\Corvana\\docs\\FORMATAGENTCUSTOMER.dat");
}

TEST_F(ImExRequestSettings, FormatFileNameOfALineItemType_isNotTheCataloguesName) {
  host.application.directory = "/opt/corvana";
  configure("PROJECTLINEITEM", "AGENT");

  EXPECT_EQ(request.FormatFileName(), "/opt/corvana\\docs\\FORMATAGENTPROJECTLINEITEM.dat");
}

TEST_F(ImExRequestSettings, FormatFileNameWithoutOriginAndType_isTheBareName) {
  host.application.directory = "c:\\app";

  EXPECT_EQ(request.FormatFileName(), "c:\\app\\docs\\FORMAT.dat");
  // The name reads the layout, and the layout's column count is looked up at every read.
  expectedErrors = {kUnknownFormat};
}

TEST_F(ImExRequestSettings, FormatFileName_asksForTheDirectoryAtEveryRead) {
  configure("INVOICE", "AGENT");
  host.application.directory = "c:\\one";
  const std::string first = request.FormatFileName();
  host.application.directory = "c:\\two";

  EXPECT_EQ(first, "c:\\one\\docs\\FORMATAGENTINVOICE.dat");
  EXPECT_EQ(request.FormatFileName(), "c:\\two\\docs\\FORMATAGENTINVOICE.dat");
}

TEST_F(ImExRequestSettings, FormatFileName_letsAnErrorPast16BitsOutAsAnOverflow) {
  host.trace->onTrace = [] { throw RuntimeError(70000, "TraceLog", "The trace is full"); };

  EXPECT_EQ(raisedNumber([&] { request.FormatFileName(); }), 6);
}

TEST_F(ImExRequestSettings, FormatFileNameWithoutAnApplicationObject_isRecordedAndEmpty) {
  configure("INVOICE", "AGENT");
  host.services.application = nullptr;
  host.install();

  EXPECT_EQ(request.FormatFileName(), "");

  expectedErrors = {"! ImExRequest FormatFileName 429 ImEx: Component can't create object"};
}

TEST_F(ImExRequestSettings, accessorsWithAHandler_traceTheirName) {
  request.Directory("d");
  (void)request.Directory();
  request.rowCount(1);
  (void)request.rowCount();
  request.tabCount(1);
  (void)request.tabCount();
  (void)request.DelimiterAscii();

  EXPECT_EQ(host.trace->lines,
            (Texts{"> ImExRequest Directory()", "< ImExRequest Directory()", "> ImExRequest Directory()",
                   "< ImExRequest Directory()", "> ImExRequest rowCount()", "< ImExRequest rowCount()",
                   "> ImExRequest rowCount()", "< ImExRequest rowCount()", "> ImExRequest tabCount()",
                   "< ImExRequest tabCount()", "> ImExRequest tabCount()", "< ImExRequest tabCount()",
                   "> ImExRequest DelimiterAscii()", "< ImExRequest DelimiterAscii()"}));
}

TEST_F(ImExRequestSettings, FormatFileName_tracesItsName) {
  configure("INVOICE", "AGENT");

  (void)request.FormatFileName();

  EXPECT_EQ(host.trace->lines.front(), "> ImExRequest FormatFileName()");
  EXPECT_EQ(host.trace->lines.back(), "< ImExRequest FormatFileName()");
}

TEST_F(ImExRequestSettings, plainAccessors_areNotTraced) {
  request.isCentralizedAgent = true;
  request.SelectedData("a");
  (void)request.SelectedData();
  request.ImportExport("a");
  (void)request.ImportExport();
  (void)request.DataType();
  request.Schedule("a");
  (void)request.Schedule();
  request.DataOrigin("a");
  request.Delimiter("TAB");
  (void)request.Delimiter();
  request.Requestor("a");
  (void)request.Requestor();
  request.CheckedFileName("a");
  (void)request.CheckedFileName();
  request.LoginReqd(true);
  (void)request.LoginReqd();
  request.AllowWarnings(true);
  (void)request.AllowWarnings();
  request.AllowTruncation(true);
  (void)request.AllowTruncation();

  EXPECT_EQ(host.trace->lines, (Texts{}));
}

TEST_F(ImExRequestSettings, storingTheColumnCount_goesThroughTabCount) {
  request.DataOrigin("AGENT");
  request.DataType("INVOICE");

  EXPECT_EQ(traceOf("tabCount()"), (Texts{"> ImExRequest tabCount()", "< ImExRequest tabCount()"}));
}

TEST_F(ImExRequestSettings, anAccessorThatFails_isRecordedAndKeepsTheValue) {
  request.Directory("old");
  request.rowCount(3);
  request.tabCount(4);
  request.Delimiter("TAB");
  host.trace->lines.clear();
  host.trace->onTrace = [] { throw RuntimeError(1009, "TraceLog", "The trace is full"); };

  request.Directory("new");
  request.rowCount(30);
  request.tabCount(40);
  EXPECT_EQ(request.Directory(), "old");
  EXPECT_EQ(request.rowCount(), 3);
  EXPECT_EQ(request.tabCount(), 4);
  EXPECT_EQ(request.DelimiterAscii(), 9);

  expectedErrors = {"! ImExRequest Directory 1009 TraceLog: The trace is full",
                    "! ImExRequest rowCount 1009 TraceLog: The trace is full",
                    "! ImExRequest tabCount 1009 TraceLog: The trace is full",
                    "! ImExRequest Directory 1009 TraceLog: The trace is full",
                    "! ImExRequest rowCount 1009 TraceLog: The trace is full",
                    "! ImExRequest tabCount 1009 TraceLog: The trace is full",
                    "! ImExRequest DelimiterAscii 1009 TraceLog: The trace is full"};
}

TEST_F(ImExRequestSettings, twoRequests_shareNothing) {
  ImExRequest other;
  configure("CUSTOMER", "AGENT");

  EXPECT_EQ(other.tabCount(), 0);
  EXPECT_EQ(other.DelimiterAscii(), 0);
  EXPECT_EQ(other.CheckedFileName(), "");
}

/// Formats other than the usual ones. The catalogue is read once for a process, so each test needs one of its own.
class ImExRequestFormats : public testing::Test {
 protected:
  void SetUp() override {
    if (!ImExModule::workingDirectory().empty())
      GTEST_SKIP() << "the catalogue of this process was read by another test";
  }

  TestHost host;
  ImExRequest request;
};

TEST_F(ImExRequestFormats, aFormatOfNoColumns_storesZero) {
  host.writeFormat("formatagentinvoice.dat", {});
  ImExModule::initialize();
  request.tabCount(99);
  request.DataOrigin("AGENT");

  request.DataType("INVOICE");

  EXPECT_EQ(request.tabCount(), 0);
  EXPECT_EQ(host.trace->errors(), (Texts{}));
}

TEST_F(ImExRequestFormats, withoutACatalogue_everyFormatIsUnknown) {
  request.tabCount(99);
  request.DataOrigin("AGENT");

  request.DataType("INVOICE");

  EXPECT_EQ(request.tabCount(), 99);
  EXPECT_EQ(host.trace->errors(), Texts{kUnknownFormat});
}

} // namespace
} // namespace imex::test
