#include "PanelTest.h"

#include <QAbstractItemView>

namespace imex::test {

namespace {

class ImExActionCtrlClicks : public PanelTest {
 protected:
  ImExActionCtrlClicks() {
    panel.initializeClientToServer();
    everything();
  }

  /// What the service is told when the panel's settings are sent with an empty file.
  host::RequestInformation sent() {
    giveFile({});
    host.serviceCall.result = answer("ok", {});
    click("cmdImportExport");
    everything();
    return host.serviceCall.calls.back().information;
  }

  static std::string box(const std::string& prompt) { return "* box [48] Corvana Maintenance: " + prompt; }
};

TEST_F(ImExActionCtrlClicks, keyboardChoosesADataType) {
  const std::vector<std::pair<const char*, const char*>> codes = {
      {"Products", "PRODUCT"}, {"Invoices", "INVOICE"}, {"Commissions", "COMMISSION"}, {"Ballasts", "BALLASTS"}};
  for (const auto& [text, code] : codes) {
    list("cmbDataType").setFocus();
    QTest::keyClick(&list("cmbDataType"), Qt::Key_Down);
    Texts lines = happened();
    std::erase_if(lines, [](const std::string& line) { return line[0] == '!'; }); // BALLASTSAGENT is no format
    EXPECT_EQ(plain("cmbDataType_Click"), lines) << text;
    EXPECT_EQ(code, toCore(panel.DataType()));
  }
  choose("cmbDataType", "Customers");
  EXPECT_EQ("CUSTOMER", toCore(panel.DataType()));
}

TEST_F(ImExActionCtrlClicks, mouseChoosesADataType) {
  DropDownList& types = list("cmbDataType");
  QTest::mouseClick(&types, Qt::LeftButton);
  QAbstractItemView& view = *types.view();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(view.window()));
  const QPoint place = view.visualRect(view.model()->index(2, 0)).center();
  QTest::mouseMove(view.viewport(), place);
  ASSERT_TRUE(QTest::qWaitFor([&] {
    if (view.isVisible())
      QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
    return !view.isVisible();
  }));
  EXPECT_EQ(plain("cmbDataType_Click"), happened());
  EXPECT_EQ("INVOICE", toCore(panel.DataType()));
}

TEST_F(ImExActionCtrlClicks, formatFollowsTheListWithoutATrace) {
  choose("cmbDataOrigin", "Halvik Format");
  EXPECT_EQ(Texts{}, everything());
  EXPECT_EQ("HALVIK", toCore(panel.DataOrigin()));
  choose("cmbDataOrigin", "Agent Format");
  EXPECT_EQ("AGENT", toCore(panel.DataOrigin()));
}

TEST_F(ImExActionCtrlClicks, delimiterFollowsTheList) {
  choose("cmbDelimiter", "Pipe");
  EXPECT_EQ(plain("cmbDelimiter_Click"), everything());
  EXPECT_EQ("PIPE", sent().delimiter);
  choose("cmbDelimiter", "Tab");
  EXPECT_EQ("TAB", sent().delimiter);
}

TEST_F(ImExActionCtrlClicks, optionMarkedInAnotherWay_runsItsHandlerOnce) {
  panel.initializeClientToServer();
  everything();
  option("optTruncation_1").toggle(); // as a screen reader does
  EXPECT_EQ(plain("optTruncation_Click"), everything());
  option("optTruncation_0").setChecked(true);
  EXPECT_EQ(plain("optTruncation_Click"), everything());
  option("optTruncation_0").setChecked(true);
  EXPECT_EQ(Texts{}, everything()) << "nothing was marked";
  click("optTruncation_0");
  EXPECT_EQ(plain("optTruncation_Click"), everything()) << "a click on the marked option counts";
}

TEST_F(ImExActionCtrlClicks, truncationFollowsTheOption) {
  click("optTruncation_1");
  EXPECT_EQ(plain("optTruncation_Click"), everything());
  EXPECT_FALSE(sent().allowTruncation);
  click("optTruncation_0");
  EXPECT_EQ(plain("optTruncation_Click"), everything());
  EXPECT_TRUE(sent().allowTruncation);
}

TEST_F(ImExActionCtrlClicks, keyboardMovesTheMarkOnce) {
  option("optTruncation_0").setFocus();
  QTest::keyClick(&option("optTruncation_0"), Qt::Key_Down);
  EXPECT_TRUE(option("optTruncation_1").isChecked());
  EXPECT_EQ(plain("optTruncation_Click"), everything());
  EXPECT_FALSE(sent().allowTruncation);
}

TEST_F(ImExActionCtrlClicks, markedOptionRunsItsHandlerWhenItIsClickedAgain) {
  click("optTruncation_0");
  EXPECT_EQ(plain("optTruncation_Click"), everything());
}

TEST_F(ImExActionCtrlClicks, warningsFollowTheOption) {
  choose("cmbDataType", "Ballasts");
  happened();
  click("optWarnings_1");
  EXPECT_EQ(plain("optWarnings_Click"), everything()) << "ballasts have no box";
  click("optWarnings_0");
  EXPECT_EQ(plain("optWarnings_Click"), everything());
}

TEST_F(ImExActionCtrlClicks, allowedWarningsOfBallastsReachTheService) {
  choose("cmbDataType", "Ballasts");
  click("optWarnings_1");
  const host::RequestInformation information = sent();
  EXPECT_EQ("BALLASTS", information.dataType);
  EXPECT_TRUE(information.allowWarnings);
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExActionCtrlClicks, allowedWarningsReachTheService) {
  click("optWarnings_1");
  EXPECT_TRUE(sent().allowWarnings);
  click("optWarnings_0");
  EXPECT_FALSE(sent().allowWarnings);
}

TEST_F(ImExActionCtrlClicks, allowingWarningsTellsWhatWillBeUpdated) {
  const std::vector<std::pair<const char*, const char*>> notices = {
      {"Customers", "Customer Code (Keyword) and Sales Persons and Sales Person Commission percents will be updated "
                    "for customers in the import which exist in Corvana. "},
      {"Products", "Product pricing and commission percents will be updated for products in the import which exist in "
                   "Corvana. "},
      {"Invoices", "Invoice information will be updated for invoices being imported which already exist in Corvana."},
      {"Commissions", "Commission information will be updated for commission invoices being imported which already "
                      "exist in Corvana."}};
  for (const auto& [type, notice] : notices) {
    choose("cmbDataType", type);
    click("optWarnings_0");
    everything();
    click("optWarnings_1");
    EXPECT_EQ((Texts{"> panel optWarnings_Click()", box(notice), "< panel optWarnings_Click()"}), everything()) << type;
  }
}

TEST_F(ImExActionCtrlClicks, warningsAreAllowedAlsoWhereTheNoticeFails) {
  host.services.messageBox = nullptr;
  host.install();
  click("optWarnings_1");
  EXPECT_EQ(std::vector<int>{429}, takeEscapedNumbers());
  host.services.messageBox = &ui.messageBox;
  host.install();
  EXPECT_TRUE(sent().allowWarnings);
}

TEST_F(ImExActionCtrlClicks, lockedListsStayAsTheyAreForTheUser) {
  for (const char* name : {"cmbImportExport", "cmbSchedule"}) {
    list(name).setFocus();
    EXPECT_TRUE(list(name).hasFocus()) << name;
    QTest::keyClick(&list(name), Qt::Key_Down);
    QTest::mouseClick(&list(name), Qt::LeftButton);
    EXPECT_EQ(0, list(name).listIndex()) << name;
    EXPECT_FALSE(list(name).view()->isVisible()) << name;
  }
  EXPECT_EQ(Texts{}, everything());
}

class ImExActionCtrlWithoutAMode : public PanelTest {
 protected:
  static Texts failure(const std::string& procedure) {
    return {"> panel " + procedure + "()",
            "! ImExActionCtrl " + procedure + " 91 ImExActionCtrl: Object variable not set",
            "* box [48] Error Number: 91 - Object variable not set: The requested operation could not be completed."};
  }
};

TEST_F(ImExActionCtrlWithoutAMode, clicksFailWithBoxes) {
  click("optTruncation_0");
  EXPECT_EQ(failure("optTruncation_Click"), everything());
  click("optWarnings_1");
  EXPECT_EQ(failure("optWarnings_Click"), everything());
}

TEST_F(ImExActionCtrlWithoutAMode, choicesFailWithBoxes) {
  const std::vector<std::pair<const char*, const char*>> texts = {{"cmbDataType", "Customers"},
                                                                  {"cmbDelimiter", "Tab"}};
  for (const auto& [name, text] : texts) {
    list(name).append(QLatin1String(text));
    list(name).setFocus();
    QTest::keyClick(&list(name), Qt::Key_Down);
    EXPECT_EQ(0, list(name).listIndex());
    EXPECT_EQ(failure(std::string(name) + "_Click"), everything());
  }
}

} // namespace

} // namespace imex::test
