#include "DeskTest.h"

#include "controls/common/DropDownList.h"
#include "controls/common/text.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>

namespace imex::desk::test {

namespace {

using Texts = std::vector<std::string>;

const char* const kPanels[] = {"panelImport", "panelProject", "panelQuote", "panelOrder"};

class DeskMainWindow : public DeskTest {
 protected:
  DeskMainWindow() {
    settings.save({"http://127.0.0.1:1/secured", "http://127.0.0.1:1/unsecured", 30000, "", "Ann", "agent1", false});
  }

  QAbstractItemModel& table(QWidget& parent, const char* name) { return *child<QTableView>(parent, name).model(); }

  /// The document page that a panel stands on.
  QWidget& pageOf(const char* panelName) { return *panel(panelName).parentWidget(); }

  void go(int page) {
    activate();
    QTest::keyClick(window.get(), static_cast<Qt::Key>(Qt::Key_0 + page), Qt::ControlModifier);
  }

  QAction& menuAction(const char* menu, const char* beginning) {
    for (QAction* entry : window->menuBar()->actions()) {
      if (entry->text() != QLatin1String(menu))
        continue;
      for (QAction* action : entry->menu()->actions()) {
        if (action->text().startsWith(QLatin1String(beginning)))
          return *action;
      }
    }
    throw RuntimeError(ErrorNumber::objectVariableNotSet, beginning);
  }
};

// --- Pages ----------------------------------------------------------------------------------------------------------

TEST_F(DeskMainWindow, startsOnTheImportPage) {
  open();
  EXPECT_EQ(QStringLiteral("Corvana"), window->windowTitle());
  EXPECT_EQ(QStringLiteral("Import"), pageName());
  EXPECT_EQ(QStringLiteral("CUSTOMER"), panel("panelImport").DataType());
  EXPECT_EQ(QStringLiteral("Ann"), panel("panelImport").Requestor());
  EXPECT_FALSE(child<NoticeBar>("noticeBar").isVisible());
}

TEST_F(DeskMainWindow, everyPageIsReachedWithAKey) {
  open();
  const Texts names = {"Import", "Project", "Quote", "Order", "Editor", "Documents", "Job Log"};
  for (int page = 7; page >= 1; --page) {
    go(page);
    EXPECT_EQ(names[static_cast<std::size_t>(page) - 1], toCore(pageName()));
  }
}

TEST_F(DeskMainWindow, arrowsMoveThroughTheList) {
  open();
  child<QListWidget>("pages").setFocus();
  key(Qt::Key_Down);
  EXPECT_EQ(QStringLiteral("Project"), pageName());
  EXPECT_TRUE(panel("panelProject").isVisible());
}

TEST_F(DeskMainWindow, documentsTakeTheirOwnLineItemsAlone) {
  open();
  const Texts types = {"", "PROJECTLINEITEM", "QUOTELINEITEM", "ORDERLINEITEM"};
  for (int page = 1; page <= 3; ++page) {
    go(page + 1);
    ImExActionCtrl& documentPanel = panel(kPanels[page]);
    EXPECT_EQ(types[static_cast<std::size_t>(page)], toCore(documentPanel.DataType()));
    EXPECT_FALSE(child<QWidget>(documentPanel, "cmbDataType").isEnabled());
  }
}

TEST_F(DeskMainWindow, pageIsMadeReadyOnce) {
  open();
  go(2);
  go(1);
  go(2);
  go(1);
  EXPECT_EQ(5, child<DropDownList>(panel("panelImport"), "cmbDataType").count());
  EXPECT_EQ(3, child<DropDownList>(panel("panelProject"), "cmbDataType").count());
}

TEST_F(DeskMainWindow, menuLettersAreNotThoseOfThePanel) {
  open();
  for (QAction* menu : window->menuBar()->actions()) {
    const QKeySequence letter = QKeySequence::mnemonic(menu->text());
    ASSERT_FALSE(letter.isEmpty()) << menu->text().toStdString();
    for (QLabel* label : panel("panelImport").findChildren<QLabel*>())
      EXPECT_NE(letter, QKeySequence::mnemonic(label->text())) << label->text().toStdString();
    for (QAbstractButton* button : panel("panelImport").findChildren<QAbstractButton*>())
      EXPECT_NE(letter, QKeySequence::mnemonic(button->text())) << button->text().toStdString();
  }
}

TEST_F(DeskMainWindow, exitOfAPanelClosesTheWindow) {
  open();
  press(panel("panelImport"), "cmdExit");
  EXPECT_FALSE(window->isVisible());
}

TEST_F(DeskMainWindow, noticesOfTheStartAreShownFirst) {
  surroundings.notices = {"desk.ini, line 2: what is this"};
  dialogs.expectBox();
  open();
  EXPECT_EQ(Texts{"Corvana: desk.ini, line 2: what is this"}, dialogs.boxes);
}

TEST_F(DeskMainWindow, formatFilesThatAreMissingAreNamedInABox) {
  DeskSettings empty(folder / "desk.ini", folder / "nothing", "");
  const DeskHost other(empty);
  MainWindow shown(empty, {});
  shown.show();
  dialogs.expectBox();
  shown.start();
  ASSERT_EQ(1U, dialogs.boxes.size());
  EXPECT_THAT(dialogs.boxes.front(), testing::HasSubstr((folder / "nothing") + "\\docs\\formatagentcustomer.dat"));
}

// --- Signals --------------------------------------------------------------------------------------------------------

TEST_F(DeskMainWindow, specificationsAreShownAsAPage) {
  open();
  press(panel("panelImport"), "cmdViewDocumentation");
  EXPECT_EQ(QStringLiteral("Documents"), pageName());
  documentText("Customer Code");
  press(child<ImExDocView>("documentView"), "cmdOK");
  EXPECT_EQ(QStringLiteral("Import"), pageName());
}

TEST_F(DeskMainWindow, documentReturnsToThePageThatShowedIt) {
  open();
  go(3);
  press(panel("panelQuote"), "cmdViewDocumentation");
  EXPECT_EQ(QStringLiteral("Documents"), pageName());
  press(child<ImExDocView>("documentView"), "cmdOK");
  EXPECT_EQ(QStringLiteral("Quote"), pageName());
}

TEST_F(DeskMainWindow, resultsThatAreMissingAreToldByThePanel) {
  open();
  typePath(panel("panelImport"), sample("customers-agent.txt"));
  key(Qt::Key_Return);
  dialogs.expectBox();
  press(panel("panelImport"), "cmdViewErrors");
  const std::string page = folder / "validationresults.html";
  EXPECT_EQ(Texts{"Error Number: 53 - File not found: " + page +
                  ": An error was encountered while attempting to view the import results file " + page +
                  " using your Internet Browser."},
            dialogs.boxes);
  EXPECT_EQ(QStringLiteral("Import"), pageName());
}

TEST_F(DeskMainWindow, templateGoesToTheClipboard) {
  open();
  go(4);
  press(panel("panelOrder"), "btnTemplate");
  EXPECT_EQ(QStringLiteral("Quantity\tType\tBrand\tCatalog Number\tColumn 1 Price\tColumn 1 Commission"),
            QApplication::clipboard()->text());
}

// --- Inserts --------------------------------------------------------------------------------------------------------

struct Insert {
  int page;
  const char* file;
  int lines;
  Texts first;
};

TEST_F(DeskMainWindow, lineItemsGoIntoTheDocumentAndAreUndoneAtOnce) {
  const Insert inserts[] = {
      {2,
       "project-items.txt",
       7,
       {"120", "F1", "NORVANE", "NV-2X4-T8-3-UNV", "92.50", "0.05", "88.75", "0.045", "84.00", "0.04"}},
      {3,
       "quote-items.txt",
       6,
       {"400", "A", "NORVANE", "NV-2X4-T8-3-UNV", "92.50", "0.05", "88.75", "0.045", "84.00", "0.04"}},
      {4, "order-items.txt", 6, {"48", "S8", "BRIGHTMOOR", "BM-STRIP-8", "36.80", "0.05"}},
  };
  open();
  for (const Insert& insert : inserts) {
    const char* name = kPanels[insert.page - 1];
    go(insert.page);
    typePath(panel(name), sample(insert.file));
    press(panel(name), "cmdImportExport");
    const QAbstractItemModel& items = table(pageOf(name), "lineItems");
    ASSERT_EQ(insert.lines, items.rowCount()) << insert.file;
    EXPECT_EQ(insert.first, rowTexts(items, 0));
    EXPECT_EQ(QStringLiteral("%1 lines inserted").arg(insert.lines), statusText());
    EXPECT_EQ(QStringLiteral("&Undo insert of %1 lines").arg(insert.lines), menuAction("D&ocument", "&Undo").text());

    child<QTableView>(pageOf(name), "lineItems").setFocus();
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(0, items.rowCount()) << insert.file;
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(insert.lines, items.rowCount()) << insert.file;
  }
}

TEST_F(DeskMainWindow, undoIsOfTheDocumentThatIsSeen) {
  open();
  go(2);
  typePath(panel("panelProject"), sample("project-items.txt"));
  press(panel("panelProject"), "cmdImportExport");
  EXPECT_TRUE(menuAction("D&ocument", "&Undo").isEnabled());
  go(3);
  EXPECT_FALSE(menuAction("D&ocument", "&Undo").isEnabled());
  go(1);
  EXPECT_FALSE(menuAction("D&ocument", "&Undo").isEnabled());
  go(2);
  EXPECT_EQ(QStringLiteral("&Undo insert of 7 lines"), menuAction("D&ocument", "&Undo").text());
}

TEST_F(DeskMainWindow, brokenLineItemsAreShownWithTheirMessagesAndNotInserted) {
  open();
  go(4);
  typePath(panel("panelOrder"), sample("order-items-broken.txt"));
  press(panel("panelOrder"), "cmdImportExport");
  EXPECT_EQ(QStringLiteral("Editor"), pageName());
  EXPECT_EQ((host::GridSize{9, 8}), grid().cells().size());
  EXPECT_EQ("", cell(1, 7));
  EXPECT_EQ("Field Quantity cannot be negative.\r\n", cell(3, 7));
  EXPECT_EQ(0, table(pageOf("panelOrder"), "lineItems").rowCount());
}

// --- Settings -------------------------------------------------------------------------------------------------------

TEST_F(DeskMainWindow, settingsReachThePanels) {
  open();
  go(2);
  dialogs.expect([this](QWidget& dialog) {
    auto& name = child<QLineEdit>(dialog, "userName");
    name.selectAll();
    QTest::keyClicks(&name, QStringLiteral("Bo"));
    QTest::mouseClick(&child<QAbstractButton>(dialog, "isCentral"), Qt::LeftButton, {}, QPoint(8, 8));
    QTest::keyClick(&dialog, Qt::Key_Return);
  });
  QTest::keyClick(window.get(), Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_EQ(QStringLiteral("The settings are saved in ") + toQt(settings.iniFile()), statusText());
  for (const char* name : {"panelImport", "panelProject"}) {
    EXPECT_EQ(QStringLiteral("Bo"), panel(name).Requestor());
    EXPECT_TRUE(panel(name).isCentralizedAgent);
  }
  go(3); // a panel that is made ready after it
  EXPECT_EQ(QStringLiteral("Bo"), panel("panelQuote").Requestor());
  EXPECT_TRUE(panel("panelQuote").isCentralizedAgent);
}

// --- The service ----------------------------------------------------------------------------------------------------

TEST_F(DeskMainWindow, serviceThatIsNotRunningIsToldAndThePanelIsUsableAgain) {
  open();
  ImExActionCtrl& import = panel("panelImport");
  typePath(import, sample("customers-agent.txt"));
  for (int attempt = 1; attempt <= 2; ++attempt) {
    dialogs.expectBox();
    press(import, "cmdImportExport");
    ASSERT_EQ(static_cast<std::size_t>(attempt), dialogs.boxes.size());
    EXPECT_THAT(dialogs.boxes.back(),
                testing::AllOf(testing::StartsWith("Error Number: 1001 - "),
                               testing::HasSubstr("http://127.0.0.1:1/secured"),
                               testing::EndsWith(": The requested operation could not be completed.")));
    EXPECT_TRUE(child<QWidget>(import, "cmdImportExport").isEnabled());
    EXPECT_NE(Qt::WaitCursor, import.cursor().shape());
    EXPECT_EQ(QStringLiteral("Import"), pageName());
  }
}

TEST_F(DeskMainWindow, offerToStartAServiceCanBeDeclined) {
  settings.save(SettingValues{});
  open();
  auto& no = child<QPushButton>("no");
  EXPECT_TRUE(no.isVisible());
  no.setFocus();
  key(Qt::Key_Space);
  EXPECT_FALSE(no.isVisible());
  EXPECT_EQ("", settings.securedAddress());
}

TEST_F(DeskMainWindow, serviceThatDoesNotStartIsToldAndOfferedAgain) {
  settings.save(SettingValues{});
  surroundings.serviceProgram = toQt(folder / "no-program");
  open();
  dialogs.expectBox();
  child<QPushButton>("yes").setFocus();
  key(Qt::Key_Space);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !dialogs.boxes.empty() && child<QPushButton>("yes").isVisible(); }));
  EXPECT_THAT(dialogs.boxes.front(), testing::StartsWith("Corvana: The import service of this machine does not work: " +
                                                         (folder / "no-program") + ": "));
}

} // namespace

} // namespace imex::desk::test
