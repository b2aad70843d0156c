#include "EditorTest.h"

namespace imex::test {

namespace {

class ImExFileEditLoad : public EditorTest {
 protected:
  /// The lines of the measuring of `count` titles.
  static Texts titleTraces(int count) {
    Texts lines = {"> editor populateHeaderRow()"};
    for (int i = 0; i < count; ++i)
      lines = lines + traced("strToTwip()");
    return lines + Texts{"< editor populateHeaderRow()"};
  }

  int widthOf(const char* text) { return editor.strToTwip(QString::fromUtf8(text)); }
};

TEST_F(ImExFileEditLoad, showsNumbersTitlesAndFields) {
  giveFile("a|b\r\nc|d\r\n", 2, 2);
  editor.loadGrid();
  EXPECT_EQ((host::GridSize{3, 3}), cells().size());
  EXPECT_EQ((Texts{"", "Title 1", "Title 2"}), row(0));
  EXPECT_EQ((Texts{"1", "a", "b"}), row(1));
  EXPECT_EQ((Texts{"2", "c", "d"}), row(2));
  EXPECT_FALSE(editor.isModified());
}

TEST_F(ImExFileEditLoad, splitsAtTheDelimiterAlone) {
  giveFile("a|b|c\r\nd\te\r\n\r\nf|\r\n  g  |\"h|i\"\r\n", 5, 3);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a", "b", "c"}), row(1));
  EXPECT_EQ((Texts{"2", "d\te", "", ""}), row(2)) << "a line without a delimiter is one field";
  EXPECT_EQ((Texts{"3", "", "", ""}), row(3)) << "an empty line is one empty field";
  EXPECT_EQ((Texts{"4", "f", "", ""}), row(4)) << "a delimiter at the end";
  EXPECT_EQ((Texts{"5", "  g  ", "\"h", "i\""}), row(5));
  EXPECT_FALSE(editor.isModified());
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExFileEditLoad, cellsStandLeftAndInTheMiddle) {
  giveFile("a|12\r\n", 1, 2);
  editor.loadGridHeader();
  cells().setText({1, 2}, "12");
  EXPECT_EQ(Qt::AlignRight | Qt::AlignVCenter, alignment(2)) << "a number in a grid that nobody aligned";
  editor.loadGrid();
  for (const int column : {1, 2}) {
    EXPECT_EQ(Qt::AlignLeft | Qt::AlignVCenter, alignment(column)) << column;
  }
}

TEST_F(ImExFileEditLoad, surplusFieldsAreDropped) {
  giveFile("a|b|c|d\r\n", 1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a", "b"}), row(1));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLoad, oneEmptyFieldTooManyIsSurplus) {
  giveFile("a|b|\r\n", 1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a", "b"}), row(1));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLoad, noColumnsDropEveryField) {
  giveFile("a\r\n", 1, 0);
  editor.loadGrid();
  EXPECT_EQ((host::GridSize{2, 1}), cells().size());
  EXPECT_EQ(Texts{"1"}, row(1));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLoad, fewerLinesThanRowsLeaveRowsEmpty) {
  giveFile("a\r\n", 3, 1);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a"}), row(1));
  EXPECT_EQ((Texts{"", ""}), row(2));
  EXPECT_EQ((Texts{"", ""}), row(3));
}

TEST_F(ImExFileEditLoad, wrongDelimiterGivesOneFieldALine) {
  giveFile("a\tb\tc\r\n", 1, 3, '|');
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a\tb\tc", "", ""}), row(1));
}

TEST_F(ImExFileEditLoad, loneLineFeedsEndNoRecord) {
  giveFile("a|b\nc|d\ne|f", 1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a", "b\nc"}), row(1));
  EXPECT_TRUE(editor.isModified());
}

TEST_F(ImExFileEditLoad, oneEmptyLine) {
  giveFile("\r\n", 1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "", ""}), row(1));
}

TEST_F(ImExFileEditLoad, emptyFileHasNoRows) {
  giveFile("", 0, 2);
  editor.loadGrid();
  editor.reset();
  EXPECT_EQ((host::GridSize{1, 3}), cells().size());
  EXPECT_EQ((Texts{"", "Title 1", "Title 2"}), row(0));
  EXPECT_EQ("", lineText());
}

TEST_F(ImExFileEditLoad, threeHundredColumns) {
  std::string bytes = "f1";
  for (int column = 2; column <= 300; ++column)
    bytes += "\tf" + std::to_string(column);
  giveFile(bytes + "\r\n", 1, 300, '\t');
  editor.loadGrid();
  EXPECT_EQ((host::GridSize{2, 301}), cells().size());
  EXPECT_EQ("f1", cell(1, 1));
  EXPECT_EQ("f300", cell(1, 300));
  EXPECT_EQ("Title 300", cell(0, 300));
}

TEST_F(ImExFileEditLoad, fieldOf30000CharactersOpens) {
  const std::string field(30000, 'x');
  giveFile("a|" + field + "\r\n", 1, 2);
  editor.loadGrid();
  EXPECT_EQ(field, cell(1, 2));
  EXPECT_EQ(32767, layout().columnWidth(2));
  EXPECT_TRUE(host.trace->errors().empty());
}

TEST_F(ImExFileEditLoad, windows1252IsDecoded) {
  giveFile("caf\xE9|\x80\r\n", 1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "café", "€"}), row(1));
}

TEST_F(ImExFileEditLoad, markIsNoPartOfTheText) {
  giveFile("\xEF\xBB\xBF"
           "a|é\r\n",
           1, 2);
  editor.loadGrid();
  EXPECT_EQ((Texts{"1", "a", "é"}), row(1));
}

// --- Titles ---------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLoad, surplusTitlesAreIgnored) {
  giveFile("a\r\n", 1, 3);
  editor.NumberColumns(1);
  editor.loadGrid();
  EXPECT_EQ((Texts{"", "Title 1"}), row(0));
}

TEST_F(ImExFileEditLoad, missingTitlesStayEmpty) {
  giveFile("a|b|c\r\n", 1, 1);
  editor.NumberColumns(3);
  editor.loadGrid();
  EXPECT_EQ((Texts{"", "Title 1", "", ""}), row(0));
}

TEST_F(ImExFileEditLoad, nullTitlesAreError91) {
  giveFile("a\r\n", 1, 1);
  editor.HeaderCollection(nullptr);
  everything();
  EXPECT_EQ(91, raisedNumber([&] { editor.loadGrid(); }));
  EXPECT_EQ((Texts{"> editor loadGrid()", "> editor populateHeaderRow()",
                   "! ImExActionCtrl populateHeaderRow 91 ImExFileEdit: Object variable not set",
                   "! ImExActionCtrl loadGrid 91 ImExFileEdit: Object variable not set"}),
            happened());
}

// --- Sizes ----------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLoad, columnsAreAsWideAsTheirWidestText) {
  giveFile("a|a much longer text than its title\r\nbb|b\r\n", 2, 2);
  editor.loadGrid();
  EXPECT_EQ(400, layout().columnWidth(0)) << "\"2\" is narrower";
  EXPECT_EQ(widthOf("Title 1"), layout().columnWidth(1));
  EXPECT_EQ(widthOf("a much longer text than its title"), layout().columnWidth(2));
}

TEST_F(ImExFileEditLoad, numbersWidenTheirColumn) {
  giveFile(textLines(Texts(32767, "x")), 32767, 1);
  editor.loadGrid();
  EXPECT_EQ(std::max(400, widthOf("32767")), layout().columnWidth(0));
  EXPECT_LT(400, layout().columnWidth(0));
}

TEST_F(ImExFileEditLoad, columnsAreNeverMadeNarrowerBySizing) {
  giveFile("a|b\r\n", 1, 1);
  editor.NumberColumns(2); // the second column has no title that would set its width
  editor.loadGridHeader();
  layout().setColumnWidth(2, 9000);
  editor.loadGrid();
  EXPECT_EQ(9000, layout().columnWidth(2));
  EXPECT_EQ(widthOf("Title 1"), layout().columnWidth(1));
}

TEST_F(ImExFileEditLoad, textPast32767TwipsCountsAs32767) {
  giveFile(std::string(4000, 'W') + "\r\n", 1, 1);
  editor.loadGrid();
  EXPECT_EQ(32767, layout().columnWidth(1));
}

TEST_F(ImExFileEditLoad, rowsAreAsHighAsTheTitles) {
  giveFile("a\r\nb\r\n", 2, 1);
  editor.loadGridHeader();
  layout().setRowHeight(0, 300);
  layout().setRowHeight(2, 900);
  editor.loadGrid();
  EXPECT_EQ(300, layout().rowHeight(0));
  EXPECT_EQ(300, layout().rowHeight(1));
  EXPECT_EQ(300, layout().rowHeight(2));
}

TEST_F(ImExFileEditLoad, resizeRowsTakesTheTitlesHeight) {
  giveFile("", 2, 1);
  editor.loadGridHeader();
  layout().setRowHeight(0, 450);
  layout().setRowHeight(1, 900);
  everything();
  editor.resizeRows();
  EXPECT_EQ(traced("resizeRows()"), happened());
  EXPECT_EQ(450, layout().rowHeight(1));
  EXPECT_EQ(450, layout().rowHeight(2));
}

TEST_F(ImExFileEditLoad, firstRecordIsInView) {
  giveFile(textLines(Texts(500, "x")), 500, 1);
  editor.loadGrid();
  cells().setCurrent({500, 1});
  EXPECT_GT(0, layout().rowTop(1)) << "scrolled out";
  editor.loadGrid();
  EXPECT_EQ(layout().rowHeight(0), layout().rowTop(1));
}

TEST_F(ImExFileEditLoad, twipsOfATextHaveTenPixelsMore) {
  const int empty = editor.strToTwip(QString());
  const int perPixel = empty / 10;
  EXPECT_EQ(0, empty % 10);
  EXPECT_EQ(traced("strToTwip()"), happened());
  const int pixels = view().fontMetrics().horizontalAdvance(QStringLiteral("Catalog Number"));
  EXPECT_NEAR((pixels + 10) * perPixel, editor.strToTwip(QStringLiteral("Catalog Number")), perPixel);
}

TEST_F(ImExFileEditLoad, textOfSeveralLinesIsAsWideAsTheWidest) {
  EXPECT_EQ(widthOf("the longer line"), widthOf("short\r\nthe longer line\r\n"));
  EXPECT_EQ(widthOf("the longer line"), widthOf("the longer line\r\nshort"));
}

TEST_F(ImExFileEditLoad, twipsPast32767AreAnOverflow) {
  const auto error = raised([&] { (void)editor.strToTwip(QString(4000, QLatin1Char('W'))); });
  ASSERT_TRUE(error);
  EXPECT_EQ(6, error->number());
  EXPECT_EQ((Texts{"> editor strToTwip()", "! ImExActionCtrl strToTwip 6 ImExFileEdit: Overflow"}), happened());
}

// --- Traces ---------------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLoad, loadGridTraces) {
  giveFile("a|b\r\nc|d\r\n", 2, 2);
  editor.loadGrid();
  EXPECT_EQ(Texts{"> editor loadGrid()"} + titleTraces(2) + Texts{"< editor loadGrid()"}, everything());
}

TEST_F(ImExFileEditLoad, loadGridHeaderTraces) {
  giveFile("", 1, 3);
  editor.loadGridHeader();
  EXPECT_EQ(Texts{"> editor loadGridHeader()"} + titleTraces(3) + Texts{"< editor loadGridHeader()"}, everything());
}

// --- Header alone ---------------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLoad, headerAloneReadsNoFile) {
  giveFile("a|b\r\n", 2, 2);
  host.files.before = [](std::string_view, std::string_view) { ADD_FAILURE() << "no file"; };
  editor.loadGridHeader();
  EXPECT_EQ((host::GridSize{3, 3}), cells().size());
  EXPECT_EQ((Texts{"", "Title 1", "Title 2"}), row(0));
  EXPECT_EQ((Texts{"", "", ""}), row(1));
  EXPECT_EQ(400, layout().columnWidth(0));
  EXPECT_EQ(widthOf("Title 2"), layout().columnWidth(2));
}

TEST_F(ImExFileEditLoad, secondLoadReplacesTheFirst) {
  open({"a|b", "c|d", "e|f"}, 2);
  giveFile("x\r\n", 1, 1);
  editor.loadGrid();
  EXPECT_EQ((host::GridSize{2, 2}), cells().size());
  EXPECT_EQ((Texts{"", "Title 1"}), row(0));
  EXPECT_EQ((Texts{"1", "x"}), row(1));
}

TEST_F(ImExFileEditLoad, sizesBelowNoneAreError5) {
  giveFile("", 1, 1);
  editor.NumberRows(-1);
  EXPECT_EQ(5, raisedNumber([&] { editor.loadGridHeader(); }));
  editor.NumberRows(1);
  editor.NumberColumns(-1);
  EXPECT_EQ(5, raisedNumber([&] { editor.loadGridHeader(); }));
}

// --- Limits and failures --------------------------------------------------------------------------------------------

TEST_F(ImExFileEditLoad, greatestFileLoads) {
  giveFile(textLines(Texts(32767, "x")), 32767, 1);
  editor.loadGrid();
  EXPECT_EQ((host::GridSize{32768, 2}), cells().size());
  EXPECT_EQ((Texts{"32767", "x"}), row(32767));
  EXPECT_TRUE(save().isEnabled());
}

TEST_F(ImExFileEditLoad, lineBeyondTheRowsEndsTheLoad) {
  const std::string path = giveFile(textLines(Texts(32768, "x")), 32767, 1);
  const auto error = raised([&] { editor.loadGrid(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(9, error->number());
  EXPECT_EQ("Subscript out of range: " + path, error->description());
  EXPECT_EQ((Texts{"32767", "x"}), row(32767)) << "the lines before are shown";
  EXPECT_EQ(0, openStreamCount());
  EXPECT_FALSE(save().isEnabled());
  EXPECT_EQ("> editor loadGrid()", host.trace->lines.front());
  EXPECT_EQ("! ImExActionCtrl loadGrid 9 " + error->source() + ": " + error->description(), host.trace->lines.back());
}

TEST_F(ImExFileEditLoad, fileThatIsGoneIsError53) {
  const std::string path = giveFile("", 1, 1);
  editor.fileName(toQt(path + "gone"));
  const auto error = raised([&] { editor.loadGrid(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(53, error->number());
  EXPECT_EQ("File not found: " + path + "gone", error->description());
  EXPECT_TRUE(host.messageBox.boxes.empty()) << "the host tells the user";
}

TEST_F(ImExFileEditLoad, readThatFailsClosesTheFile) {
  giveFile("a\r\n", 1, 1);
  failAt("read", ErrorNumber::deviceIoError);
  EXPECT_EQ(57, raisedNumber([&] { editor.loadGrid(); }));
  EXPECT_EQ(0, openStreamCount());
  EXPECT_FALSE(save().isEnabled());
}

TEST_F(ImExFileEditLoad, saveIsBackAfterALoadThatSucceeds) {
  giveFile("a\r\n", 1, 1);
  failAt("openForInput", ErrorNumber::permissionDenied);
  EXPECT_EQ(70, raisedNumber([&] { editor.loadGrid(); }));
  EXPECT_FALSE(save().isEnabled());
  host.files.before = [](auto, auto) {};
  editor.loadGrid();
  EXPECT_TRUE(save().isEnabled());
}

TEST_F(ImExFileEditLoad, loadWithoutAFileServiceIsError429) {
  giveFile("a\r\n", 1, 1);
  host.services.files = nullptr;
  host.install();
  EXPECT_EQ(429, raisedNumber([&] { editor.loadGrid(); }));
}

TEST_F(ImExFileEditLoad, negativeDelimiterIsError5) {
  giveFile("a\r\n", 1, 1);
  editor.DelimiterAscii(-1);
  EXPECT_EQ(5, raisedNumber([&] { editor.loadGrid(); }));
}

} // namespace

} // namespace imex::test
