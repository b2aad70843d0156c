#include "platform/browser/FindBar.h"

#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace imex::platform::test {

namespace {

class FindBarTest : public testing::Test {
 protected:
  FindBarTest() {
    QObject::connect(&bar, &FindBar::wanted, [this](const QString& text, bool isBackward) {
      wanted.push_back((isBackward ? "<" : ">") + text.toStdString());
    });
    QObject::connect(&bar, &FindBar::closed, [this] { wanted.emplace_back("closed"); });
    bar.open();
    wanted.clear();
  }

  QLineEdit& field() { return *bar.findChild<QLineEdit*>(QStringLiteral("findText")); }
  std::string result() { return bar.findChild<QLabel*>(QStringLiteral("findResult"))->text().toStdString(); }
  void press(const char* button) {
    QTest::mouseClick(bar.findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
  }

  FindBar bar;
  std::vector<std::string> wanted;
};

using Wanted = std::vector<std::string>;

TEST_F(FindBarTest, looksForWhatIsTypedAtOnce) {
  QTest::keyClicks(&field(), QStringLiteral("ab"));
  QTest::keyClick(&field(), Qt::Key_Backspace);
  EXPECT_EQ((Wanted{">a", ">ab", ">a"}), wanted);
}

TEST_F(FindBarTest, buttonsGoOnAndBackAndEnd) {
  QTest::keyClicks(&field(), QStringLiteral("a"));
  wanted.clear();
  press("findNext");
  press("findPrevious");
  press("findClose");
  EXPECT_EQ((Wanted{">a", "<a", "closed"}), wanted);
}

TEST_F(FindBarTest, keysGoOnAndBackAndEnd) {
  QTest::keyClicks(&field(), QStringLiteral("a"));
  wanted.clear();
  QTest::keyClick(&field(), Qt::Key_Return);
  QTest::keyClick(&field(), Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClick(&field(), Qt::Key_Escape);
  EXPECT_EQ((Wanted{">a", "<a", "closed"}), wanted);
}

TEST_F(FindBarTest, tellsHowOftenAndWhich) {
  QTest::keyClicks(&field(), QStringLiteral("a"));
  bar.tell(0, 0);
  EXPECT_EQ("Not found", result());
  bar.tell(1, 1);
  EXPECT_EQ("1 of 1", result());
  bar.tell(12, 3);
  EXPECT_EQ("3 of 12", result());
  QTest::keyClick(&field(), Qt::Key_Backspace);
  bar.tell(0, 0);
  EXPECT_EQ("", result());
}

TEST_F(FindBarTest, openedAgainItOffersTheLastTextToBeReplaced) {
  QTest::keyClicks(&field(), QStringLiteral("abc"));
  bar.hide();
  wanted.clear();
  bar.open();
  EXPECT_EQ(Wanted{">abc"}, wanted);
  EXPECT_EQ(QStringLiteral("abc"), field().selectedText());
}

} // namespace

} // namespace imex::platform::test
