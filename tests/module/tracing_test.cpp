#include "module/properties.h"
#include "module/tracing.h"
#include "runtime/Collection.h"
#include "support/TestHost.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

thread_local long allocationCount = 0;

} // namespace

// Every allocation of this test program is counted. The functions stay out of line, because one half of a pair that is
// inlined looks to the compiler like a mismatch with the other.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocationCount;
  if (void* place = std::malloc(size == 0 ? 1 : size))
    return place;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* place) noexcept {
  std::free(place);
}
[[gnu::noinline]] void operator delete(void* place, std::size_t) noexcept {
  std::free(place);
}

namespace imex::test {
namespace {

using Lines = std::vector<std::string>;

constexpr Procedure kProcedure{"ImExRequest", "checkRows"};

/// Longer than the space that a string has inside itself.
constexpr Procedure kLongProcedure{"ImExActionCtrl", "aProcedureWithANameThatFillsAWholeLine"};

class Tracing : public testing::Test {
 protected:
  Lines& lines() { return host.trace->lines; }

  TestHost host;
};

[[noreturn]] void failWith53() {
  throw RuntimeError(ErrorNumber::fileNotFound, "Files");
}

/// A log whose error records fail.
class BrokenErrorLog : public RecordingTraceLog {
 public:
  void LogError(std::string_view, std::string_view, const RuntimeError&, std::int32_t) override {
    throw RuntimeError(ErrorNumber::diskFull, "TraceLog");
  }
};

} // namespace

TEST_F(Tracing, aProcedure_isTracedOnEntryAndExit) {
  const int result = traced(
      kProcedure,
      [&] {
        EXPECT_EQ(lines(), (Lines{"> ImExRequest checkRows()"}));
        return 7;
      },
      Reraise{});
  EXPECT_EQ(result, 7);
  EXPECT_EQ(lines(), (Lines{"> ImExRequest checkRows()", "< ImExRequest checkRows()"}));
}

TEST_F(Tracing, aProcedureWithoutResult_isTracedAlike) {
  bool done = false;
  traced(
      kProcedure, [&] { done = true; }, Ignore{});
  EXPECT_TRUE(done);
  EXPECT_EQ(lines(), (Lines{"> ImExRequest checkRows()", "< ImExRequest checkRows()"}));
}

TEST_F(Tracing, procedures_areTracedInTheOrderOfTheirCalls) {
  const auto inner = [&](bool fails) {
    traced(
        {"ImExModule", "Parse"},
        [&] {
          if (fails)
            failWith53();
        },
        Reraise{});
  };
  traced(
      kProcedure,
      [&] {
        inner(false);
        inner(true);
      },
      Ignore{});
  EXPECT_EQ(lines(), (Lines{
                         "> ImExRequest checkRows()",
                         "> ImExModule Parse()",
                         "< ImExModule Parse()",
                         "> ImExModule Parse()",
                         "! ImExModule Parse 53 Files: File not found",
                         "! ImExRequest checkRows 53 Files: File not found",
                     }));
}

TEST_F(Tracing, reraise_recordsTheErrorAndGivesItToTheCaller) {
  const std::optional<RuntimeError> error = raised([] {
    traced(
        kProcedure, [] { throw RuntimeError(1004, "SOAP", "no answer from the service"); }, Reraise{});
  });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 1004);
  EXPECT_EQ(error->source(), "SOAP");
  EXPECT_EQ(error->description(), "no answer from the service");
  EXPECT_EQ(lines(),
            (Lines{"> ImExRequest checkRows()", "! ImExRequest checkRows 1004 SOAP: no answer from the service"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Tracing, ignore_recordsTheErrorAndGivesAnEmptyResult) {
  const StringsPtr list = traced(
      kProcedure, []() -> StringsPtr { failWith53(); }, Ignore{});
  EXPECT_EQ(list, nullptr);
  const Integer number = traced(
      kProcedure, []() -> Integer { failWith53(); }, Ignore{});
  EXPECT_EQ(int{number}, 0);
  EXPECT_EQ(lines(), (Lines{
                         "> ImExRequest checkRows()",
                         "! ImExRequest checkRows 53 Files: File not found",
                         "> ImExRequest checkRows()",
                         "! ImExRequest checkRows 53 Files: File not found",
                     }));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Tracing, showBox_recordsTheErrorAndTellsTheUser) {
  const std::string text = traced(
      kProcedure, []() -> std::string { failWith53(); }, ShowBox{});
  EXPECT_EQ(text, "");
  EXPECT_EQ(lines(), (Lines{"> ImExRequest checkRows()", "! ImExRequest checkRows 53 Files: File not found"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{{"The requested operation could not be completed.", 48,
                                                      "Error Number: 53 - File not found"}}));
}

TEST_F(Tracing, showBox_saysWhatTheProcedureSays) {
  traced(
      kProcedure, [] { throw RuntimeError(-5, "Host", "gone"); },
      ShowBox{"An error was encountered while attempting to open a file to edit."});
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{
                {"An error was encountered while attempting to open a file to edit.", 48, "Error Number: -5 - gone"}}));
}

TEST_F(Tracing, aBodyThatLeavesEarly_writesNoExitLineAndNoError) {
  const int result = traced(
      {"Source", "procedure"}, []() -> int { throw LeaveEarly(); }, [](const CaughtError&) { return 7; });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(lines(), (Lines{"> Source procedure()"}));
}

TEST_F(Tracing, withoutAFailure_noEndingRuns) {
  traced(
      kProcedure, [] {}, ShowBox{});
  traced(
      kProcedure, [] {}, [](const CaughtError&) { ADD_FAILURE() << "the ending ran"; });
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Tracing, anEndingOfItsOwn_givesTheResult) {
  const std::string result = traced(
      kProcedure, []() -> std::string { failWith53(); },
      [&](const CaughtError& error) {
        EXPECT_EQ(lines().back(), "! ImExRequest checkRows 53 Files: File not found");
        return error.source + ' ' + error.title();
      });
  EXPECT_EQ(result, "Files Error Number: 53 - File not found");
}

TEST_F(Tracing, anEndingWithoutResult_leavesAnEmptyOne) {
  int seen = 0;
  const std::string result = traced(
      kProcedure, []() -> std::string { failWith53(); }, [&](const CaughtError& error) { seen = error.number; });
  EXPECT_EQ(result, "");
  EXPECT_EQ(seen, 53);
}

TEST_F(Tracing, irregularLabels_areKept) {
  const Procedure irregular{"cmdControl", "cmdEditFile_Click", "btnNew_Click", "ImExActionCtrl"};
  traced(
      irregular, [] {}, Ignore{});
  traced(irregular, failWith53, Ignore{});
  EXPECT_EQ(lines(), (Lines{
                         "> cmdControl cmdEditFile_Click()",
                         "< cmdControl cmdEditFile_Click()",
                         "> cmdControl cmdEditFile_Click()",
                         "! ImExActionCtrl btnNew_Click 53 Files: File not found",
                     }));
}

TEST_F(Tracing, anErrorLabelAlone_keepsTheSource) {
  traced({"ImExModule", "Parse", "launchInternetExplorer"}, failWith53, Ignore{});
  EXPECT_EQ(lines().back(), "! ImExModule launchInternetExplorer 53 Files: File not found");
}

TEST_F(Tracing, everyNumberOf16Bits_isAnOrdinaryError) {
  for (const std::int32_t number : {-32768, -1, 0, 32767}) {
    lines().clear();
    const auto body = [&] { throw RuntimeError(number, "Host", "failed"); };
    EXPECT_EQ(raised([&] { traced(kProcedure, body, Reraise{}); }).value().number(), number);
    EXPECT_EQ(lines().back(), "! ImExRequest checkRows " + std::to_string(number) + " Host: failed");
  }
}

TEST_F(Tracing, aNumberThatDoesNotFit16Bits_escapesEveryEndingAsAnOverflow) {
  for (const std::int32_t number : {32768, -32769, -2147467259, 2147483647}) {
    lines().clear();
    const auto body = [&] { throw RuntimeError(number, "Host", "failed"); };
    const auto own = [](const CaughtError&) { ADD_FAILURE() << "the ending ran"; };
    EXPECT_EQ(raised([&] { traced(kProcedure, body, Reraise{}); }).value().description(), "Overflow");
    EXPECT_EQ(raisedNumber([&] { traced(kProcedure, body, Ignore{}); }), 6);
    EXPECT_EQ(raisedNumber([&] { traced(kProcedure, body, ShowBox{}); }), 6);
    EXPECT_EQ(raisedNumber([&] { traced(kProcedure, body, own); }), 6);
    EXPECT_EQ(raisedNumber([&] { guarded(kProcedure, body, Ignore{}); }), 6);
    const std::string entry = "> ImExRequest checkRows()";
    EXPECT_EQ(lines(), (Lines{entry, entry, entry, entry}));
  }
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Tracing, theOverflowOfAnErrorNumber_isAnOrdinaryErrorOfTheCaller) {
  traced(
      {"ImExActionCtrl", "openFile"},
      [] {
        traced(
            kProcedure, [] { throw RuntimeError(-2147467259, "Host", "failed"); }, Ignore{});
      },
      ShowBox{});
  EXPECT_EQ(lines(), (Lines{
                         "> ImExActionCtrl openFile()",
                         "> ImExRequest checkRows()",
                         "! ImExActionCtrl openFile 6 ImEx: Overflow",
                     }));
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{{"The requested operation could not be completed.", 48, "Error Number: 6 - Overflow"}}));
}

TEST_F(Tracing, otherExceptions_becomeRuntimeErrors) {
  EXPECT_EQ(raisedNumber([] {
              traced(
                  kProcedure, [] { throw std::bad_alloc(); }, Reraise{});
            }),
            7);
  EXPECT_EQ(raisedNumber([] {
              traced(
                  kProcedure, [] { throw std::out_of_range("row 12"); }, Reraise{});
            }),
            51);
  EXPECT_EQ(raisedNumber([] {
              traced(
                  kProcedure, [] { throw 42; }, Reraise{});
            }),
            51);
  EXPECT_EQ(host.trace->errors(), (Lines{
                                      "! ImExRequest checkRows 7 ImEx: Out of memory",
                                      "! ImExRequest checkRows 51 ImEx: Internal error: row 12",
                                      "! ImExRequest checkRows 51 ImEx: Internal error",
                                  }));
}

TEST_F(Tracing, aTraceLogThatFailsOnEntry_isAnOrdinaryError) {
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "TraceLog"); };
  bool ran = false;
  EXPECT_EQ(raisedNumber([&] {
              traced(
                  kProcedure, [&] { ran = true; }, Reraise{});
            }),
            61);
  EXPECT_FALSE(ran);
  EXPECT_EQ(lines(), (Lines{"! ImExRequest checkRows 61 TraceLog: Disk full"}));
}

TEST_F(Tracing, aTraceLogThatFailsOnExit_isAnOrdinaryError) {
  bool ran = false;
  traced(
      kProcedure,
      [&] {
        ran = true;
        host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "TraceLog"); };
      },
      ShowBox{});
  EXPECT_TRUE(ran);
  EXPECT_EQ(lines(), (Lines{"> ImExRequest checkRows()", "! ImExRequest checkRows 61 TraceLog: Disk full"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{{"The requested operation could not be completed.", 48,
                                                      "Error Number: 61 - Disk full"}}));
}

TEST_F(Tracing, anErrorRecordThatFails_reachesTheCaller) {
  host.services.createTraceLog = [] { return std::make_shared<BrokenErrorLog>(); };
  host.install();
  EXPECT_EQ(raisedNumber([] { traced(kProcedure, failWith53, ShowBox{}); }), 61);
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Tracing, withoutATraceLog_theEndingsAreTheSame) {
  host.services.createTraceLog = nullptr;
  host.install();
  EXPECT_EQ(raisedNumber([] { traced(kProcedure, failWith53, Reraise{}); }), 53);
  EXPECT_EQ(raisedNumber([] {
              traced(
                  kProcedure, [] { throw RuntimeError(32768, "", ""); }, Ignore{});
            }),
            6);
  traced(kProcedure, failWith53, ShowBox{});
  EXPECT_EQ(host.messageBox.boxes.size(), 1u);
  EXPECT_EQ(lines(), (Lines{}));
}

TEST_F(Tracing, withoutATraceLog_allocatesNothing) {
  const auto allocationsOfACall = [] {
    const long before = allocationCount;
    traced(
        kLongProcedure, [] {}, ShowBox{});
    const int number = traced(
        kLongProcedure, [] { return 7; }, Reraise{});
    const auto text = [] { return std::string(kLongProcedure.name) + "(fileName = c:\\data\\customers.txt)"; };
    betweenTraces(kLongProcedure, text, [] {});
    return allocationCount - before + (number - 7);
  };
  EXPECT_GT(allocationsOfACall(), 0);
  host.services.createTraceLog = nullptr;
  host.install();
  EXPECT_EQ(allocationsOfACall(), 0);
}

TEST_F(Tracing, withoutAMessageBox_theUserCannotBeTold) {
  host.services.messageBox = nullptr;
  host.install();
  EXPECT_EQ(raisedNumber([] { traced(kProcedure, failWith53, ShowBox{}); }), 429);
}

TEST_F(Tracing, guarded_recordsErrorsWithoutTraceLines) {
  EXPECT_EQ(guarded(
                kProcedure, [] { return 7; }, Reraise{}),
            7);
  EXPECT_EQ(lines(), (Lines{}));
  EXPECT_EQ(raisedNumber([] { guarded(kProcedure, failWith53, Reraise{}); }), 53);
  EXPECT_EQ(lines(), (Lines{"! ImExRequest checkRows 53 Files: File not found"}));
}

TEST_F(Tracing, betweenTraces_tracesATextOfItsOwnAndLetsErrorsOut) {
  const auto text = [] { return "txtChangeField_KeyDown(KeyCode = 13, Shift = 0)"; };
  EXPECT_EQ(betweenTraces(kProcedure, text, [] { return 7; }), 7);
  EXPECT_EQ(lines(), (Lines{"> ImExRequest txtChangeField_KeyDown(KeyCode = 13, Shift = 0)",
                            "< ImExRequest txtChangeField_KeyDown(KeyCode = 13, Shift = 0)"}));
  lines().clear();
  EXPECT_EQ(raisedNumber([&] { betweenTraces(kProcedure, text, failWith53); }), 53);
  EXPECT_EQ(lines(), (Lines{"> ImExRequest txtChangeField_KeyDown(KeyCode = 13, Shift = 0)"}));
}

TEST_F(Tracing, readTraced_givesTheValue) {
  const std::string value = "CUSTOMER";
  EXPECT_EQ(readTraced("ImExRequest", "DataType", value), "CUSTOMER");
  EXPECT_EQ(lines(), (Lines{"> ImExRequest DataType()", "< ImExRequest DataType()"}));
}

TEST_F(Tracing, readTraced_givesTheValueInSpiteOfAnError) {
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "TraceLog"); };
  const std::string value = "CUSTOMER";
  EXPECT_EQ(readTraced("ImExRequest", "DataType", value), "CUSTOMER");
  EXPECT_EQ(lines(), (Lines{"! ImExRequest DataType 61 TraceLog: Disk full"}));
}

TEST_F(Tracing, writeTraced_setsTheValue) {
  std::string place = "CUSTOMER";
  writeTraced("ImExRequest", "DataType", place, std::string("PRODUCT"));
  EXPECT_EQ(place, "PRODUCT");
  EXPECT_EQ(lines(), (Lines{"> ImExRequest DataType()", "< ImExRequest DataType()"}));
}

TEST_F(Tracing, writeTraced_leavesTheValueAfterAnErrorOnEntry) {
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "TraceLog"); };
  std::string place = "CUSTOMER";
  writeTraced("ImExRequest", "DataType", place, std::string("PRODUCT"));
  EXPECT_EQ(place, "CUSTOMER");
  EXPECT_EQ(lines(), (Lines{"! ImExRequest DataType 61 TraceLog: Disk full"}));
}

TEST_F(Tracing, aCaughtError_isTheSameErrorAgain) {
  const CaughtError error{53, "Files", "File not found"};
  EXPECT_EQ(error.title(), "Error Number: 53 - File not found");
  EXPECT_EQ(error.asRuntimeError().number(), 53);
  EXPECT_EQ(error.asRuntimeError().source(), "Files");
  EXPECT_EQ(error.asRuntimeError().description(), "File not found");
}

TEST_F(Tracing, theTraceLog_isMadeOnTheFirstUseAndKept) {
  int made = 0;
  host.services.createTraceLog = [&] {
    ++made;
    return host.trace;
  };
  host.install();
  EXPECT_EQ(made, 0);
  traced(
      kProcedure, [] {}, Ignore{});
  traced(kProcedure, failWith53, Ignore{});
  EXPECT_EQ(made, 1);
  EXPECT_EQ(host::traceLog(), host.trace.get());
}

TEST_F(Tracing, eachThread_hasATraceLogForItsLife) {
  std::vector<std::weak_ptr<RecordingTraceLog>> made;
  Lines linesOfThread;
  host.services.createTraceLog = [&] {
    auto log = std::make_shared<RecordingTraceLog>();
    made.push_back(log);
    return log;
  };
  host.install();
  traced(
      {"ImExModule", "initialize"}, [] {}, Ignore{});
  std::thread other([&] {
    traced(
        {"ImExModule", "Parse"}, [] {}, Ignore{});
    traced({"ImExModule", "Parse"}, failWith53, Ignore{});
    linesOfThread = made.back().lock()->lines;
  });
  other.join();
  ASSERT_EQ(made.size(), 2u);
  EXPECT_EQ(linesOfThread, (Lines{"> ImExModule Parse()", "< ImExModule Parse()", "> ImExModule Parse()",
                                  "! ImExModule Parse 53 Files: File not found"}));
  EXPECT_TRUE(made[1].expired());
  EXPECT_EQ(made[0].lock()->lines, (Lines{"> ImExModule initialize()", "< ImExModule initialize()"}));
}

TEST(required, aServiceThatWasSupplied_isThatService) {
  FakeClock clock;
  EXPECT_EQ(&host::required(&clock), &clock);
}

TEST(required, aServiceThatWasNotSupplied_isError429) {
  host::Clock* none = nullptr;
  const std::optional<RuntimeError> error = raised([&] { host::required(none); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 429);
  EXPECT_EQ(error->description(), "Component can't create object");
}

} // namespace imex::test
