#include "EditorTest.h"

namespace imex::test {

namespace {

class ImExFileEditProperties : public EditorTest {};

TEST_F(ImExFileEditProperties, startEmpty) {
  EXPECT_EQ(nullptr, editor.HeaderCollection());
  EXPECT_EQ(0, editor.NumberColumns());
  EXPECT_EQ(0, editor.DelimiterAscii());
  EXPECT_EQ(0, editor.NumberRows());
  EXPECT_EQ(QString(), editor.fileName());
  EXPECT_FALSE(editor.isModified());
}

TEST_F(ImExFileEditProperties, giveWhatTheyWereGiven) {
  const auto titles = std::make_shared<Strings>(Strings{"a", "b"});
  editor.HeaderCollection(titles);
  editor.NumberColumns(32767);
  editor.DelimiterAscii(124);
  editor.NumberRows(-1);
  editor.fileName(QStringLiteral("C:\\data\\é.txt"));
  EXPECT_EQ(titles, editor.HeaderCollection()) << "the list itself";
  EXPECT_EQ(32767, editor.NumberColumns());
  EXPECT_EQ(124, editor.DelimiterAscii());
  EXPECT_EQ(-1, editor.NumberRows());
  EXPECT_EQ(QStringLiteral("C:\\data\\é.txt"), editor.fileName());
}

TEST_F(ImExFileEditProperties, traceEveryReadAndWrite) {
  editor.HeaderCollection(nullptr);
  (void)editor.HeaderCollection();
  EXPECT_EQ(traced("HeaderCollection()") + traced("HeaderCollection()"), everything());
  editor.NumberColumns(1);
  (void)editor.NumberColumns();
  EXPECT_EQ(traced("NumberColumns()") + traced("NumberColumns()"), everything());
  editor.DelimiterAscii(9);
  (void)editor.DelimiterAscii();
  EXPECT_EQ(traced("DelimiterAscii()") + traced("DelimiterAscii()"), everything());
  editor.NumberRows(1);
  (void)editor.NumberRows();
  EXPECT_EQ(traced("NumberRows()") + traced("NumberRows()"), everything());
  editor.fileName(QString());
  (void)editor.fileName();
  EXPECT_EQ(traced("fileName()") + traced("fileName()"), everything());
}

TEST_F(ImExFileEditProperties, traceLogThatFailsReachesTheHost) {
  host.trace->onTrace = [] { throw RuntimeError(57, "Log", "Device I/O error"); };
  const auto error = raised([&] { editor.NumberRows(1); });
  host.trace->onTrace = [] {};
  ASSERT_TRUE(error);
  EXPECT_EQ(57, error->number());
  EXPECT_EQ("Log", error->source());
  EXPECT_EQ("Device I/O error", error->description());
  EXPECT_EQ(Texts{"! ImExActionCtrl NumberRows 57 Log: Device I/O error"}, host.trace->errors());
}

} // namespace

} // namespace imex::test
