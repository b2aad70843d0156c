#include "desk/SettingsDialog.h"

#include "DeskTest.h"

#include <QDialogButtonBox>

namespace imex::desk::test {

namespace {

class DeskSettingsDialog : public DeskTest {
 protected:
  DeskSettingsDialog() : dialog(settings) {
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
  }

  void type(const char* field, const char* text) {
    auto& edit = child<QLineEdit>(dialog, field);
    edit.setFocus();
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, QString::fromUtf8(text));
  }
  QString remark(const std::string& field) { return child<QLabel>(dialog, (field + "Remark").c_str()).text(); }
  QPushButton& ok() { return *dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }

  SettingsDialog dialog;
};

TEST_F(DeskSettingsDialog, whatIsWrongIsSaidBesideTheFieldAndKeepsOkDisabled) {
  struct {
    const char* field;
    const char* wrong;
    const char* right;
    const char* message;
    const char* hint;
  } const rows[] = {
      {"secured", "ftp://host/", "http://host/", "Must be a web address that begins with http:// or https://",
       "Empty: no service is set"},
      {"unsecured", "host", "", "Must be a web address that begins with http:// or https://",
       "Empty: no service is set"},
      {"proxyPort", "65536", "65535", "Must be a number from 1 to 65535, or empty", "Empty: no proxy"},
      {"timeout", "2147483648", "2147483647", "Must be a number from 0 to 2147483647", "Milliseconds; 0: no limit"},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(ok().isEnabled()) << row.field;
    type(row.field, row.wrong);
    EXPECT_EQ(QString::fromLatin1(row.message), remark(row.field)) << row.field;
    EXPECT_EQ(QString::fromLatin1(row.message), child<QLineEdit>(dialog, row.field).accessibleDescription());
    EXPECT_FALSE(ok().isEnabled()) << row.field;
    type(row.field, row.right);
    EXPECT_EQ(QString::fromLatin1(row.hint), remark(row.field)) << row.field;
  }
  EXPECT_TRUE(ok().isEnabled());
}

TEST_F(DeskSettingsDialog, enterSavesWhatWasTyped) {
  type("secured", "https://service.example/secured");
  type("unsecured", "http://service.example/unsecured");
  type("proxyPort", "8080");
  type("timeout", "0");
  type("userName", "Ann Agent");
  type("userId", "agent7");
  QTest::mouseClick(&child<QCheckBox>(dialog, "isCentral"), Qt::LeftButton, {}, QPoint(8, 8));
  QTest::keyClick(&dialog, Qt::Key_Return);
  EXPECT_EQ(QDialog::Accepted, dialog.result());
  const SettingValues typed{
      "https://service.example/secured", "http://service.example/unsecured", 0, "8080", "Ann Agent", "agent7", true};
  EXPECT_EQ(typed, settings.values());
  DeskSettings again(settings.iniFile(), "", "");
  again.load();
  EXPECT_EQ(typed, again.values());
}

TEST_F(DeskSettingsDialog, enterWithAWrongFieldSavesNothing) {
  type("timeout", "soon");
  QTest::keyClick(&dialog, Qt::Key_Return);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(30000, settings.timeout());
}

TEST_F(DeskSettingsDialog, escapeSavesNothing) {
  type("userName", "somebody else");
  QTest::keyClick(&dialog, Qt::Key_Escape);
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_NE("somebody else", settings.name());
}

TEST_F(DeskSettingsDialog, failedSaveIsToldAndWhatWasTypedStays) {
  folder.write("config", "a file where the folder should be");
  type("userName", "Ann");
  dialogs.expectBox();
  QTest::keyClick(&dialog, Qt::Key_Return);
  EXPECT_EQ(std::vector<std::string>{"Error Number: 57 - The settings could not be saved to " +
                                     (folder / "config/desk.ini") +
                                     ": The folder cannot be made: The requested operation could not be completed."},
            dialogs.boxes);
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_EQ(QStringLiteral("Ann"), child<QLineEdit>(dialog, "userName").text());
}

TEST_F(DeskSettingsDialog, everyFieldIsReachedWithTab) {
  std::vector<std::string> names;
  child<QLineEdit>(dialog, "secured").setFocus();
  for (int i = 0; i < 7; ++i) {
    names.push_back(QApplication::focusWidget()->objectName().toStdString());
    key(Qt::Key_Tab);
  }
  EXPECT_EQ(
      (std::vector<std::string>{"secured", "unsecured", "proxyPort", "timeout", "userName", "userId", "isCentral"}),
      names);
}

} // namespace

} // namespace imex::desk::test
