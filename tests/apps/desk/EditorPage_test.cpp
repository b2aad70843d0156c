#include "DeskTest.h"

#include "controls/common/text.h"

#include <QApplication>
#include <QMessageBox>

#include <filesystem>
#include <fstream>

namespace imex::desk::test {

namespace {

using Texts = std::vector<std::string>;

/// The editor, opened from the panels and left to them.
class DeskEditor : public DeskTest {
 protected:
  DeskEditor() {
    settings.save({"http://127.0.0.1:1/secured", "http://127.0.0.1:1/unsecured", 30000, "", "Ann", "agent1", false});
  }

  ImExActionCtrl& import() { return panel("panelImport"); }
  ImExFileEdit& editor() { return child<ImExFileEdit>("editor"); }

  /// Opens a copy of a sample file in the editor and returns its path.
  std::string edit(const std::string& name = "customers-agent.txt") {
    std::string path = sample(name);
    typePath(import(), path);
    press(import(), "cmdEditFile");
    return path;
  }

  void go(int page) {
    activate();
    QTest::keyClick(window.get(), static_cast<Qt::Key>(Qt::Key_0 + page), Qt::ControlModifier);
  }

  /// Answers a question, which is kept with the other boxes.
  void expectQuestion(QMessageBox::StandardButton answer) {
    dialogs.expect([this, answer](QWidget& dialog) {
      auto& box = dynamic_cast<QMessageBox&>(dialog);
      dialogs.boxes.push_back(toCore(box.text()));
      QTest::mouseClick(box.button(answer), Qt::LeftButton);
    });
  }
};

TEST_F(DeskEditor, startsWithoutAFile) {
  open();
  go(5);
  EXPECT_FALSE(editor().isVisible());
  EXPECT_EQ(QStringLiteral("No file is open. Press Edit, New or Import on another page."),
            child<QLabel>("noFile").text());
  EXPECT_TRUE(child<QLabel>("noFile").hasFocus());
}

TEST_F(DeskEditor, editShowsTheFile) {
  open();
  edit();
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ(QStringLiteral("Import file opened for edit."), statusText());
  EXPECT_EQ((host::GridSize{11, 21}), grid().cells().size());
  EXPECT_EQ("Customer Code", cell(0, 1));
  EXPECT_EQ("10", cell(10, 0));
  EXPECT_TRUE(grid().hasFocus());
}

TEST_F(DeskEditor, newShowsAnEmptyRow) {
  open();
  press(import(), "btnNew");
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ((host::GridSize{2, 21}), grid().cells().size());
  EXPECT_EQ("Customer Code", cell(0, 1));
  EXPECT_EQ("", cell(1, 1));
}

TEST_F(DeskEditor, editAfterMessagesShowsNone) {
  open();
  go(4);
  typePath(panel("panelOrder"), sample("order-items-broken.txt"));
  press(panel("panelOrder"), "cmdImportExport");
  EXPECT_EQ(8, grid().cells().size().columns);
  go(4);
  press(panel("panelOrder"), "cmdEditFile");
  EXPECT_EQ((host::GridSize{9, 7}), grid().cells().size());
  EXPECT_EQ("0.06", cell(1, 6));
}

TEST_F(DeskEditor, saveWritesTheFileAndReturnsToTheImportButton) {
  open();
  const std::string path = edit();
  const std::string before = imex::test::readFile(path);
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  press(editor(), "cmdOK");
  EXPECT_EQ(QStringLiteral("Import"), pageName());
  EXPECT_EQ(toQt(path) + QStringLiteral(" is saved"), statusText());
  EXPECT_TRUE(child<QWidget>(import(), "cmdImportExport").hasFocus());
  EXPECT_EQ(toQt(path), child<QLineEdit>(import(), "txtFilePath").text());
  const std::size_t end = before.find('\t');
  EXPECT_EQ(before.substr(0, end) + "X" + before.substr(end), imex::test::readFile(path));
}

TEST_F(DeskEditor, saveReturnsToThePanelThatOpenedTheFile) {
  open();
  go(3);
  typePath(panel("panelQuote"), sample("quote-items.txt"));
  press(panel("panelQuote"), "cmdEditFile");
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  press(editor(), "cmdOK");
  EXPECT_EQ(QStringLiteral("Quote"), pageName());
}

TEST_F(DeskEditor, cancelReturnsAndWritesNothing) {
  open();
  const std::string path = edit();
  const std::string before = imex::test::readFile(path);
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  expectQuestion(QMessageBox::No);
  press(editor(), "cmdCancel");
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  expectQuestion(QMessageBox::Yes);
  press(editor(), "cmdCancel");
  EXPECT_EQ((Texts(2, "The changes in customers-agent.txt are not saved. Discard them?")), dialogs.boxes);
  EXPECT_EQ(QStringLiteral("Import"), pageName());
  EXPECT_EQ(QStringLiteral("Nothing was saved"), statusText());
  EXPECT_EQ(before, imex::test::readFile(path));
  go(5);
  EXPECT_TRUE(child<QLabel>("noFile").isVisible());
}

TEST_F(DeskEditor, newFileIsMadeBySaving) {
  open();
  press(import(), "btnNew");
  const std::string path = toCore(child<QLineEdit>(import(), "txtFilePath").text());
  EXPECT_FALSE(std::filesystem::exists(path));
  QTest::keyClicks(&grid(), QStringLiteral("C1"));
  press(editor(), "cmdOK");
  EXPECT_EQ("C1" + std::string(19, '\t') + "\r\n", imex::test::readFile(path));
}

// --- Nothing is lost ------------------------------------------------------------------------------------------------

TEST_F(DeskEditor, otherFileIsOpenedAtOnceWhereNothingWaitsToBeSaved) {
  open();
  edit();
  go(1);
  edit("customers-agent-broken.txt");
  EXPECT_EQ((host::GridSize{9, 21}), grid().cells().size());
}

TEST_F(DeskEditor, leavingIsToldOfWhereChangesWaitToBeSaved) {
  open();
  edit();
  go(1);
  EXPECT_EQ(QStringLiteral("Import file opened for edit."), statusText());
  go(5);
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  go(1);
  EXPECT_EQ(QStringLiteral("The changes in customers-agent.txt are not saved; an import takes the file as it is on "
                           "the disk"),
            statusText());
  EXPECT_EQ(Texts{}, dialogs.boxes);
}

TEST_F(DeskEditor, changesAreNotDiscardedWithoutAQuestion) {
  open();
  edit();
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  const std::string changed = cell(1, 1);
  go(1);
  expectQuestion(QMessageBox::No);
  edit("customers-agent-broken.txt");
  EXPECT_EQ(Texts{"The changes in customers-agent.txt are not saved. Discard them?"}, dialogs.boxes);
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ(changed, cell(1, 1));

  go(1);
  expectQuestion(QMessageBox::Yes);
  edit("customers-agent-broken.txt");
  EXPECT_EQ((host::GridSize{9, 21}), grid().cells().size());
}

TEST_F(DeskEditor, changesKeepTheWindowFromClosingWithoutAQuestion) {
  open();
  edit();
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  expectQuestion(QMessageBox::No);
  window->close();
  EXPECT_TRUE(window->isVisible());
  expectQuestion(QMessageBox::Yes);
  window->close();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(DeskEditor, savedChangesLetTheWindowClose) {
  open();
  edit();
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  press(editor(), "cmdOK");
  window->close();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(DeskEditor, changeThatWasTakenBackIsNone) {
  open();
  edit();
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  QTest::keyClick(&grid(), Qt::Key_Backspace);
  window->close();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(DeskEditor, fileThatAnotherProgramChangedIsNotSavedOverWithoutAQuestion) {
  open();
  const std::string path = edit();
  folder.write("customers-agent.txt", "of another program");
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  expectQuestion(QMessageBox::No);
  press(editor(), "cmdOK");
  EXPECT_EQ(Texts{"customers-agent.txt holds something else than what was opened here. Save over it?"}, dialogs.boxes);
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ("of another program", imex::test::readFile(path));

  expectQuestion(QMessageBox::Yes);
  press(editor(), "cmdOK");
  EXPECT_EQ(QStringLiteral("Import"), pageName());
  EXPECT_NE("of another program", imex::test::readFile(path));
}

TEST_F(DeskEditor, newFileOfANameThatIsTakenIsNotSavedOverWithoutAQuestion) {
  open();
  press(import(), "btnNew");
  const std::string path = toCore(child<QLineEdit>(import(), "txtFilePath").text());
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path) << "there already";
  QTest::keyClicks(&grid(), QStringLiteral("C1"));
  expectQuestion(QMessageBox::No);
  press(editor(), "cmdOK");
  EXPECT_EQ("there already", imex::test::readFile(path));
}

TEST_F(DeskEditor, savedFileIsThePanelsFile) {
  open();
  const std::string path = edit();
  go(1);
  typePath(import(), folder / "other.txt");
  go(5);
  press(editor(), "cmdOK");
  EXPECT_EQ(toQt(path), child<QLineEdit>(import(), "txtFilePath").text());
}

TEST_F(DeskEditor, fileThatIsGoneIsMadeAnew) {
  open();
  const std::string path = edit();
  const std::string before = imex::test::readFile(path);
  std::filesystem::remove(path);
  press(editor(), "cmdOK");
  EXPECT_EQ(before, imex::test::readFile(path));
}

TEST_F(DeskEditor, secondSaveAsksNothing) {
  open();
  edit();
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  press(editor(), "cmdOK");
  go(5);
  QTest::keyClicks(&grid(), QStringLiteral("Y"));
  press(editor(), "cmdOK");
  EXPECT_EQ(QStringLiteral("Import"), pageName());
}

TEST_F(DeskEditor, fileThatCannotBeSavedStaysInTheEditor) {
  open();
  const std::string path = edit();
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  QTest::keyClicks(&grid(), QStringLiteral("X"));
  const std::string changed = cell(1, 1);
  expectQuestion(QMessageBox::Yes);
  dialogs.expectBox();
  press(editor(), "cmdOK");
  ASSERT_EQ(2U, dialogs.boxes.size());
  EXPECT_THAT(dialogs.boxes.back(), testing::StartsWith("Error Number: 75 - Path/File access error"));
  EXPECT_THAT(dialogs.boxes.back(),
              testing::EndsWith(": An error has occurred while attempting to save an edited import file. If you have "
                                "the file open in another application, close the file within the other application "
                                "and try to save again."));
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ(changed, cell(1, 1));
}

/// The file may be cut short, and what is in the editor the only whole copy.
TEST_F(DeskEditor, failedSaveKeepsTheWindowFromClosingWithoutAQuestion) {
  open();
  const std::string path = edit();
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  expectQuestion(QMessageBox::Yes);
  dialogs.expectBox();
  press(editor(), "cmdOK");
  expectQuestion(QMessageBox::No);
  window->close();
  EXPECT_TRUE(window->isVisible());

  std::filesystem::remove(path);
  press(editor(), "cmdOK");
  window->close();
  EXPECT_FALSE(window->isVisible());
}

} // namespace

} // namespace imex::desk::test
