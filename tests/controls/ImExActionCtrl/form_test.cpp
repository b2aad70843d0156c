#include "PanelTest.h"
#include "support/ErrorLog.h"

#include <QButtonGroup>
#include <QGroupBox>
#include <QLabel>

#include <map>
#include <set>

namespace imex::test {

namespace {

class ImExActionCtrlForm : public PanelTest {
 protected:
  /// The caption as the user sees it: without the mark of the key that goes with it.
  static std::string caption(QString text) { return toCore(text.remove(QLatin1Char('&'))); }

  std::string label(const char* name) { return caption(child<QLabel>(name).text()); }
  std::string buddy(const char* name) { return toCore(child<QLabel>(name).buddy()->objectName()); }
  std::string button(const char* name) { return caption(child<QPushButton>(name).text()); }
  std::string parentOf(const char* name) { return toCore(child<QWidget>(name).parentWidget()->objectName()); }

  /// The controls in the order in which Tab reaches them.
  Texts tabChain() {
    Texts names;
    QWidget* first = &child<QWidget>("cmbImportExport");
    QWidget* widget = first;
    do {
      const bool isReached = (widget->focusPolicy() & Qt::TabFocus) != 0 && panel.isAncestorOf(widget);
      if (isReached)
        names.push_back(toCore(widget->objectName()));
      widget = widget->nextInFocusChain();
    } while (widget != first);
    return names;
  }

  const std::vector<const char*> buttons = {
      "cmdSelectFile",   "btnNew",        "btnTemplate",          "cmdEditFile",         "cmdExit",
      "cmdImportExport", "cmdViewErrors", "cmdViewDocumentation", "btnMoreInfoWarnings", "btnMoreInfoTruncation"};
  const std::vector<const char*> lists = {"cmbImportExport", "cmbDataType", "cmbDataOrigin", "cmbSchedule",
                                          "cmbDelimiter"};
};

TEST_F(ImExActionCtrlForm, labelsHaveTheirCaptionsAndControls) {
  EXPECT_EQ("Action", label("label1"));
  EXPECT_EQ("cmbImportExport", buddy("label1"));
  EXPECT_EQ("Data Type", label("Label2"));
  EXPECT_EQ("cmbDataType", buddy("Label2"));
  EXPECT_EQ("Field Delimiter", label("Label3"));
  EXPECT_EQ("cmbDelimiter", buddy("Label3"));
  EXPECT_EQ("Format", label("Label4"));
  EXPECT_EQ("cmbDataOrigin", buddy("Label4"));
  EXPECT_EQ("Schedule", label("Label5"));
  EXPECT_EQ("cmbSchedule", buddy("Label5"));
  EXPECT_EQ("Status:", label("Label6"));
  EXPECT_EQ("txtValidationResults", buddy("Label6"));
  EXPECT_EQ("File :", label("Label7"));
  EXPECT_EQ("txtFilePath", buddy("Label7"));
}

TEST_F(ImExActionCtrlForm, buttonsHaveTheirCaptions) {
  EXPECT_EQ("Browse", button("cmdSelectFile"));
  EXPECT_EQ("New", button("btnNew"));
  EXPECT_EQ("Template", button("btnTemplate"));
  EXPECT_EQ("Edit", button("cmdEditFile"));
  EXPECT_EQ("Import", button("cmdImportExport"));
  EXPECT_EQ("Import Results", button("cmdViewErrors"));
  EXPECT_EQ("Specifications", button("cmdViewDocumentation"));
  EXPECT_EQ("Exit", button("cmdExit"));
}

TEST_F(ImExActionCtrlForm, framesHoldTheirControls) {
  EXPECT_EQ("Processing Rules", toCore(child<QGroupBox>("Frame1").title()));
  EXPECT_EQ("Warnings", toCore(child<QGroupBox>("frameWarnings").title()));
  EXPECT_EQ("Truncation  ", toCore(child<QGroupBox>("frameTruncation").title()));
  EXPECT_EQ("panel", parentOf("frameMain"));
  EXPECT_EQ("frameMain", parentOf("Frame1"));
  EXPECT_EQ("Frame1", parentOf("frameWarnings"));
  EXPECT_EQ("Frame1", parentOf("frameTruncation"));
  for (const char* name : {"optWarnings_0", "optWarnings_1", "btnMoreInfoWarnings"}) {
    EXPECT_EQ("frameWarnings", parentOf(name)) << name;
  }
  for (const char* name : {"optTruncation_0", "optTruncation_1", "btnMoreInfoTruncation"}) {
    EXPECT_EQ("frameTruncation", parentOf(name)) << name;
  }
}

TEST_F(ImExActionCtrlForm, optionPairsHaveTheirCaptionsAndIndexes) {
  const QButtonGroup& warnings = child<QButtonGroup>("optWarnings");
  EXPECT_EQ("Warnings will prevent data from being imported.", caption(warnings.button(0)->text()));
  EXPECT_EQ("Warnings will NOT prevent data from being imported.", caption(warnings.button(1)->text()));
  EXPECT_EQ(&option("optWarnings_0"), warnings.button(0));
  EXPECT_EQ(&option("optWarnings_1"), warnings.button(1));
  const QButtonGroup& truncation = child<QButtonGroup>("optTruncation");
  EXPECT_EQ("Selected data will be truncated.", caption(truncation.button(0)->text()));
  EXPECT_EQ("Field lengths stictly enforced.", caption(truncation.button(1)->text()));
  EXPECT_EQ(&option("optTruncation_0"), truncation.button(0));
  EXPECT_EQ(&option("optTruncation_1"), truncation.button(1));
}

TEST_F(ImExActionCtrlForm, nothingIsOfferedBeforeAModeCall) {
  for (const char* name : lists) {
    EXPECT_EQ(0, list(name).count()) << name;
  }
  EXPECT_FALSE(option("optWarnings_0").isChecked() || option("optWarnings_1").isChecked());
  EXPECT_EQ("", filePath());
  EXPECT_EQ("", status());
}

TEST_F(ImExActionCtrlForm, everyControlAsksForTheSameFont) {
  for (const QWidget* widget : panel.findChildren<QWidget*>()) {
    EXPECT_EQ("MS Sans Serif", toCore(widget->font().family())) << toCore(widget->objectName());
  }
}

TEST_F(ImExActionCtrlForm, tabGoesThroughTheFormInReadingOrder) {
  EXPECT_EQ((Texts{"cmbImportExport",       "cmbDataType",         "cmbDataOrigin",        "cmbSchedule",
                   "cmbDelimiter",          "txtFilePath",         "cmdSelectFile",        "btnNew",
                   "btnTemplate",           "cmdEditFile",         "cmdViewDocumentation", "optWarnings_0",
                   "optWarnings_1",         "btnMoreInfoWarnings", "optTruncation_0",      "optTruncation_1",
                   "btnMoreInfoTruncation", "cmdImportExport",     "cmdViewErrors",        "cmdExit",
                   "txtValidationResults"}),
            tabChain());
}

TEST_F(ImExActionCtrlForm, tabKeyWalksFromTheFirstControlToTheStatus) {
  panel.initializeClientToServer();
  list("cmbImportExport").setFocus();
  Texts names;
  while (QApplication::focusWidget() != &child<QWidget>("txtValidationResults")) {
    names.push_back(toCore(QApplication::focusWidget()->objectName()));
    ASSERT_LT(names.size(), 30U);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  }
  // Of a pair of options Tab reaches the marked one.
  EXPECT_EQ((Texts{"cmbImportExport", "cmbDataType", "cmbDataOrigin", "cmbSchedule", "cmbDelimiter", "txtFilePath",
                   "cmdSelectFile", "btnNew", "btnTemplate", "cmdEditFile", "cmdViewDocumentation", "optWarnings_0",
                   "btnMoreInfoWarnings", "optTruncation_0", "btnMoreInfoTruncation", "cmdImportExport",
                   "cmdViewErrors", "cmdExit"}),
            names);
}

TEST_F(ImExActionCtrlForm, keysOfCaptionsAreDifferent) {
  std::map<QChar, std::string> owners;
  const auto take = [&](const QString& text, const std::string& name) {
    const qsizetype mark = text.indexOf(QLatin1Char('&'));
    if (mark < 0)
      return;
    const QChar key = text[mark + 1].toUpper();
    EXPECT_TRUE(owners.emplace(key, name).second) << name << " and " << owners[key];
  };
  for (const QLabel* widget : panel.findChildren<QLabel*>())
    take(widget->text(), toCore(widget->objectName()));
  for (const QAbstractButton* widget : panel.findChildren<QAbstractButton*>())
    take(widget->text(), toCore(widget->objectName()));
  EXPECT_EQ(15U, owners.size());
}

TEST_F(ImExActionCtrlForm, keyOfALabelReachesItsControl) {
  panel.initializeClientToServer();
  const std::map<Qt::Key, const char*> controls = {{Qt::Key_A, "cmbImportExport"},     {Qt::Key_D, "cmbDataType"},
                                                   {Qt::Key_F, "cmbDataOrigin"},       {Qt::Key_S, "cmbSchedule"},
                                                   {Qt::Key_L, "cmbDelimiter"},        {Qt::Key_I, "txtFilePath"},
                                                   {Qt::Key_U, "txtValidationResults"}};
  for (const auto& [key, name] : controls) {
    QTest::keyClick(&window, key, Qt::AltModifier);
    EXPECT_EQ(&child<QWidget>(name), QApplication::focusWidget()) << name;
  }
}

TEST_F(ImExActionCtrlForm, everyControlIsNamedAndExplainedToAScreenReader) {
  std::set<QString> names;
  for (const char* name : lists) {
    EXPECT_FALSE(list(name).accessibleName().isEmpty()) << name;
    EXPECT_TRUE(names.insert(list(name).accessibleName()).second) << name;
  }
  for (const char* name : {"txtFilePath", "txtValidationResults"}) {
    EXPECT_FALSE(child<QWidget>(name).accessibleName().isEmpty()) << name;
  }
  for (const char* name : buttons) {
    EXPECT_FALSE(child<QWidget>(name).accessibleDescription().isEmpty()) << name;
    EXPECT_FALSE(child<QWidget>(name).toolTip().isEmpty()) << name;
  }
  EXPECT_NE(child<QWidget>("btnMoreInfoWarnings").accessibleName(),
            child<QWidget>("btnMoreInfoTruncation").accessibleName());
}

TEST_F(ImExActionCtrlForm, noButtonTakesTheEnterOfAHostsDialog) {
  for (const char* name : buttons) {
    EXPECT_FALSE(child<QPushButton>(name).autoDefault() || child<QPushButton>(name).isDefault()) << name;
  }
}

TEST_F(ImExActionCtrlForm, statusCanBeReadAndCopiedButNotTyped) {
  QPlainTextEdit& box = child<QPlainTextEdit>("txtValidationResults");
  box.setFocus();
  QTest::keyClicks(&box, QStringLiteral("abc"));
  EXPECT_EQ("", status());
  EXPECT_TRUE(box.textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
}

// --- Size -----------------------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlForm, logThatKeepsErrorsAloneIsToldOfNothingElse) {
  const auto log = ErrorLog::installed(host);
  ImExActionCtrl other;
  other.initializeClientToServer();
  other.resize(900, 700);
  other.show();
  for (QAbstractButton* each : other.findChildren<QAbstractButton*>())
    each->click();
  QTest::keyClick(other.findChild<QWidget*>(QStringLiteral("txtFilePath")), Qt::Key_Return);
  QTest::keyClick(other.findChild<QWidget*>(QStringLiteral("cmbDelimiter")), Qt::Key_Down);
  EXPECT_FALSE(log->errors().empty()) << "of specifications that are missing";
}

TEST_F(ImExActionCtrlForm, frameFollowsThePanelsSize) {
  for (const QSize size : {QSize(900, 700), QSize(300, 200), QSize(1, 1), QSize(0, 0)}) {
    panel.resize(size);
    EXPECT_EQ(panel.size(), child<QWidget>("frameMain").size());
  }
  EXPECT_EQ(Texts{}, everything());
}

TEST_F(ImExActionCtrlForm, frameFollowsThePanelsLayout) {
  window.resize(1000, 800);
  QApplication::processEvents();
  EXPECT_EQ(panel.size(), child<QWidget>("frameMain").size());
  EXPECT_GT(panel.width(), 900);
}

TEST_F(ImExActionCtrlForm, nothingMovesWhenThePanelGrows) {
  const auto places = [&] {
    QApplication::processEvents();
    std::map<std::string, std::pair<int, int>> result;
    for (const QWidget* widget : child<QWidget>("frameMain").findChildren<QWidget*>()) {
      const QPoint place = widget->mapTo(&panel, QPoint(0, 0));
      if (widget->objectName().startsWith(QLatin1String("qt_")) || widget->window() != &window)
        continue; // parts of Qt's own
      result[toCore(widget->objectName())] = {place.x(), place.y()};
    }
    return result;
  };
  panel.initializeClientToServer();
  panel.resize(panel.sizeHint());
  const auto before = places();
  panel.resize(panel.sizeHint() + QSize(300, 300));
  EXPECT_EQ(before, places());
}

TEST_F(ImExActionCtrlForm, sizeHintHoldsEveryControl) {
  panel.initializeClientToServer();
  panel.resize(panel.minimumSizeHint());
  QApplication::processEvents();
  EXPECT_TRUE(panel.sizeHint().expandedTo(panel.minimumSizeHint()) == panel.sizeHint());
  for (const char* name : buttons) {
    const QPushButton& widget = child<QPushButton>(name);
    const QRect place(widget.mapTo(&panel, QPoint(0, 0)), widget.size());
    EXPECT_TRUE(panel.rect().contains(place)) << name;
    EXPECT_GE(widget.width(), widget.minimumSizeHint().width()) << name;
  }
}

TEST_F(ImExActionCtrlForm, longestTextOfEachListFits) {
  panel.initializeClientToClient();
  panel.setDataType(0);
  panel.resize(panel.sizeHint());
  QApplication::processEvents();
  const DropDownList& types = list("cmbDataType");
  EXPECT_GE(types.width(),
            types.fontMetrics().horizontalAdvance(QStringLiteral("Project Line Items")) + types.fontMetrics().height());
}

TEST_F(ImExActionCtrlForm, greaterFontGivesAGreaterHint) {
  const QSize before = panel.sizeHint();
  QFont font = panel.font();
  font.setPointSizeF(font.pointSizeF() * 2);
  panel.setFont(font);
  QApplication::processEvents();
  EXPECT_GT(panel.sizeHint().width(), before.width());
  EXPECT_GT(panel.sizeHint().height(), before.height());
}

} // namespace

} // namespace imex::test
