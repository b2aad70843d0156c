#include "EditorTest.h"

#include "runtime/encoding.h"

#include <algorithm>

namespace imex::test {

namespace {

const std::string kSaveFailed =
    "An error has occurred while attempting to save an edited import file. If you have the file open in another "
    "application, close the file within the other application and try to save again.";
const std::string kNoData = "There is no data to save. Please select Cancel instead.";

class FileEditApplication : public FakeApplication {
 public:
  std::string displayName() const override { return "The Title"; }
};

class ImExFileEditSave : public EditorTest {
 protected:
  Texts saveTraces() {
    everything();
    click(save());
    return happened();
  }

  static Texts savedTraces() { return {"> editor cmdOK_Click()", "* saving", "* saved", "< editor cmdOK_Click()"}; }
};

TEST_F(ImExFileEditSave, writesTheFileAndTellsTheHost) {
  open({"a|b", "c|d"}, 2);
  cells().setText({2, 1}, "new");
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("a|b\r\nnew|d\r\n", fileBytes());
  EXPECT_EQ(0, openStreamCount());
}

TEST_F(ImExFileEditSave, fileIsClosedBeforeTheHostHears) {
  open({"a|b"}, 2);
  std::string bytes;
  onSignal = [&] { bytes = openStreamCount() == 0 ? fileBytes() : "open"; };
  cells().setText({1, 1}, "new");
  click(save());
  EXPECT_EQ("new|b\r\n", bytes);
}

TEST_F(ImExFileEditSave, shorterContentsReplaceTheFile) {
  open({"aaaaaaaa|bbbbbbb", "c|d"}, 2);
  cells().removeRow(1);
  click(save());
  EXPECT_EQ("c|d\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, lastFieldThatIsEmptyKeepsItsDelimiter) {
  open({"a|b|", "c|d|e"}, 3);
  click(save());
  EXPECT_EQ("a|b|\r\nc|d|e\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, surplusFieldsAreGone) {
  open({"a|b|c|d"}, 2);
  click(save());
  EXPECT_EQ("a|b\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, shortRecordGetsItsDelimiters) {
  open({"a", "b|c|d"}, 3);
  click(save());
  EXPECT_EQ("a||\r\nb|c|d\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, rowsWithoutTextAreNotWritten) {
  open({"a|b", "|", "", "c|d", " | "}, 2);
  click(save());
  EXPECT_EQ("a|b\r\nc|d\r\n | \r\n", fileBytes()) << "blanks are text";
}

TEST_F(ImExFileEditSave, severalRowsWithoutTextGiveAnEmptyFile) {
  open({"a|b", "c|d"}, 2);
  for (const int number : {1, 2}) {
    cells().setText({number, 1}, "");
    cells().setText({number, 2}, "");
  }
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("", fileBytes());
}

TEST_F(ImExFileEditSave, lineBreaksInFieldsBecomeDelimiters) {
  open({"a|b|c", "x|y|z"}, 3);
  cells().setText({1, 2}, "one\r\ntwo");
  cells().setText({2, 3}, "end\r\n");
  click(save());
  EXPECT_EQ("a|one|two|\r\nx|y|end\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, delimiterInAFieldIsNotQuoted) {
  open({"a|b"}, 2);
  cells().setText({1, 1}, "x|y");
  click(save());
  EXPECT_EQ("x|y|b\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, delimiterIsTheProperty) {
  open({"a|b"}, 2);
  editor.DelimiterAscii(9);
  click(save());
  EXPECT_EQ("a\tb\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, newFileIsMade) {
  giveFile("", 1, 2);
  editor.fileName(toQt(host.folder / "new.txt"));
  editor.loadGridHeader();
  cells().setText({1, 2}, "é");
  click(save());
  EXPECT_EQ("|é\r\n", host.folder.read("new.txt"));
}

TEST_F(ImExFileEditSave, keyboardReachesSave) {
  open({"a|b"}, 2);
  QTest::keyClick(&view(), Qt::Key_S, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::count(host.trace->lines, "* saved") == 1; }));
}

// --- Nothing to save ------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditSave, oneBlankRecordIsRefused) {
  FileEditApplication application;
  host.services.application = &application;
  host.install();
  for (const char* fields : {"|", " |   ", ""}) {
    open({fields}, 2);
    EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* box [64] The Title: " + kNoData}), saveTraces());
    EXPECT_EQ(textLines({fields}), fileBytes());
  }
}

TEST_F(ImExFileEditSave, titleOfTheNoticeIsTheApplications) {
  open({"|"}, 2);
  click(save());
  ASSERT_EQ(1U, host.messageBox.boxes.size());
  EXPECT_EQ((Box{kNoData, 64, "Corvana"}), host.messageBox.boxes.front());
}

TEST_F(ImExFileEditSave, gridWithoutRecordIsRefused) {
  giveFile("", 0, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* box [64] Corvana: " + kNoData}), saveTraces());
}

TEST_F(ImExFileEditSave, recordWithOneTextIsSaved) {
  open({"|"}, 2);
  cells().setText({1, 2}, " x ");
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("| x \r\n", fileBytes());
}

TEST_F(ImExFileEditSave, tabIsNoBlank) {
  open({"\t|"}, 2);
  EXPECT_EQ(savedTraces(), saveTraces());
}

TEST_F(ImExFileEditSave, messagesCountAsText) {
  editor.loadGridWithErrors(toQt(host.folder / "import.txt"), records({{"", ""}}), messages({{1, "bad"}}), 1, 3,
                            std::make_shared<Strings>(Strings{"a", "b", "Comments"}), 124);
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("", fileBytes());
}

TEST_F(ImExFileEditSave, gridWithoutAColumnOfTheFileIsRefused) {
  for (const int columns : {0, 1}) {
    const std::string path = host.folder.write("import.txt", "Ann|Ulm\r\nBob|Bonn\r\n");
    editor.loadGridWithErrors(toQt(path), records({{"Ann"}, {"Bob"}}), messages({}), 2, columns,
                              std::make_shared<Strings>(), 124);
    host.trace->lines.clear();
    EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* box [64] Corvana: " + kNoData}), saveTraces()) << columns;
    EXPECT_EQ("Ann|Ulm\r\nBob|Bonn\r\n", fileBytes()) << columns;
  }
}

// --- Encoding -------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditSave, characterThatTheEncodingLacksIsRefusedBeforeTheFileIsTouched) {
  const std::string path = giveFile("caf\xE9\r\n", 1, 1);
  editor.loadGrid();
  cells().setText({1, 1}, "Łódź");
  EXPECT_EQ((Texts{"> editor cmdOK_Click()",
                   "! ImExActionCtrl cmdOK_Click 5 ImExFileEdit: Invalid procedure call or argument: " + path,
                   "* box [48] Error Number: 5 - Invalid procedure call or argument: " + path + ": " + kSaveFailed}),
            saveTraces());
  EXPECT_EQ("caf\xE9\r\n", fileBytes());
  EXPECT_EQ("Łódź", cell(1, 1));
}

TEST_F(ImExFileEditSave, characterThatComesWithTheSavingIsRefusedToo) {
  const std::string path = giveFile("caf\xE9\r\n", 1, 1);
  editor.loadGrid();
  onSignal = [&] { cells().setText({1, 1}, "Łódź"); };
  EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* saving",
                   "! ImExActionCtrl cmdOK_Click 5 ImExFileEdit: Invalid procedure call or argument: " + path,
                   "* box [48] Error Number: 5 - Invalid procedure call or argument: " + path + ": " + kSaveFailed}),
            saveTraces());
  EXPECT_EQ("caf\xE9\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, encodingOfASavedFileIsThatOfTheNextSaving) {
  giveFile("caf\xE9\r\n", 1, 1);
  editor.loadGrid();
  cells().setText({1, 1}, "\u00C3\u00A9"); // two characters whose bytes would be read as one
  click(save());
  ASSERT_EQ(std::string(kUtf8Mark) + "\u00C3\u00A9\r\n", fileBytes());
  cells().setText({1, 1}, "Łódź");
  click(save());
  EXPECT_EQ(std::string(kUtf8Mark) + "Łódź\r\n", fileBytes());
  cells().setText({1, 1}, "café");
  click(save());
  EXPECT_EQ(std::string(kUtf8Mark) + "café\r\n", fileBytes());
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExFileEditSave, newCharactersOfTheEncodingAreWritten) {
  giveFile("caf\xE9\r\n", 1, 1);
  editor.loadGrid();
  cells().setText({1, 1}, "5 € für Käse");
  click(save());
  EXPECT_EQ("5 \x80 f\xFCr K\xE4se\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, encodingIsThatOfTheLastLoad) {
  giveFile("caf\xE9\r\n", 1, 1);
  editor.loadGrid();
  giveFile("caf\xC3\xA9\r\n", 1, 1);
  editor.loadGrid();
  cells().setText({1, 1}, "Łódź");
  click(save());
  EXPECT_EQ("Łódź\r\n", fileBytes());
}

// --- The host's say -------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditSave, hostMayRefuse) {
  open({"a|b"}, 2);
  cells().setText({1, 1}, "new");
  isSavingAllowed = false;
  EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* saving"}), saveTraces());
  EXPECT_EQ("a|b\r\n", fileBytes());
  isSavingAllowed = true;
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("new|b\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, hostThatFailsIsReported) {
  open({"a|b"}, 2);
  onSignal = [] { throw RuntimeError(7, "desk", "Out of memory"); };
  EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* saving", "! ImExActionCtrl cmdOK_Click 7 desk: Out of memory",
                   "* box [48] Error Number: 7 - Out of memory: " + kSaveFailed}),
            saveTraces());
}

TEST_F(ImExFileEditSave, editorMayGoWhenItWasSaved) {
  auto* other = new ImExFileEdit;
  giveFile("a\r\n", 1, 1);
  other->fileName(editor.fileName());
  other->NumberRows(1);
  other->NumberColumns(1);
  other->HeaderCollection(editor.HeaderCollection());
  other->DelimiterAscii(9);
  other->loadGrid();
  bool isGone = false;
  QObject::connect(other, &ImExFileEdit::saved, [&] { delete other; });
  QObject::connect(other, &QObject::destroyed, [&] { isGone = true; });
  other->findChild<QPushButton*>(QStringLiteral("cmdOK"))->click();
  EXPECT_TRUE(isGone);
}

// --- Failures -------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditSave, fileThatMayNotBeWrittenIsNamed) {
  open({"a|b"}, 2);
  cells().setText({1, 1}, "new");
  failAt("openForOutput", ErrorNumber::permissionDenied);
  const std::string why = "Permission denied: " + (host.folder / "import.txt");
  EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* saving", "! ImExActionCtrl cmdOK_Click 70 Disk: " + why,
                   "* box [48] Error Number: 70 - " + why + ": " + kSaveFailed}),
            saveTraces());
  EXPECT_EQ("a|b\r\n", fileBytes());
  EXPECT_EQ("new", cell(1, 1)) << "the grid keeps its contents";
  host.files.before = [](auto, auto) {};
  EXPECT_EQ(savedTraces(), saveTraces());
  EXPECT_EQ("new|b\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, fullDiskIsNamed) {
  for (const char* call : {"write", "close"}) {
    open({"a|b"}, 2);
    failAt(call, ErrorNumber::diskFull);
    const std::string why = "Disk full: " + (host.folder / "import.txt");
    EXPECT_EQ((Texts{"> editor cmdOK_Click()", "* saving", "! ImExActionCtrl cmdOK_Click 61 Disk: " + why,
                     "* box [48] Error Number: 61 - " + why + ": " + kSaveFailed}),
              saveTraces());
    EXPECT_EQ(0, openStreamCount());
    EXPECT_EQ((Texts{"1", "a", "b"}), row(1));
    host.files.before = [](auto, auto) {};
  }
}

TEST_F(ImExFileEditSave, folderIsNoFile) {
  open({"a|b"}, 2);
  const std::string path = host.folder.path().string();
  editor.fileName(toQt(path));
  click(save());
  ASSERT_EQ(1U, host.messageBox.boxes.size());
  EXPECT_EQ(kSaveFailed, host.messageBox.boxes.front().prompt);
  EXPECT_EQ(48, host.messageBox.boxes.front().style);
  EXPECT_EQ(path, host.messageBox.boxes.front().title.substr(host.messageBox.boxes.front().title.rfind(": ") + 2));
}

TEST_F(ImExFileEditSave, noApplicationIsError429) {
  open({"|"}, 2);
  host.services.application = nullptr;
  host.install();
  click(save());
  ASSERT_EQ(1U, host.messageBox.boxes.size());
  EXPECT_EQ((Box{kSaveFailed, 48, "Error Number: 429 - Component can't create object"}), host.messageBox.boxes.front());
}

// --- Cancel ---------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditSave, cancelWritesNothing) {
  open({"a|b"}, 2);
  cells().setText({1, 1}, "new");
  click(cancel());
  EXPECT_EQ((Texts{"> editor cmdCancel_Click()", "* cancel", "< editor cmdCancel_Click()"}), happened());
  EXPECT_EQ("a|b\r\n", fileBytes());
}

TEST_F(ImExFileEditSave, hostThatFailsAtCancelIsReported) {
  onSignal = [] { throw RuntimeError(7, "desk", "Out of memory"); };
  click(cancel());
  EXPECT_EQ((Texts{"> editor cmdCancel_Click()", "* cancel", "! ImExActionCtrl cmdCancel_Click 7 desk: Out of memory",
                   "* box [48] Error Number: 7 - Out of memory: The requested operation could not be completed."}),
            happened());
}

} // namespace

} // namespace imex::test
