#include "PanelTest.h"

#include <QEvent>
#include <QObject>

#include <algorithm>
#include <filesystem>

namespace imex::test {

namespace {

const std::string kBox = "* box [48] Error Number: ";

class ImExActionCtrlFiles : public PanelTest {
 protected:
  void start() {
    panel.initializeClientToServer();
    everything();
  }

  Texts press(const char* button) {
    everything();
    click(button);
    return happened();
  }

  std::string document(const std::string& name) const { return (host.folder / "app") + "\\docs\\" + name; }

  const std::string browseDialog = "* dialog Open File [All Files (*.*)|*.*] [Text Files (*.txt)|*.txt] [CSV Files "
                                   "(*.csv)|*.csv] in " +
                                   host.files.working;
};

// --- Browse ---------------------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, browseTakesTheChosenFile) {
  start();
  child<QPlainTextEdit>("txtValidationResults").setPlainText(QStringLiteral("of the last import"));
  ui.openFileDialog.answer = host::ChosenFile{"/data/imports/", "customers.csv"};
  EXPECT_EQ(Texts{"> panel cmdSelectFile_Click()"} + lines(browseDialog) + plain("CheckedFileName") +
                lines("< panel cmdSelectFile_Click()"),
            press("cmdSelectFile"));
  EXPECT_EQ("/data/imports/customers.csv", filePath());
  EXPECT_EQ("/data/imports/customers.csv", toCore(panel.CheckedFileName()));
  EXPECT_EQ("", status());
  EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()", "* showDocs /data/imports/validationresults.html",
                   "< panel cmdViewErrors_Click()"}),
            press("cmdViewErrors"));
}

TEST_F(ImExActionCtrlFiles, cancelledBrowseLeavesEverything) {
  start();
  giveFile({"one"}, "kept.txt");
  click("cmdEditFile");
  const std::string path = filePath();
  // Left in the middle, so without an exit line, like every procedure that ends before its last step.
  EXPECT_EQ((Texts{"> panel cmdSelectFile_Click()", browseDialog}), press("cmdSelectFile"));
  EXPECT_EQ(path, filePath());
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
  EXPECT_EQ("Import file opened for edit.", status());
}

TEST_F(ImExActionCtrlFiles, browseThatFailsIsRecordedWithoutItsClick) {
  start();
  ui.openFileDialog.error = RuntimeError(57, "dialog", "no display");
  EXPECT_EQ(
      (Texts{"> panel cmdSelectFile_Click()", browseDialog, "! ImExActionCtrl cmdSelectFile 57 dialog: no display",
             kBox + "57 - no display: An error was encountered while attempting to select a file for import."}),
      press("cmdSelectFile"));
}

TEST_F(ImExActionCtrlFiles, browseWithoutADialogService) {
  start();
  host.services.openFileDialog = nullptr;
  host.install();
  EXPECT_EQ(
      (Texts{"> panel cmdSelectFile_Click()", "! ImExActionCtrl cmdSelectFile 429 ImEx: Component can't create object",
             kBox + "429 - Component can't create object: An error was encountered while attempting to select a "
                    "file for import."}),
      press("cmdSelectFile"));
}

TEST_F(ImExActionCtrlFiles, browseBeforeAModeCallKeepsTheChosenPath) {
  ui.openFileDialog.answer = host::ChosenFile{"/data/", "a.txt"};
  const std::string error = " 91 ImExActionCtrl: Object variable not set";
  EXPECT_EQ((Texts{"> panel cmdSelectFile_Click()",
                   "* dialog Open File [All Files (*.*)|*.*] [Text Files (*.txt)|*.txt] [CSV Files (*.csv)|*.csv]",
                   "> panel CheckedFileName()", "! ImExActionCtrl CheckedFileName" + error,
                   "! ImExActionCtrl cmdSelectFile" + error,
                   kBox + "91 - Object variable not set: An error was encountered while attempting to select a file "
                          "for import."}),
            press("cmdSelectFile"));
  EXPECT_EQ("/data/a.txt", filePath());
}

// --- Keys of the path -----------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, enterTakesTheTypedFile) {
  start();
  typePath("/data/imports/typed.txt");
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    panel.CheckedFileName(QString());
    child<QPlainTextEdit>("txtValidationResults").setPlainText(QStringLiteral("old"));
    everything();
    QTest::keyClick(&child<QLineEdit>("txtFilePath"), key, key == Qt::Key_Enter ? Qt::KeypadModifier : Qt::NoModifier);
    EXPECT_EQ(Texts{"> panel txtFilePath_KeyDown()"} + plain("openFile") + lines("< panel txtFilePath_KeyDown()"),
              happened());
    EXPECT_EQ("/data/imports/typed.txt", toCore(panel.CheckedFileName()));
    EXPECT_EQ("", status());
  }
}

TEST_F(ImExActionCtrlFiles, otherKeysAreTracedAndNothingElse) {
  start();
  QLineEdit& path = child<QLineEdit>("txtFilePath");
  path.setFocus();
  QTest::keyClick(&path, Qt::Key_A);
  EXPECT_EQ(plain("txtFilePath_KeyDown"), everything());
  EXPECT_EQ("a", filePath());
  for (const Qt::KeyboardModifier modifier : {Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier}) {
    QTest::keyClick(&path, Qt::Key_Return, modifier);
    EXPECT_EQ(plain("txtFilePath_KeyDown") + plain("txtFilePath_KeyDown"), everything())
        << modifier << " with Enter is two keys";
  }
  EXPECT_EQ("", toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlFiles, enterOnAnEmptyPathAsksForAFile) {
  start();
  ui.openFileDialog.answer = host::ChosenFile{"/data/", "asked.txt"};
  QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
  EXPECT_EQ(
      (Texts{"> panel txtFilePath_KeyDown()", "> panel openFile()", "* dialog Open File [Text Files (*.txt)|*.txt]",
             "< panel openFile()", "< panel txtFilePath_KeyDown()"}),
      happened());
  EXPECT_EQ("/data/asked.txt", filePath());
  EXPECT_EQ("/data/asked.txt", toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlFiles, cancelledQuestionClearsTheStatusAlone) {
  start();
  child<QPlainTextEdit>("txtValidationResults").setPlainText(QStringLiteral("old"));
  panel.CheckedFileName(QStringLiteral("/data/kept.txt"));
  QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
  EXPECT_EQ("", status());
  EXPECT_EQ("", filePath());
  EXPECT_EQ("/data/kept.txt", toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlFiles, directoryEndsAtTheLastSeparatorOfEitherKind) {
  start();
  const std::vector<std::pair<std::string, std::string>> folders = {
      {"/data/in/a.txt", "/data/in/"}, {"C:\\data\\a.txt", "C:\\data\\"}, {"C:\\data/a.txt", "C:\\data/"}};
  for (const auto& [path, folder] : folders) {
    typePath(path);
    QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
    EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()", "* showDocs " + folder + "validationresults.html",
                     "< panel cmdViewErrors_Click()"}),
              press("cmdViewErrors"));
  }
  typePath("a.txt"); // no folder, so no directory
  QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
  EXPECT_EQ("* box [64] Corvana Maintenance: You may review errors and warnings from the last import in the directory "
            "where the import data resided in file validationresults.html.",
            press("cmdViewErrors")[1]);
}

/// Counts the keys that reach a widget.
class KeyCount : public QObject {
 public:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    count += event->type() == QEvent::KeyPress ? 1 : 0;
    return false;
  }

  int count = 0;
};

TEST_F(ImExActionCtrlFiles, enterIsNotHandedOnToTheHostsForm) {
  start();
  typePath("/data/a.txt");
  QLineEdit& path = child<QLineEdit>("txtFilePath");
  path.setFocus();
  KeyCount keys;
  window.installEventFilter(&keys);
  QTest::keyClick(&path, Qt::Key_Return);
  EXPECT_EQ(0, keys.count);
  QTest::keyClick(&path, Qt::Key_Escape);
  EXPECT_EQ(1, keys.count);
}

// --- New and Edit ---------------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, newFileIsNamedAfterTheMinute) {
  start();
  const std::string path = host.files.working + "070320241405.txt";
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()",
                   "* newImportFile Import file opened for edit.|1|13|" + path + "|Field 1 ... 13|9",
                   "< panel cmdEditFile_Click()"}),
            press("btnNew"));
  EXPECT_EQ(path, filePath());
  EXPECT_EQ("Import file opened for edit.", status());
  EXPECT_EQ("", toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlFiles, newFileHasTheColumnsOfTheChosenFormat) {
  start();
  choose("cmbDataType", "Products");
  choose("cmbDelimiter", "Pipe");
  EXPECT_EQ("* newImportFile Import file opened for edit.|1|11|" + host.files.working +
                "070320241405.txt|Field 1 ... 11|124",
            press("btnNew")[1]);
  // The list does not look the new format up; the button does.
  choose("cmbDataType", "Customers");
  choose("cmbDataOrigin", "Halvik Format");
  EXPECT_EQ("* newImportFile Import file opened for edit.|1|5|" + host.files.working +
                "070320241405.txt|Field 1 ... 5|124",
            press("btnNew")[1]);
}

TEST_F(ImExActionCtrlFiles, newFileOfAnUnknownFormatHasNoHeaders) {
  start();
  choose("cmbDataType", "Ballasts");
  const Texts lines = press("btnNew");
  EXPECT_EQ("* newImportFile Import file opened for edit.|1|3|" + host.files.working + "070320241405.txt|(nothing)|9",
            lines[lines.size() - 2]);
}

TEST_F(ImExActionCtrlFiles, statusTellsOfTheNewFileBeforeTheHostIsAsked) {
  start();
  std::string seen;
  onSignal = [&] { seen = status() + '|' + filePath(); };
  click("btnNew");
  EXPECT_EQ("Import file opened for edit.|" + host.files.working + "070320241405.txt", seen);
}

TEST_F(ImExActionCtrlFiles, newFileThatFailsIsRecordedUnderItsOwnName) {
  start();
  host.services.clock = nullptr;
  host.install();
  EXPECT_EQ(
      (Texts{"> panel cmdEditFile_Click()", "! ImExActionCtrl btnNew_Click 429 ImEx: Component can't create object",
             kBox + "429 - Component can't create object: The requested operation could not be completed."}),
      press("btnNew"));
  EXPECT_EQ("", filePath());
}

TEST_F(ImExActionCtrlFiles, editOpensTheFile) {
  start();
  const std::string path = giveFile({"one", "", "three"});
  std::string seen;
  onSignal = [&] { seen = status(); };
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()",
                   "* editImportFile Import file opened for edit.|3|13|" + path + "|Field 1 ... 13|9",
                   "< panel cmdEditFile_Click()"}),
            press("cmdEditFile"));
  EXPECT_EQ("Import file opened for edit.", seen);
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlFiles, fileThatCannotBeOpenedIsNotEdited) {
  start();
  const Texts refused = {"> panel cmdEditFile_Click()",
                         "* box [48] Corvana Maintenance: Unable to open the file selected. Please try again."};
  for (const std::string& path : {std::string(), host.folder / "missing.txt", host.folder.path().string()}) {
    typePath(path);
    EXPECT_EQ(refused, press("cmdEditFile")) << path;
    EXPECT_EQ(path, toCore(panel.CheckedFileName()));
  }
  EXPECT_EQ("", status());
}

TEST_F(ImExActionCtrlFiles, fileOfTooManyLinesIsNotEdited) {
  start();
  giveFile(std::vector<std::string>(32768, "x"));
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()",
                   "* box [48] Corvana Maintenance: The file you are attempting to edit exceeds the maximum size of "
                   "lines (32,767). Please edit the file and try again."}),
            press("cmdEditFile"));
  const std::string path = giveFile(std::vector<std::string>(32767, "x"));
  EXPECT_EQ("* editImportFile Import file opened for edit.|32767|13|" + path + "|Field 1 ... 13|9",
            press("cmdEditFile")[1]);
}

TEST_F(ImExActionCtrlFiles, hostThatCannotEditIsReported) {
  start();
  const std::string path = giveFile({"one"});
  onSignal = [] { throw RuntimeError(7, "desk", "Out of memory"); };
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()",
                   "* editImportFile Import file opened for edit.|1|13|" + path + "|Field 1 ... 13|9",
                   "! ImExActionCtrl cmdEditFile_Click 7 desk: Out of memory",
                   kBox + "7 - Out of memory: The requested operation could not be completed."}),
            press("cmdEditFile"));
}

TEST_F(ImExActionCtrlFiles, newFileBeforeAModeCallKeepsWhatWasSet) {
  const std::string error = " 91 ImExActionCtrl: Object variable not set";
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()", "! ImExActionCtrl DataType" + error,
                   "! ImExActionCtrl btnNew_Click" + error,
                   kBox + "91 - Object variable not set: The requested operation could not be completed."}),
            press("btnNew"));
  EXPECT_EQ("070320241405.txt", filePath());
  EXPECT_EQ("Import file opened for edit.", status());
}

TEST_F(ImExActionCtrlFiles, editBeforeAModeCallSetsNothing) {
  const std::string path = giveFile({"one"});
  EXPECT_EQ((Texts{"> panel cmdEditFile_Click()",
                   "! ImExActionCtrl cmdEditFile_Click 91 ImExActionCtrl: Object variable not set",
                   kBox + "91 - Object variable not set: The requested operation could not be completed."}),
            press("cmdEditFile"));
  EXPECT_EQ(path, filePath());
  EXPECT_EQ("", status());
}

TEST_F(ImExActionCtrlFiles, handlersShareTheArgumentsOfANewFileAndTheSettingsStay) {
  start();
  QObject::connect(
      &panel, &ImExActionCtrl::newImportFile, &panel,
      [](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers, Integer& delimiter) {
        message = file = QStringLiteral("changed");
        rows = columns = delimiter = 0;
        headers.reset();
      });
  Texts seen;
  QObject::connect(
      &panel, &ImExActionCtrl::newImportFile, &panel,
      [&](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers, Integer& delimiter) {
        seen = {toCore(message), toText(rows), toCore(file), toText(columns) + toText(delimiter),
                headers ? "headers" : "(nothing)"};
      });
  const Texts first = press("btnNew");
  EXPECT_EQ((Texts{"changed", "0", "changed", "00", "(nothing)"}), seen);
  EXPECT_EQ(host.files.working + "070320241405.txt", filePath());
  EXPECT_EQ("Import file opened for edit.", status());
  EXPECT_EQ(first, press("btnNew"));
}

TEST_F(ImExActionCtrlFiles, handlersShareThePathOfADocumentAndTheSettingsStay) {
  start();
  host.folder.write("app/docs/SPECCUSTOMERAGENT.html", "<html/>");
  giveFile({"one"});
  QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
  QObject::connect(&panel, &ImExActionCtrl::showDocs, &panel, [](QString& path) { path = QStringLiteral("changed"); });
  std::string seen;
  QObject::connect(&panel, &ImExActionCtrl::showDocs, &panel, [&](QString& path) { seen = toCore(path); });
  for (const char* button : {"cmdViewErrors", "cmdViewDocumentation", "btnMoreInfoWarnings", "btnMoreInfoTruncation"}) {
    seen.clear();
    const Texts first = press(button);
    EXPECT_EQ("changed", seen) << button;
    EXPECT_EQ(first, press(button)) << button;
  }
}

// --- Paths beyond ASCII ---------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, pathBeyondAsciiArrivesByteForByte) {
  start();
  const std::string folder = host.folder / "Größe/";
  const std::string path = host.folder.write("Größe/é.txt", textLines({customerLine()}));
  const std::string page = folder + "validationresults.html";
  host.serviceCall.result = answer("ok", {{true, customerLine(), "1"}});
  typePath(path);
  QTest::keyClick(&child<QLineEdit>("txtFilePath"), Qt::Key_Return);
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
  EXPECT_EQ("* showDocs " + page, press("cmdViewErrors")[1]);
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|13|" + path + "|Field 1 ... 13|9",
            press("cmdEditFile")[1]);

  EXPECT_EQ(1, std::ranges::count(press("cmdImportExport"), "* showErrors " + path + "|1|1|1|14|Field 1 ... 14|9"));
  EXPECT_TRUE(std::filesystem::exists(page));
  EXPECT_EQ("* showDocs " + page, press("cmdViewErrors")[1]);

  onSignal = [] { throw RuntimeError(53, "desk", "File not found"); };
  EXPECT_EQ(kBox + "53 - File not found: An error was encountered while attempting to view the import results file " +
                page + " using your Internet Browser.",
            press("cmdViewErrors").back());
  host.messageBox.answer = host::Answer::yes;
  host.folder.write("Größe/é.txt", "one field\r\n");
  EXPECT_EQ(
      1, std::ranges::count(press("cmdImportExport"),
                            kBox + "53 - File not found: An error was encountered while editing file " + path + "."));
}

// --- Template -------------------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, templateReplacesTheClipboard) {
  start();
  host.writeFormat("formatagentcommission.dat", {"ignored, the catalogue is loaded"});
  choose("cmbDataType", "Commissions");
  EXPECT_EQ((Texts{"* clipboard cleared", "* clipboard Field 1\tField 2\tField 3"}), press("btnTemplate"));
  EXPECT_EQ("Field 1\tField 2\tField 3", ui.clipboard.text);
}

TEST_F(ImExActionCtrlFiles, answerLeavesItsColumnInTheTemplateAndNotInTheCount) {
  start();
  const std::string path = giveFile({customerLine()});
  host.serviceCall.result = answer("ok", {{true, customerLine(), "1"}});
  click("cmdImportExport");
  click("btnTemplate");
  EXPECT_EQ(join(columnNames(13), "\t") + "\tComments", ui.clipboard.text);
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|13|" + path + "|Field 1 ... 14|9",
            press("cmdEditFile")[1]);
}

TEST_F(ImExActionCtrlFiles, templateOfAnUnknownFormatLeavesTheEvent) {
  start();
  choose("cmbDataType", "Ballasts");
  const Texts lines = press("btnTemplate");
  EXPECT_EQ("* clipboard cleared", lines.front());
  EXPECT_EQ(std::vector<int>{91}, takeEscapedNumbers());
  EXPECT_EQ("", ui.clipboard.text);
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExActionCtrlFiles, templateBeforeAModeCallLeavesTheEvent) {
  EXPECT_EQ(Texts{"* clipboard cleared"}, press("btnTemplate"));
  EXPECT_EQ(std::vector<int>{91}, takeEscapedNumbers());
}

TEST_F(ImExActionCtrlFiles, formatThatIsChosenBeforeAModeCallDoesNothing) {
  list("cmbDataOrigin").append(QStringLiteral("Agent Format"));
  list("cmbDataOrigin").setFocus();
  QTest::keyClick(&list("cmbDataOrigin"), Qt::Key_Down);
  EXPECT_EQ(std::vector<int>{91}, takeEscapedNumbers());
  EXPECT_EQ(Texts{}, everything());
}

// --- Documents ------------------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlFiles, specificationsAreShownWhereTheyExist) {
  start();
  host.folder.write("app/docs/SPECCUSTOMERAGENT.html", "<html/>");
  EXPECT_EQ((Texts{"> panel cmdViewDocumentation_Click()", "* showDocs " + document("SPECCUSTOMERAGENT.html"),
                   "< panel cmdViewDocumentation_Click()"}),
            press("cmdViewDocumentation"));
}

TEST_F(ImExActionCtrlFiles, missingSpecificationsAreNamed) {
  start();
  const std::string path = document("SPECCUSTOMERAGENT.html");
  EXPECT_EQ((Texts{"> panel cmdViewDocumentation_Click()",
                   "! panel cmdViewDocumentation_Click() 53 ImExActionCtrl: File not found",
                   kBox + "53 - File not found: An error was encountered while view documentation file " + path +
                       " using your Internet Browser."}),
            press("cmdViewDocumentation"));
}

TEST_F(ImExActionCtrlFiles, folderOfThatNameIsNoSpecification) {
  start();
  host.folder.write("app/docs/SPECCUSTOMERAGENT.html/inside", "");
  EXPECT_EQ(1U, (press("cmdViewDocumentation"), host.messageBox.boxes.size()));
}

TEST_F(ImExActionCtrlFiles, moreAboutWarningsIsTheSpecification) {
  start();
  host.folder.write("app/docs/SPECCUSTOMERAGENT.html", "<html/>");
  EXPECT_EQ((Texts{"> panel btnMoreInfoWarnings_Click()", "> panel cmdViewDocumentation_Click()",
                   "* showDocs " + document("SPECCUSTOMERAGENT.html"), "< panel cmdViewDocumentation_Click()",
                   "< panel btnMoreInfoWarnings_Click()"}),
            press("btnMoreInfoWarnings"));
}

TEST_F(ImExActionCtrlFiles, missingPageBehindMoreAboutWarningsIsReportedOnce) {
  start();
  EXPECT_EQ((Texts{"> panel btnMoreInfoWarnings_Click()", "> panel cmdViewDocumentation_Click()",
                   "! panel cmdViewDocumentation_Click() 53 ImExActionCtrl: File not found",
                   kBox + "53 - File not found: An error was encountered while view documentation file " +
                       document("SPECCUSTOMERAGENT.html") + " using your Internet Browser.",
                   "< panel btnMoreInfoWarnings_Click()"}),
            press("btnMoreInfoWarnings"));
}

TEST_F(ImExActionCtrlFiles, moreAboutTruncationHasItsNameInSmallLetters) {
  start();
  host.folder.write("app/docs/SPECCUSTOMERAGENT.html", "<html/>");
  EXPECT_EQ((Texts{"> panel btnMoreInfoTruncation_Click()", "* showDocs " + document("specCUSTOMERAGENT.html"),
                   "< panel btnMoreInfoTruncation_Click()"}),
            press("btnMoreInfoTruncation"));
}

TEST_F(ImExActionCtrlFiles, missingPageBehindMoreAboutTruncation) {
  start();
  EXPECT_EQ((Texts{"> panel btnMoreInfoTruncation_Click()",
                   "! btnMoreInfoTruncation_Click btnMoreInfoTruncation_Click 53 ImExActionCtrl: File not found",
                   "* box [48] Error: 53 - File not found: File not found: " + document("specCUSTOMERAGENT.html") +
                       "\r\nThe requested operation could not be completed."}),
            press("btnMoreInfoTruncation"));
}

TEST_F(ImExActionCtrlFiles, otherErrorBehindMoreAboutTruncation) {
  start();
  host.services.settings = nullptr;
  host.install();
  EXPECT_EQ((Texts{"> panel btnMoreInfoTruncation_Click()",
                   "! btnMoreInfoTruncation_Click btnMoreInfoTruncation_Click 429 ImEx: Component can't create object",
                   "* box [48] Error: 429 - Component can't create object: The requested operation could not be "
                   "completed."}),
            press("btnMoreInfoTruncation"));
}

TEST_F(ImExActionCtrlFiles, documentsFollowTheChosenFormat) {
  start();
  host.folder.write("app/docs/SPECBALLASTSHALVIK.html", "<html/>");
  choose("cmbDataType", "Ballasts");
  choose("cmbDataOrigin", "Halvik Format");
  EXPECT_EQ("* showDocs " + document("SPECBALLASTSHALVIK.html"), press("cmdViewDocumentation")[1]);
}

} // namespace

} // namespace imex::test
