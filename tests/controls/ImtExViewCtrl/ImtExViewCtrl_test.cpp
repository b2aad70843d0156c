#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"

#include "controls/common/text.h"
#include "platform/qt/QtGrid.h"
#include "support/ErrorLog.h"
#include "support/TestHost.h"
#include "support/texts.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace imex::test {

namespace {

constexpr const char* kFields[] = {"txtJobName", "Text2", "Text3", "Text4", "Text5", "Text6"};

class ImtExViewCtrl : public testing::Test {
 protected:
  ImtExViewCtrl() {
    control.resize(control.sizeHint());
    control.show();
    control.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&control));
  }

  template <class Widget>
  Widget& child(const char* name) const {
    auto* widget = control.findChild<Widget*>(QString::fromLatin1(name));
    if (widget == nullptr)
      throw std::out_of_range(name);
    return *widget;
  }

  host::Grid& grid() const { return child<platform::QtGrid>("MSFlexGrid1").cells(); }

  std::string caption(const char* name) const { return toCore(child<QLabel>(name).text()); }

  std::string focused() const {
    return control.focusWidget() == nullptr ? "" : toCore(control.focusWidget()->objectName());
  }

  TestHost host;
  imex::ImtExViewCtrl control;
};

TEST_F(ImtExViewCtrl, theList_hasItsTitles) {
  EXPECT_EQ(8, grid().size().columns);
  Texts titles;
  for (int column = 0; column < 8; ++column)
    titles.emplace_back(grid().text({0, column}));
  EXPECT_EQ((Texts{"", "JOB NAME", "JOB TYPE", "START TIME", "FINISH TIME", "STATUS", "REQUESTOR", "LOG"}), titles);
}

TEST_F(ImtExViewCtrl, aLogThatKeepsErrorsAlone_isToldOfNothingElse) {
  const auto log = ErrorLog::installed(host);
  imex::ImtExViewCtrl other;
  other.resize(900, 700);
  other.show();
  for (QPushButton* button : other.findChildren<QPushButton*>())
    button->click();
  EXPECT_EQ(Texts{}, log->lines);
}

TEST_F(ImtExViewCtrl, theColumns_haveTheirWidthsInTwips) {
  const int usual = platform::QtGrid().cells().layout().columnWidth(1);
  std::vector<int> widths;
  for (int column = 0; column < 8; ++column)
    widths.push_back(grid().layout().columnWidth(column));
  EXPECT_EQ((std::vector{400, 1200, 1200, 1200, 1200, 1200, 1200, usual}), widths);
}

TEST_F(ImtExViewCtrl, theFirstRow_isNumberedAndNothingElseIsFilled) {
  ASSERT_GT(grid().size().rows, 1);
  Texts filled;
  for (int row = 1; row < grid().size().rows; ++row)
    for (int column = 0; column < 8; ++column)
      if (!grid().text({row, column}).empty())
        filled.push_back(std::to_string(row) + ',' + std::to_string(column) + ' ' +
                         std::string(grid().text({row, column})));
  EXPECT_EQ(Texts{"1,0 1"}, filled);
}

TEST_F(ImtExViewCtrl, labels_haveTheirCaptionsWithALastBlank) {
  EXPECT_EQ("Job Name : ", caption("Label1"));
  EXPECT_EQ("Job Type : ", caption("Label2"));
  EXPECT_EQ("Start Time : ", caption("Label3"));
  EXPECT_EQ("Finish Time : ", caption("Label4"));
  EXPECT_EQ("Status : ", caption("Label5"));
  EXPECT_EQ("Requestor : ", caption("Label6"));
  EXPECT_EQ(QStringLiteral("Search"), child<QPushButton>("cmdSearch").text());
}

TEST_F(ImtExViewCtrl, labels_belongToTheirFields) {
  for (int i = 0; i < 6; ++i) {
    const std::string label = "Label" + std::to_string(i + 1);
    EXPECT_EQ(&child<QLineEdit>(kFields[i]), child<QLabel>(label.c_str()).buddy());
  }
}

TEST_F(ImtExViewCtrl, tab_goesThroughFieldsButtonAndList) {
  child<QLineEdit>("txtJobName").setFocus();
  Texts order;
  for (int i = 0; i < 9; ++i) {
    order.push_back(focused());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  EXPECT_EQ(
      (Texts{"txtJobName", "Text2", "Text3", "Text4", "Text5", "Text6", "cmdSearch", "MSFlexGrid1", "txtJobName"}),
      order);
}

TEST_F(ImtExViewCtrl, whatHasTheKeyboard_hasANameToRead) {
  const char* const names[] = {"Job Name", "Job Type", "Start Time", "Finish Time", "Status", "Requestor"};
  for (int i = 0; i < 6; ++i)
    EXPECT_EQ(QString::fromLatin1(names[i]), child<QLineEdit>(kFields[i]).accessibleName());
  EXPECT_EQ(QStringLiteral("Jobs"), child<platform::QtGrid>("MSFlexGrid1").accessibleName());
}

TEST_F(ImtExViewCtrl, searching_doesNothing) {
  host.trace->lines.clear();
  QTest::keyClicks(&child<QLineEdit>("txtJobName"), QStringLiteral("nightly"));
  QTest::mouseClick(&child<QPushButton>("cmdSearch"), Qt::LeftButton);
  QTest::keyClick(&child<QLineEdit>("txtJobName"), Qt::Key_Return);
  EXPECT_EQ(Texts{}, host.trace->lines);
  EXPECT_TRUE(host.messageBox.boxes.empty());
  EXPECT_EQ("", grid().text({1, 1}));
}

TEST_F(ImtExViewCtrl, itsMaking_isTraced) {
  EXPECT_EQ((Texts{"> ImtExViewCtrl UserControl_Initialize()", "< ImtExViewCtrl UserControl_Initialize()"}),
            host.trace->lines);
}

TEST_F(ImtExViewCtrl, aFailureOfItsMaking_isRecordedAndShown) {
  host.trace->lines.clear();
  host.trace->onTrace = [this] {
    if (host.trace->lines.empty())
      throw RuntimeError(ErrorNumber::diskFull);
  };
  const imex::ImtExViewCtrl other;
  EXPECT_EQ(Texts{"! ImExActionCtrl UserControl_Initialize 61 ImEx: Disk full"}, host.trace->lines);
  EXPECT_EQ((std::vector<Box>{{"The requested operation could not be completed.", 48, "Error Number: 61 - Disk full"}}),
            host.messageBox.boxes);
}

TEST_F(ImtExViewCtrl, nothingIsCutAtItsSmallestSize) {
  control.resize(control.minimumSizeHint());
  for (int i = 1; i <= 6; ++i) {
    const auto& label = child<QLabel>(("Label" + std::to_string(i)).c_str());
    EXPECT_GE(label.width(), label.sizeHint().width()) << i;
  }
  const auto& button = child<QPushButton>("cmdSearch");
  EXPECT_GE(button.width(), button.sizeHint().width());
  EXPECT_TRUE(control.rect().contains(child<QWidget>("MSFlexGrid1").geometry()));
}

TEST_F(ImtExViewCtrl, theList_growsWithTheControl) {
  const auto& list = child<QWidget>("MSFlexGrid1");
  const QSize before = list.size();
  control.resize(control.size() + QSize(200, 100));
  QApplication::processEvents();
  EXPECT_EQ(before + QSize(200, 100), list.size());
}

TEST_F(ImtExViewCtrl, atItsUsualSize_allColumnsAreSeen) {
  const auto& list = child<platform::QtGrid>("MSFlexGrid1");
  EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.model()->index(0, 6))));
}

} // namespace

} // namespace imex::test
