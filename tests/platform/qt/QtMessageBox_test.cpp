#include "platform/qt/QtMessageBox.h"

#include "modal.h"

#include <QAbstractButton>
#include <QMessageBox>

namespace imex::platform {

namespace {

using test::withNextDialog;

TEST(QtMessageBox, noticeShowsItsTextsAndOneButton) {
  withNextDialog<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(QStringLiteral("Corvana Maintenance"), box.windowTitle());
    EXPECT_EQ(QStringLiteral("The file\nis <b>not</b> there."), box.text());
    EXPECT_EQ(Qt::PlainText, box.textFormat());
    EXPECT_EQ(QMessageBox::Information, box.icon());
    EXPECT_EQ(QMessageBox::Ok, box.standardButtons());
    QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
  });
  EXPECT_EQ(host::Answer::ok, QtMessageBox().show("The file\r\nis <b>not</b> there.", 64, "Corvana Maintenance"));
}

TEST(QtMessageBox, exclamationHasItsIcon) {
  withNextDialog<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(QMessageBox::Warning, box.icon());
    EXPECT_EQ(QMessageBox::Ok, box.standardButtons());
    QTest::keyClick(&box, Qt::Key_Return);
  });
  EXPECT_EQ(host::Answer::ok, QtMessageBox().show("Prompt", 48, "Title"));
}

TEST(QtMessageBox, questionIsAnsweredYes) {
  withNextDialog<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(QMessageBox::Question, box.icon());
    EXPECT_EQ(QMessageBox::Yes | QMessageBox::No, box.standardButtons());
    QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton);
  });
  EXPECT_EQ(host::Answer::yes, QtMessageBox().show("Correct the file?", 36, "Title"));
}

TEST(QtMessageBox, questionIsAnsweredNo) {
  withNextDialog<QMessageBox>([](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::No), Qt::LeftButton); });
  EXPECT_EQ(host::Answer::no, QtMessageBox().show("Correct the file?", 36, "Title"));
}

TEST(QtMessageBox, escapeIsNoOrOk) {
  withNextDialog<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(host::Answer::no, QtMessageBox().show("Correct the file?", 36, "Title"));
  withNextDialog<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(host::Answer::ok, QtMessageBox().show("Prompt", 64, "Title"));
}

TEST(QtMessageBox, belongsToTheActiveWindow) {
  QWidget window;
  window.show();
  window.activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  withNextDialog<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(&window, box.parentWidget());
    box.accept();
  });
  QtMessageBox().show("Prompt", 64, "Title");
}

} // namespace

} // namespace imex::platform
