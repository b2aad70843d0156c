#include "DeskTest.h"

#include "controls/common/text.h"
#include "runtime/text.h"

#include <QApplication>
#include <QFileDialog>
#include <QPlainTextEdit>

#include <filesystem>

namespace imex::desk::test {

namespace {

constexpr int kGreatestWait = 60'000; // milliseconds; only a failing test waits so long

/// The window with no setting at all, and the import service that it starts itself.
class DeskLiveService : public DeskTest {
 protected:
  DeskLiveService() { qputenv("LOGNAME", "ann"); }

  /// Answers the window's question with yes, from the keyboard, and waits for the service.
  void startService() {
    child<QPushButton>("yes").setFocus();
    key(Qt::Key_Space);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !settings.securedAddress().empty(); }, kGreatestWait));
  }

  /// Chooses a file with Browse, by typing its path into the dialog.
  void browse(const std::string& path) {
    dialogs.expect([this, path](QWidget& dialog) {
      auto& name = child<QLineEdit>(dialog, "fileNameEdit");
      EXPECT_TRUE(name.hasFocus());
      QTest::keyClicks(&name, toQt(path));
      QTest::keyClick(&name, Qt::Key_Return);
      if (dialog.isVisible()) // that one closed the list of completions
        QTest::keyClick(&name, Qt::Key_Return);
    });
    press(panel("panelImport"), "cmdSelectFile");
    EXPECT_EQ(toQt(path), child<QLineEdit>(panel("panelImport"), "txtFilePath").text());
  }

  /// The messages beside a line.
  std::string verdict(int line) { return cell(line, grid().cells().size().columns - 1); }

  std::string panelStatus() {
    return toCore(child<QPlainTextEdit>(panel("panelImport"), "txtValidationResults").toPlainText());
  }

  void goToImport() {
    activate();
    QTest::keyClick(window.get(), Qt::Key_1, Qt::ControlModifier);
  }
};

TEST_F(DeskLiveService, firstImportNeedsNoConfiguration) {
  open();
  startService();
  browse(sample("customers-agent.txt"));
  press(panel("panelImport"), "cmdImportExport");

  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  ASSERT_EQ(11, grid().cells().size().rows);
  for (int line = 1; line <= 10; ++line)
    EXPECT_EQ("Import successful for this line.\r\n", verdict(line));
  EXPECT_THAT(folder.read("validationresults.html"), testing::HasSubstr("Import successful for this line."));
  EXPECT_TRUE(std::filesystem::exists(folder / "data/import-service.db"));

  goToImport();
  EXPECT_NE("", panelStatus());
  press(panel("panelImport"), "cmdViewErrors");
  EXPECT_EQ(QStringLiteral("Documents"), pageName());
  documentText("LINE # : 10 STATUS : Import successful for this line.");
}

/// From the messages to the accepted file with the keyboard alone.
TEST_F(DeskLiveService, brokenFileIsCorrectedInTheEditorAndImportedAgain) {
  open();
  startService();
  const std::string good = imex::test::readFile(sample("customers-agent.txt"));
  std::string bad = good;
  bad.erase(0, good.find('\t'));
  browse(folder.write("customers.txt", bad));
  press(panel("panelImport"), "cmdImportExport");

  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_THAT(verdict(1), testing::HasSubstr("Error : Customer Code is required but is empty.\r\n"));
  EXPECT_THAT(folder.read("validationresults.html"), testing::HasSubstr("ERROR   : "));
  activate();
  QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("FENRIDGE"));
  QTest::keyClick(window.get(), Qt::Key_S, Qt::AltModifier); // the button is seen to go down before it is clicked
  ASSERT_TRUE(QTest::qWaitFor([&] { return pageName() == QStringLiteral("Import"); }));
  EXPECT_EQ(upperCase(good), folder.read("customers.txt")); // the lines are shown as they were sent

  key(Qt::Key_Space); // on the Import button
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  for (int line = 1; line <= 10; ++line)
    EXPECT_EQ("Import successful for this line.\r\n", verdict(line));
  EXPECT_THAT(folder.read("validationresults.html"), testing::Not(testing::HasSubstr("ERROR   : ")));
}

/// What is beside the lines is what the service said.
TEST_F(DeskLiveService, messagesStandBesideTheirLines) {
  open();
  startService();
  browse(sample("customers-agent-broken.txt"));
  press(panel("panelImport"), "cmdImportExport");
  ASSERT_EQ(9, grid().cells().size().rows);
  const std::string failed = "Import failed for this line due to errors and/or warnings on line(s): 2,4,5,7,8,8\r\n";
  EXPECT_EQ(failed, verdict(1));
  EXPECT_EQ(failed + "Error : Customer Code is required but is empty.\r\n", verdict(4));
  EXPECT_EQ(failed + "Error : Credit Limit must be a number, not \"OPEN\".\r\n", verdict(5));
}

TEST_F(DeskLiveService, serviceKnowsTheUserAlsoAfterTheIdentifierWasChanged) {
  open();
  startService();
  dialogs.expect([this](QWidget& dialog) {
    auto& id = child<QLineEdit>(dialog, "userId");
    id.selectAll();
    QTest::keyClicks(&id, QStringLiteral("bo"));
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  QTest::keyClick(window.get(), Qt::Key_Comma, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !settings.securedAddress().empty(); }, kGreatestWait));
  browse(sample("customers-agent.txt"));
  press(panel("panelImport"), "cmdImportExport");
  EXPECT_EQ("Import successful for this line.\r\n", verdict(1));
}

TEST_F(DeskLiveService, stoppedServiceIsToldByThePanel) {
  open();
  startService();
  const std::string address = settings.securedAddress();
  window.reset(); // ends the service
  EXPECT_EQ("", settings.securedAddress());

  settings.save({address, address, 30000, "", "Ann", "ann", false});
  open();
  typePath(panel("panelImport"), sample("customers-agent.txt"));
  dialogs.expectBox();
  press(panel("panelImport"), "cmdImportExport");
  ASSERT_EQ(1U, dialogs.boxes.size());
  EXPECT_THAT(dialogs.boxes.front(), testing::StartsWith("Error Number: 1001 - "));
}

} // namespace

} // namespace imex::desk::test
