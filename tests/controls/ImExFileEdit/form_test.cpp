#include "EditorTest.h"
#include "support/ErrorLog.h"

#include <QLabel>

namespace imex::test {

namespace {

class ImExFileEditForm : public EditorTest {
 protected:
  static std::string caption(QString text) { return toCore(text.remove(QLatin1Char('&'))); }
};

TEST_F(ImExFileEditForm, buttonsHaveTheirCaptions) {
  EXPECT_EQ("&Save", toCore(save().text()));
  EXPECT_EQ("&Cancel", toCore(cancel().text()));
}

TEST_F(ImExFileEditForm, partsFollowTheSize) {
  struct Figures {
    QSize size;
    QRect line, grid, save, cancel;
  };
  const std::vector<Figures> all = {
      {{640, 480}, {8, 2, 624, 24}, {8, 29, 624, 422}, {238, 454, 80, 24}, {322, 454, 80, 24}},
      {{641, 481}, {8, 2, 625, 24}, {8, 29, 625, 423}, {238, 456, 80, 24}, {322, 456, 80, 24}},
      {{643, 482}, {8, 2, 627, 24}, {8, 29, 627, 424}, {240, 456, 80, 24}, {324, 456, 80, 24}},
      {{300, 200}, {8, 2, 284, 24}, {8, 29, 284, 142}, {68, 174, 80, 24}, {152, 174, 80, 24}}};
  for (const Figures& figures : all) {
    window.resize(figures.size);
    ASSERT_EQ(figures.size, editor.size());
    EXPECT_EQ(figures.line, line().geometry());
    EXPECT_EQ(figures.grid, view().geometry());
    EXPECT_EQ(figures.save, save().geometry());
    EXPECT_EQ(figures.cancel, cancel().geometry());
  }
}

TEST_F(ImExFileEditForm, resizeIsTraced) {
  window.resize(700, 500);
  EXPECT_EQ(traced("UserControl_Resize()"), everything());
}

TEST_F(ImExFileEditForm, traceLogThatFailsKeepsNoPartFromItsPlace) {
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "Log"); };
  window.resize(640, 480);
  host.trace->onTrace = [] {};
  EXPECT_EQ(Texts(2, "~ editor UserControl_Resize() 61 Log: Disk full"), everything());
  EXPECT_EQ(QRect(8, 2, 624, 24), line().geometry());
  EXPECT_EQ(QRect(8, 29, 624, 422), view().geometry());
  EXPECT_EQ(QRect(238, 454, 80, 24), save().geometry());
  EXPECT_EQ(QRect(322, 454, 80, 24), cancel().geometry());
}

TEST_F(ImExFileEditForm, logThatKeepsErrorsAloneIsToldOfNothingElse) {
  const auto log = ErrorLog::installed(host);
  const ImExFileEdit other;
  window.resize(640, 480);
  open({"a|b", "c|d"}, 2);
  pressCell(1, 2);
  doubleClickCell(2, 1);
  typeText("x");
  key(Qt::Key_Return);
  key(Qt::Key_Return);
  pressRowNumber(2);
  key(Qt::Key_Delete);
  click(save());
  cancel().setFocus();
  key(Qt::Key_Tab);
  click(cancel());
  EXPECT_EQ(Texts{}, log->errors());
  EXPECT_EQ("a|b\r\n", fileBytes());
}

TEST_F(ImExFileEditForm, partsThatFindNoRoomAreRecordedAndTheRestIsLaidOut) {
  ImExFileEdit small;
  small.setObjectName(QStringLiteral("small"));
  small.show();
  everything();
  small.resize(15, 57);
  const std::string resumed = "~ small UserControl_Resize() 5 ImExFileEdit: Invalid procedure call or argument";
  EXPECT_EQ((Texts{"> small UserControl_Resize()", resumed, resumed, resumed, "< small UserControl_Resize()"}),
            everything());
  EXPECT_EQ(QPoint(8 + 2, 32), small.findChild<QPushButton*>(QStringLiteral("cmdCancel"))->pos());
}

TEST_F(ImExFileEditForm, partsDoNotOverlap) {
  window.resize(editor.minimumSizeHint());
  EXPECT_LT(line().geometry().bottom(), view().geometry().top());
  EXPECT_LT(view().geometry().bottom(), save().geometry().top());
  EXPECT_LE(save().geometry().bottom(), editor.height());
  EXPECT_LE(0, save().x());
  EXPECT_LE(cancel().geometry().right(), editor.width());
}

TEST_F(ImExFileEditForm, labelLeavesMostOfTheLine) {
  giveFile("a\r\n", 1, 1);
  editor.HeaderCollection(std::make_shared<Strings>(Strings{std::string(300, 'W')}));
  editor.loadGrid();
  const auto& label = child<QLabel>("lblEditCell");
  EXPECT_LE(label.width(), line().width() / 3 + 1);
  EXPECT_TRUE(line().rect().contains(label.geometry()));
  EXPECT_GE(line().textMargins().left(), label.geometry().right() - 2) << "the text begins behind it";
}

TEST_F(ImExFileEditForm, partsHaveNamesForScreenReaders) {
  EXPECT_EQ("Rows of the import file", toCore(view().accessibleName()));
  EXPECT_EQ("Save", toCore(save().accessibleName()));
  EXPECT_EQ("Cancel", toCore(cancel().accessibleName()));
  EXPECT_EQ("New row, column 1", toCore(line().accessibleName())) << "before a load";
  EXPECT_FALSE(line().accessibleDescription().isEmpty());
  EXPECT_FALSE(view().accessibleDescription().isEmpty());
  EXPECT_EQ(&line(), child<QLabel>("lblEditCell").buddy());
}

TEST_F(ImExFileEditForm, saysHowLargeItWantsToBe) {
  EXPECT_EQ(QSize(720, 400), editor.sizeHint());
  EXPECT_EQ(QSize(240, 160), editor.minimumSizeHint());
}

TEST_F(ImExFileEditForm, standsWithoutAnyServiceOfAHost) {
  host::install({});
  ImExFileEdit other;
  other.show();
  EXPECT_FALSE(other.grab().isNull());
  host.install();
}

} // namespace

} // namespace imex::test
