#include "records/ImportExportErrorBean.h"

#include "support/TestHost.h"
#include "support/texts.h"

#include <gtest/gtest.h>

namespace imex::test {
namespace {

class ImportExportErrorBeanTest : public testing::Test {
 protected:
  TestHost host;
  ImportExportErrorBean bean;
};

TEST_F(ImportExportErrorBeanTest, freshRecord_isEmpty) {
  EXPECT_EQ(bean.RowNumber(), 0);
  EXPECT_EQ(bean.RowError(), "");
}

TEST_F(ImportExportErrorBeanTest, values_areKeptAsTheyAreAssigned) {
  bean.RowNumber(-32768);
  bean.RowError(" Error : é ");

  EXPECT_EQ(bean.RowNumber(), -32768);
  EXPECT_EQ(bean.RowError(), " Error : é ");
}

TEST_F(ImportExportErrorBeanTest, aCopy_hasValuesOfItsOwn) {
  bean.RowError("first");
  ImportExportErrorBean copy = bean;
  copy.RowError("second");

  EXPECT_EQ(bean.RowError(), "first");
}

TEST_F(ImportExportErrorBeanTest, everyAccessor_tracesItsName) {
  bean.RowNumber(3);
  (void)bean.RowNumber();
  bean.RowError("a");
  (void)bean.RowError();

  EXPECT_EQ(host.trace->lines, (Texts{"> ImportExportErrorBean RowNumber()", "< ImportExportErrorBean RowNumber()",
                                      "> ImportExportErrorBean RowNumber()", "< ImportExportErrorBean RowNumber()",
                                      "> ImportExportErrorBean RowError()", "< ImportExportErrorBean RowError()",
                                      "> ImportExportErrorBean RowError()", "< ImportExportErrorBean RowError()"}));
}

TEST_F(ImportExportErrorBeanTest, anAccessorThatFails_isRecordedAndKeepsWhatWasThere) {
  bean.RowNumber(4);
  bean.RowError("old");
  host.trace->lines.clear();
  host.trace->onTrace = [] { throw RuntimeError(1009, "TraceLog", "The trace is full"); };

  bean.RowNumber(5);
  bean.RowError("new");

  EXPECT_EQ(bean.RowNumber(), 4);
  EXPECT_EQ(bean.RowError(), "old");
  EXPECT_EQ(host.trace->lines, (Texts{"! ImportExportErrorBean RowNumber 1009 TraceLog: The trace is full",
                                      "! ImportExportErrorBean RowError 1009 TraceLog: The trace is full",
                                      "! ImportExportErrorBean RowNumber 1009 TraceLog: The trace is full",
                                      "! ImportExportErrorBean RowError 1009 TraceLog: The trace is full"}));
}

} // namespace
} // namespace imex::test
