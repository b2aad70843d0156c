#include "../qt/modal.h"
#include "BrowserTest.h"
#include "platform/browser/printing.h"
#include "support/Process.h"

#include <QLineEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>

#include <filesystem>

namespace imex::platform::test {

namespace {

class PrintingTest : public BrowserTest {
 protected:
  /// Prints into a PDF file of the folder by way of the dialog.
  void printTo(const std::string& path) {
    imex::test::withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
      auto* file = dialog.findChild<QLineEdit*>(QStringLiteral("filename"));
      ASSERT_NE(nullptr, file);
      file->setText(QString::fromStdString(path));
      QTest::keyClick(&dialog, Qt::Key_Return);
    });
    browser.print();
  }

  static std::string textOf(const std::string& pdf) {
    const imex::test::Ended ended = imex::test::run("/usr/bin/pdftotext", {"-layout", pdf, "-"});
    EXPECT_EQ(0, ended.status) << ended.err;
    return ended.out;
  }
};

TEST_F(PrintingTest, pdfHasTheTextOfTheDocument) {
  openPage("<h1>Validation Results</h1><p>LINE # : 2   ERROR   : Field 2 is required.");
  printTo(folder / "out.pdf");
  const std::string printed = textOf(folder / "out.pdf");
  EXPECT_NE(std::string::npos, printed.find("Validation Results")) << printed;
  EXPECT_NE(std::string::npos, printed.find("LINE # : 2 ERROR : Field 2 is required.")) << printed;
}

TEST_F(PrintingTest, emptyPagePrintsAnEmptyPage) {
  printTo(folder / "out.pdf");
  EXPECT_EQ("\f", textOf(folder / "out.pdf"));
}

TEST_F(PrintingTest, cancelledDialogPrintsNothing) {
  openPage("text");
  int dialogs = 0;
  imex::test::withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    ++dialogs;
    QTest::keyClick(&dialog, Qt::Key_Escape);
  });
  browser.print();
  EXPECT_EQ(1, dialogs);
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST_F(PrintingTest, fileThatCannotBeWrittenIsAnErrorThatNamesIt) {
  openPage("text");
  QPrinter printer;
  printer.setOutputFileName(QString::fromStdString(folder / "missing/out.pdf"));
  const auto error = raised([&] { printAndWait(view(), printer); });
  ASSERT_TRUE(error);
  EXPECT_EQ(57, error->number());
  EXPECT_EQ("The document cannot be printed to " + folder / "missing/out.pdf", error->description());
}

TEST_F(PrintingTest, documentThatIsStillBeingFetchedIsRefused) {
  FaultyServer::Answer slow = FaultyServer::page(200, std::string(2000, 'x'));
  slow.holdAfter = 1000;
  const FaultyServer server(slow);
  browser.navigate(server.address("/page"));
  ASSERT_TRUE(QTest::qWaitFor([&] { return !server.requests().empty(); }, kGreatestWait));
  const auto error = raised([&] { printTo(folder / "out.pdf"); });
  ASSERT_TRUE(error);
  EXPECT_EQ(57, error->number());
  EXPECT_EQ("The document is still being loaded", error->description());
}

TEST_F(PrintingTest, secondCallMeanwhileIsRefused) {
  openPage("text");
  std::optional<RuntimeError> error;
  imex::test::withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    error = raised([&] { browser.print(); });
    dialog.reject();
  });
  browser.print();
  ASSERT_TRUE(error);
  EXPECT_EQ(57, error->number());
  EXPECT_EQ("A document is being printed already", error->description());
}

TEST_F(PrintingTest, browserMayGoAwayUnderTheDialog) {
  openPage("text");
  imex::test::withNextDialog<QPrintDialog>([&](QPrintDialog& dialog) {
    delete &browser;
    dialog.accept();
  });
  browser.print();
  EXPECT_EQ(nullptr, window.findChild<WebBrowser*>());
}

} // namespace

} // namespace imex::platform::test
