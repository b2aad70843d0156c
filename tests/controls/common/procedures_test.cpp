#include "controls/common/procedures.h"

#include "support/ErrorLog.h"
#include "support/TestHost.h"
#include "support/raised.h"
#include "support/texts.h"

#include <gtest/gtest.h>

namespace imex {

namespace {

using test::raisedNumber;
using test::Texts;

class ControlProcedure : public testing::Test {
 protected:
  ControlProcedure() { control.setObjectName(QStringLiteral("editor 1")); }

  test::TestHost host;
  QObject control;
};

void fail(int number) {
  throw RuntimeError(number, "thrower", "went wrong");
}

TEST_F(ControlProcedure, sourceIsTheNameAtRunTime) {
  EXPECT_EQ(7, tracedIn(
                   control, {"cmd_Click"}, [] { return 7; }, Reraise{}));
  control.setObjectName(QStringLiteral("editor 2"));
  tracedIn(
      control, {"cmd_Click"}, [] {}, Reraise{});
  EXPECT_EQ(
      (Texts{"> editor 1 cmd_Click()", "< editor 1 cmd_Click()", "> editor 2 cmd_Click()", "< editor 2 cmd_Click()"}),
      host.trace->lines);
}

TEST_F(ControlProcedure, errorRecordHasItsOwnLabels) {
  tracedIn(
      control, {"cmd_Click", "other", "Class"}, [] { fail(57); }, Ignore{});
  tracedIn(
      control, {.name = "cmd_Click", .errorName = "cmd_Click()"}, [] { fail(57); }, Ignore{});
  EXPECT_EQ((Texts{"> editor 1 cmd_Click()", "! Class other 57 thrower: went wrong", "> editor 1 cmd_Click()",
                   "! editor 1 cmd_Click() 57 thrower: went wrong"}),
            host.trace->lines);
}

TEST_F(ControlProcedure, guardedWritesAnErrorAlone) {
  guardedIn(
      control, {.name = "DataType", .errorSource = "Class"}, [] {}, Reraise{});
  EXPECT_EQ(57, raisedNumber([&] {
              guardedIn(
                  control, {.name = "DataType", .errorSource = "Class"}, [] { fail(57); }, Reraise{});
            }));
  EXPECT_EQ((Texts{"! Class DataType 57 thrower: went wrong"}), host.trace->lines);
}

TEST_F(ControlProcedure, statementsAfterAFailedOneRun) {
  bool ranOn = false;
  resumeNext(control, "UserControl_Resize()", [] { fail(5); });
  resumeNext(control, "UserControl_Resize()", [&] { ranOn = true; });
  EXPECT_TRUE(ranOn);
  EXPECT_EQ((Texts{"~ editor 1 UserControl_Resize() 5 thrower: went wrong"}), host.trace->lines);
}

TEST_F(ControlProcedure, resizeGoesOnAfterEachOfItsStatements) {
  Texts done;
  tracedResize(
      control,
      [&] {
        done.emplace_back("first");
        fail(5);
      },
      [&] { done.emplace_back("second"); }, [] { fail(6); });
  EXPECT_EQ((Texts{"first", "second"}), done);
  EXPECT_EQ((Texts{"> editor 1 UserControl_Resize()", "~ editor 1 UserControl_Resize() 5 thrower: went wrong",
                   "~ editor 1 UserControl_Resize() 6 thrower: went wrong", "< editor 1 UserControl_Resize()"}),
            host.trace->lines);
}

TEST_F(ControlProcedure, resizeGoesOnAfterItsTraceLinesToo) {
  host.trace->onTrace = [] { fail(61); };
  bool ranOn = false;
  tracedResize(control, [&] { ranOn = true; });
  EXPECT_TRUE(ranOn);
  EXPECT_EQ(Texts(2, "~ editor 1 UserControl_Resize() 61 thrower: went wrong"), host.trace->lines);
}

TEST_F(ControlProcedure, logThatKeepsErrorsAloneIsToldOfNothingElse) {
  const auto log = test::ErrorLog::installed(host);
  tracedResize(control, [] { fail(5); });
  tracedIn(
      control, {"cmd_Click"}, [] {}, Reraise{});
  tracedIn(
      control, {"cmd_Click"}, [] { fail(57); }, Ignore{});
  EXPECT_EQ(
      (Texts{"~ editor 1 UserControl_Resize() 5 thrower: went wrong", "! editor 1 cmd_Click 57 thrower: went wrong"}),
      log->lines);
}

TEST_F(ControlProcedure, resumingNeedsNoTraceLog) {
  host.services.createTraceLog = nullptr;
  host.install();
  EXPECT_EQ(0, raisedNumber([&] { resumeNext(control, "UserControl_Resize()", [] { fail(5); }); }));
}

TEST_F(ControlProcedure, numberPast16BitsIsNotResumed) {
  EXPECT_EQ(6, raisedNumber([&] { resumeNext(control, "UserControl_Resize()", [] { fail(70000); }); }));
  EXPECT_EQ(Texts{}, host.trace->lines);
}

TEST(ControlText, goesBothWays) {
  const std::string text = "Zoë — 100 €";
  EXPECT_EQ(text, toCore(toQt(text)));
  EXPECT_EQ(QStringLiteral("Zoë"), toQt("Zoë"));
  EXPECT_TRUE(toQt("").isEmpty());
}

} // namespace

} // namespace imex
