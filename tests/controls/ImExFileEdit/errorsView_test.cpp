#include "EditorTest.h"

#include <QImage>
#include <QPixmap>

namespace imex::test {

namespace {

class ImExFileEditErrors : public EditorTest {
 protected:
  static StringsPtr titles() { return std::make_shared<Strings>(Strings{"Name", "Town", "Comments"}); }

  std::string path() const { return host.folder / "import.txt"; }

  void show(const RowsPtr& lines, const ErrorBeansPtr& errors, int rows) {
    editor.loadGridWithErrors(toQt(path()), lines, errors, rows, 3, titles(), 124);
  }

  /// Three lines, of which the first has one message and the third has two.
  void showThree() {
    show(records({{"Ann", "Ulm"}, {"Bob", "Bonn"}, {"Cid", "Kiel"}}),
         messages({{1, "Import failed."}, {3, "Error : town"}, {3, "Warning : a name that is rather long"}}), 3);
  }

  /// Whether a long text looks as it does when it is broken into lines.
  bool isWrapped() {
    layout().setRowHeight(1, 1500);
    layout().setColumnWidth(1, 900);
    cells().setText({1, 1}, "a text that is much too long for this column");
    const auto picture = [&] { return view().grab().toImage(); };
    const QImage before = picture();
    layout().setTextWrap(true);
    const QImage wrapped = picture();
    layout().setTextWrap(false);
    EXPECT_NE(wrapped, picture());
    return before == wrapped;
  }

  int widthOf(const char* text) { return editor.strToTwip(QString::fromUtf8(text)); }
};

TEST_F(ImExFileEditErrors, showsLinesWithTheirMessages) {
  showThree();
  EXPECT_EQ((host::GridSize{4, 4}), cells().size());
  EXPECT_EQ((Texts{"", "Name", "Town", "Comments"}), row(0));
  EXPECT_EQ((Texts{"1", "Ann", "Ulm", "Import failed.\r\n"}), row(1));
  EXPECT_EQ((Texts{"2", "Bob", "Bonn", ""}), row(2));
  EXPECT_EQ((Texts{"3", "Cid", "Kiel", "Error : town\r\nWarning : a name that is rather long\r\n"}), row(3));
}

TEST_F(ImExFileEditErrors, argumentsGoIntoTheProperties) {
  showThree();
  EXPECT_EQ(toQt(path()), editor.fileName());
  EXPECT_EQ(3, editor.NumberRows());
  EXPECT_EQ(3, editor.NumberColumns());
  EXPECT_EQ(124, editor.DelimiterAscii());
  EXPECT_EQ("Comments", editor.HeaderCollection()->item(3));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditErrors, eachMessageMakesItsRowHigher) {
  showThree();
  const int line = layout().rowHeight(0);
  EXPECT_EQ(2 * line + line + 10, layout().rowHeight(1));
  EXPECT_EQ(2 * line, layout().rowHeight(2));
  EXPECT_EQ(2 * line + 2 * (line + 10), layout().rowHeight(3));
}

TEST_F(ImExFileEditErrors, cellsStandLeftAndInTheMiddle) {
  show(records({{"12", "13"}}), messages({{1, "14"}}), 1);
  for (const int column : {1, 2, 3}) {
    EXPECT_EQ(Qt::AlignLeft | Qt::AlignVCenter, alignment(column)) << column;
  }
}

TEST_F(ImExFileEditErrors, textsAreBrokenIntoLinesWhereThereAreMessages) {
  showThree();
  EXPECT_TRUE(isWrapped());
  giveFile("a|b|c\r\n", 1, 3);
  editor.loadGrid();
  EXPECT_FALSE(isWrapped());
  showThree();
  show(records({{"Ann", "Ulm"}}), messages({}), 1);
  EXPECT_FALSE(isWrapped());
}

TEST_F(ImExFileEditErrors, messagesColumnIsAsWideAsTheWidestOne) {
  showThree();
  EXPECT_EQ(widthOf("Warning : a name that is rather long\r\n"), layout().columnWidth(3));
  EXPECT_EQ(widthOf("Name"), layout().columnWidth(1));
}

TEST_F(ImExFileEditErrors, messageOfAnyLengthIsShown) {
  const std::string text(4000, 'W');
  show(records({{"Ann", "Ulm"}}), messages({{1, text}}), 1);
  EXPECT_EQ(text + "\r\n", cell(1, 3));
  EXPECT_EQ(32767, layout().columnWidth(3));
  for (const std::string& happening : happened())
    EXPECT_FALSE(happening.starts_with('!')) << "nothing failed, so nothing is recorded: " << happening;
}

TEST_F(ImExFileEditErrors, shortRecordLeavesTheRestEmpty) {
  show(records({{"Ann"}, {}, {"Cid", "Kiel", "surplus"}}), messages({}), 3);
  EXPECT_EQ((Texts{"1", "Ann", "", ""}), row(1));
  EXPECT_EQ((Texts{"2", "", "", ""}), row(2));
  EXPECT_EQ((Texts{"3", "Cid", "Kiel", ""}), row(3));
}

TEST_F(ImExFileEditErrors, messagesOutOfOrderOrBeyondTheRowsAreLeftOut) {
  show(records({{"Ann"}, {"Bob"}}), messages({{2, "two"}, {1, "late"}, {9, "beyond"}}), 2);
  EXPECT_EQ("", cell(1, 3));
  EXPECT_EQ("two\r\n", cell(2, 3));
}

TEST_F(ImExFileEditErrors, surplusRecordsAreLeftOut) {
  show(records({{"Ann"}, {"Bob"}}), messages({}), 1);
  EXPECT_EQ((host::GridSize{2, 4}), cells().size());
  EXPECT_EQ("Ann", cell(1, 1));
}

TEST_F(ImExFileEditErrors, missingRecordIsError9) {
  EXPECT_EQ(9, raisedNumber([&] { show(records({{"Ann"}}), messages({}), 2); }));
  EXPECT_FALSE(save().isEnabled());
}

TEST_F(ImExFileEditErrors, nullListsAreError91) {
  EXPECT_EQ(91, raisedNumber([&] { show(nullptr, messages({}), 1); }));
  EXPECT_EQ(91, raisedNumber([&] { show(records({{"Ann"}}), nullptr, 1); }));
  auto lines = records({{"Ann"}});
  lines->add(nullptr);
  EXPECT_EQ(91, raisedNumber([&] { show(lines, messages({}), 2); }));
  EXPECT_EQ(91,
            raisedNumber([&] { editor.loadGridWithErrors(QString(), records({}), messages({}), 0, 1, nullptr, 9); }));
}

TEST_F(ImExFileEditErrors, noRows) {
  show(records({}), messages({{1, "x"}}), 0);
  EXPECT_EQ((host::GridSize{1, 4}), cells().size());
}

TEST_F(ImExFileEditErrors, traces) {
  showThree();
  const Texts measured = traced("strToTwip()");
  EXPECT_EQ(Texts{"> editor loadGridWithErrors()"} + Texts{"> editor populateHeaderRow()"} + measured + measured +
                measured + Texts{"< editor populateHeaderRow()"} + measured + measured + measured +
                Texts{"< editor loadGridWithErrors()"},
            happened());
}

// --- The column of the messages -------------------------------------------------------------------------------------

TEST_F(ImExFileEditErrors, messagesAreNotLoadedIntoTheEditLine) {
  showThree();
  editor.reset();
  key(Qt::Key_Right);
  key(Qt::Key_Left);
  EXPECT_EQ("Ann", lineText());
  key(Qt::Key_Right);
  EXPECT_EQ("Ulm", lineText());
  key(Qt::Key_Right);
  EXPECT_EQ((GridCell{1, 3}), cells().current());
  EXPECT_EQ("Ulm", lineText());
  line().setFocus();
  typeText("m");
  EXPECT_EQ("Ulmm", cell(1, 2)) << "the line is still bound to that cell";
}

TEST_F(ImExFileEditErrors, messagesThatAreEnteredFirstAreNotLoadedLaterEither) {
  showThree();
  editor.reset();
  key(Qt::Key_End);
  ASSERT_EQ((GridCell{1, 3}), cells().current());
  pressRowNumber(3);
  EXPECT_EQ("", lineText());
  key(Qt::Key_Delete);
  EXPECT_EQ("", lineText());
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ("", lineText());
}

TEST_F(ImExFileEditErrors, doubleClickShowsTheMessagesWhole) {
  showThree();
  editor.reset();
  everything();
  doubleClickCell(3, 3);
  ASSERT_EQ(1U, host.messageBox.boxes.size());
  EXPECT_EQ((Box{"Error : town\r\nWarning : a name that is rather long\r\n", 0, "Corvana Maintenance"}),
            host.messageBox.boxes.front());
  EXPECT_EQ("", lineText());
  EXPECT_EQ("MSFlexGrid1", focus());
}

TEST_F(ImExFileEditErrors, pasteIntoTheMessagesIsNeverSaved) {
  showThree();
  editor.reset();
  key(Qt::Key_C, Qt::ControlModifier);
  key(Qt::Key_Right);
  key(Qt::Key_Right);
  key(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ("Ann", cell(1, 3));
  click(save());
  EXPECT_EQ("Ann|Ulm\r\nBob|Bonn\r\nCid|Kiel\r\n", fileBytes());
}

TEST_F(ImExFileEditErrors, messagesAreNeverSaved) {
  showThree();
  click(save());
  EXPECT_EQ("Ann|Ulm\r\nBob|Bonn\r\nCid|Kiel\r\n", fileBytes());
}

TEST_F(ImExFileEditErrors, plainViewAfterwardsHasNoMessages) {
  showThree();
  giveFile("a|b|c\r\n", 1, 3);
  editor.loadGrid();
  editor.reset();
  const int line = layout().rowHeight(0);
  EXPECT_EQ(line, layout().rowHeight(1));
  key(Qt::Key_Right);
  key(Qt::Key_Right);
  EXPECT_EQ("c", lineText()) << "the last column is a field again";
  click(save());
  EXPECT_EQ("a|b|c\r\n", fileBytes());
}

// --- Encoding -------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditErrors, fileIsWrittenInItsEncoding) {
  const std::vector<std::pair<std::string, std::string>> files = {{"caf\xE9\r\n", "caf\xE9|\r\n"},
                                                                  {"\xEF\xBB\xBF"
                                                                   "caf\xC3\xA9\r\n",
                                                                   "\xEF\xBB\xBF"
                                                                   "caf\xC3\xA9|\r\n"},
                                                                  {"caf\xC3\xA9\r\n", "caf\xC3\xA9|\r\n"}};
  for (const auto& [before, after] : files) {
    host.folder.write("import.txt", before);
    show(records({{"café"}}), messages({}), 1);
    click(save());
    EXPECT_EQ(after, fileBytes());
  }
}

TEST_F(ImExFileEditErrors, messageThatTheEncodingLacksKeepsNobodyFromSaving) {
  host.folder.write("import.txt", "caf\xE9|x\r\n");
  show(records({{"café", "x"}}), messages({{1, "Łódź"}}), 1);
  cells().setText({1, 2}, "y");
  click(save());
  EXPECT_EQ("caf\xE9|y\r\n", fileBytes());
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExFileEditErrors, fileThatCannotBeReadIsWrittenInUtf8) {
  show(records({{"café"}}), messages({}), 1);
  click(save());
  EXPECT_EQ("café|\r\n", fileBytes());
}

} // namespace

} // namespace imex::test
