#include "PanelTest.h"

#include <filesystem>

namespace imex::test {

namespace {

/// What the request notes when a format is looked up that the catalogue does not have.
const Texts kUnknownFormat = {"> ImExRequest setTabCount()",
                              "! ImExRequest setTabCount 5 ImExRequest: Invalid procedure call or argument"};
const Texts kNewTabCount = {"> ImExRequest tabCount()", "< ImExRequest tabCount()"};
const Texts kKnownFormat = lines("> ImExRequest setTabCount()") + kNewTabCount + lines("< ImExRequest setTabCount()");
const Texts kModule = {"> ImExModule initialize()", "< ImExModule initialize()"};

class ImExActionCtrlModes : public PanelTest {
 protected:
  struct List {
    Texts texts;
    int index;
    bool isLocked;
    bool isEnabled;

    friend bool operator==(const List&, const List&) = default;
  };

  List contents(const char* name) {
    const DropDownList& box = list(name);
    Texts texts;
    for (int i = 0; i < box.count(); ++i)
      texts.push_back(toCore(box.itemText(i)));
    return {texts, box.listIndex(), box.isLocked(), box.isEnabled()};
  }

  bool isEnabled(const char* name) { return child<QWidget>(name).isEnabled(); }

  /// The six arguments of the Edit button, the only place where the host sees delimiter and column count.
  std::string editArguments() {
    giveFile({"one"});
    everything();
    click("cmdEditFile");
    for (const std::string& line : happened()) {
      if (line.starts_with("* editImportFile"))
        return line;
    }
    return "(no event)";
  }
};

TEST_F(ImExActionCtrlModes, clientToServerInItsOrder) {
  panel.initializeClientToServer();
  const Texts dataTypeClick =
      lines("> panel cmbDataType_Click()") + kUnknownFormat + lines("< panel cmbDataType_Click()");
  EXPECT_EQ(Texts{"> panel initializeClientToServer()"} + plain("cmbDelimiter_Click") + dataTypeClick + kUnknownFormat +
                plain("optTruncation_Click") + plain("optWarnings_Click") + kModule + kKnownFormat + kNewTabCount +
                lines("< panel initializeClientToServer()"),
            everything());
}

TEST_F(ImExActionCtrlModes, clientToClientInItsOrder) {
  panel.initializeClientToClient();
  EXPECT_EQ(Texts{"> panel initializeClientToClient()"} + plain("cmbDelimiter_Click") + plain("optTruncation_Click") +
                plain("optWarnings_Click") + kModule + kUnknownFormat + kNewTabCount +
                lines("< panel initializeClientToClient()"),
            everything());
}

TEST_F(ImExActionCtrlModes, clientToServerLists) {
  panel.initializeClientToServer();
  EXPECT_EQ((List{{"Tab", "Pipe"}, 0, false, true}), contents("cmbDelimiter"));
  EXPECT_EQ((List{{"Instant", "Over Night"}, 0, true, true}), contents("cmbSchedule"));
  EXPECT_EQ((List{{"Import", "Export"}, 0, true, true}), contents("cmbImportExport"));
  EXPECT_EQ((List{{"Halvik Format", "Agent Format"}, 1, false, true}), contents("cmbDataOrigin"));
  EXPECT_EQ((List{{"Customers", "Products", "Invoices", "Commissions", "Ballasts"}, 0, false, true}),
            contents("cmbDataType"));
}

TEST_F(ImExActionCtrlModes, clientToClientLists) {
  panel.initializeClientToClient();
  EXPECT_EQ((List{{"Tab", "Pipe"}, 0, false, true}), contents("cmbDelimiter"));
  EXPECT_EQ((List{{"Instant"}, 0, true, false}), contents("cmbSchedule"));
  EXPECT_EQ((List{{"Import", "Export"}, 0, true, false}), contents("cmbImportExport"));
  EXPECT_EQ((List{{"Halvik Format", "Agent Format"}, 1, true, false}), contents("cmbDataOrigin"));
  EXPECT_EQ((List{{"Project Line Items", "Quote Line Items", "Order Line Items"}, -1, false, true}),
            contents("cmbDataType"));
}

TEST_F(ImExActionCtrlModes, clientToServerOptionsAndButtons) {
  panel.initializeClientToServer();
  EXPECT_TRUE(option("optTruncation_0").isChecked());
  EXPECT_FALSE(option("optTruncation_1").isChecked());
  EXPECT_TRUE(option("optWarnings_0").isChecked());
  EXPECT_FALSE(option("optWarnings_1").isChecked());
  for (const char* name : {"optTruncation_0", "optTruncation_1", "optWarnings_0", "optWarnings_1"}) {
    EXPECT_TRUE(isEnabled(name)) << name;
  }
  EXPECT_TRUE(child<QWidget>("cmdSelectFile").isVisible());
  EXPECT_TRUE(child<QWidget>("cmdViewErrors").isVisible());
}

TEST_F(ImExActionCtrlModes, clientToClientOptionsAndButtons) {
  panel.initializeClientToClient();
  EXPECT_FALSE(option("optTruncation_0").isChecked());
  EXPECT_TRUE(option("optTruncation_1").isChecked());
  EXPECT_TRUE(option("optWarnings_0").isChecked());
  EXPECT_FALSE(option("optWarnings_1").isChecked());
  for (const char* name : {"optTruncation_0", "optTruncation_1", "optWarnings_0", "optWarnings_1"}) {
    EXPECT_FALSE(isEnabled(name)) << name;
  }
  EXPECT_TRUE(child<QWidget>("cmdSelectFile").isVisible());
  EXPECT_FALSE(child<QWidget>("cmdViewErrors").isVisible());
  EXPECT_TRUE(isEnabled("btnMoreInfoWarnings"));
}

TEST_F(ImExActionCtrlModes, clientToServerFillsTheRequest) {
  panel.initializeClientToServer();
  EXPECT_EQ("IMPORT", toCore(panel.ImportExport()));
  EXPECT_EQ("CUSTOMER", toCore(panel.DataType()));
  EXPECT_EQ("AGENT", toCore(panel.DataOrigin()));
  EXPECT_EQ("INSTANT", toCore(panel.Schedule()));
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|13|" + (host.folder / "import.txt") + "|Field 1 ... 13|9",
            editArguments());
}

TEST_F(ImExActionCtrlModes, clientToServerSendsItsDefaults) {
  panel.initializeClientToServer();
  host.serviceCall.result = answer("ok", {});
  giveFile({customerLine()});
  click("cmdImportExport");
  ASSERT_EQ(1U, host.serviceCall.calls.size());
  const host::RequestInformation& sent = host.serviceCall.calls.front().information;
  EXPECT_EQ("IMPORT", sent.importExport);
  EXPECT_EQ("CUSTOMER", sent.dataType);
  EXPECT_EQ("INSTANT", sent.schedule);
  EXPECT_EQ("AGENT", sent.dataOrigin);
  EXPECT_EQ("TAB", sent.delimiter);
  EXPECT_FALSE(sent.allowWarnings);
  EXPECT_TRUE(sent.allowTruncation);
}

TEST_F(ImExActionCtrlModes, clientToClientFillsTheRequestButForTheDataType) {
  panel.initializeClientToClient();
  EXPECT_EQ("IMPORT", toCore(panel.ImportExport()));
  EXPECT_EQ("", toCore(panel.DataType()));
  EXPECT_EQ("AGENT", toCore(panel.DataOrigin()));
  EXPECT_EQ("INSTANT", toCore(panel.Schedule()));
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|0|" + (host.folder / "import.txt") + "|(nothing)|9",
            editArguments());
}

TEST_F(ImExActionCtrlModes, secondCallMakesANewRequestAndAppends) {
  panel.initializeClientToServer();
  panel.SelectedData(QStringLiteral("kept by the first request"));
  panel.initializeClientToServer();
  EXPECT_EQ("", toCore(panel.SelectedData()));
  EXPECT_EQ((List{{"Tab", "Pipe", "Tab", "Pipe"}, 0, false, true}), contents("cmbDelimiter"));
  EXPECT_EQ((List{{"Instant", "Over Night", "Instant", "Over Night"}, 0, true, true}), contents("cmbSchedule"));
  EXPECT_EQ((List{{"Import", "Export", "Import", "Export"}, 0, true, true}), contents("cmbImportExport"));
  EXPECT_EQ((List{{"Halvik Format", "Agent Format", "Halvik Format", "Agent Format"}, 1, false, true}),
            contents("cmbDataOrigin"));
  EXPECT_EQ((List{{"Customers", "Products", "Invoices", "Commissions", "Ballasts", "Customers", "Products", "Invoices",
                   "Commissions", "Ballasts"},
                  0,
                  false,
                  true}),
            contents("cmbDataType"));
}

TEST_F(ImExActionCtrlModes, secondCallRunsEveryHandlerAgain) {
  panel.initializeClientToServer();
  everything();
  panel.initializeClientToServer();
  const Texts dataTypeClick =
      lines("> panel cmbDataType_Click()") + kKnownFormat + lines("< panel cmbDataType_Click()");
  EXPECT_EQ(Texts{"> panel initializeClientToServer()"} + plain("cmbDelimiter_Click") + dataTypeClick + kKnownFormat +
                plain("optTruncation_Click") + plain("optWarnings_Click") + kModule + kKnownFormat + kNewTabCount +
                lines("< panel initializeClientToServer()"),
            everything());
}

TEST_F(ImExActionCtrlModes, secondCallInTheOtherModeKeepsWhatTheFirstOneFixed) {
  panel.initializeClientToClient();
  panel.initializeClientToServer();
  EXPECT_EQ((List{{"Customers", "Products", "Invoices", "Commissions", "Ballasts", "Project Line Items",
                   "Quote Line Items", "Order Line Items"},
                  0,
                  false,
                  true}),
            contents("cmbDataType"));
  EXPECT_FALSE(isEnabled("cmbDataOrigin"));
  EXPECT_FALSE(isEnabled("optWarnings_0"));
  EXPECT_FALSE(child<QWidget>("cmdViewErrors").isVisible());
  EXPECT_EQ("CUSTOMER", toCore(panel.DataType()));
}

TEST_F(ImExActionCtrlModes, secondCallForTheHostKeepsTheChoiceOfTheFirst) {
  panel.initializeClientToServer();
  panel.initializeClientToClient();
  EXPECT_EQ((List{{"Customers", "Products", "Invoices", "Commissions", "Ballasts", "Project Line Items",
                   "Quote Line Items", "Order Line Items"},
                  0,
                  false,
                  true}),
            contents("cmbDataType"));
  EXPECT_EQ("", toCore(panel.DataType())) << "nobody has told the new request of the choice";

  giveFile({});
  host.serviceCall.result = answer("ok", {});
  click("cmdImportExport");
  EXPECT_EQ("CUSTOMER", toCore(panel.DataType()));
  ASSERT_EQ(1U, host.serviceCall.calls.size());
  EXPECT_EQ("CUSTOMER", host.serviceCall.calls.front().information.dataType);
  EXPECT_FALSE(host.serviceCall.calls.front().information.allowTruncation);
}

TEST_F(ImExActionCtrlModes, positionBeyondTheCatalogueChoosesAnAppendedText) {
  panel.initializeClientToServer();
  panel.initializeClientToServer();
  list("cmbDelimiter").setListIndex(3); // "Pipe" once more; the delimiter goes by position
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|13|" + (host.folder / "import.txt") + "|Field 1 ... 13|9",
            editArguments());
}

// --- A catalogue that does not load ---------------------------------------------------------------------------------

Box catalogueBox(const std::string& path, const std::string& error) {
  return {"An error was encountered while attempting read dat file (" + path +
              ").\r\nSome file types will not be editable. Please contact production support to have this corrected.",
          48, "Error Number: " + error};
}

TEST_F(ImExActionCtrlModes, missingFormatFileIsNamedAndTheFormatsBeforeItWork) {
  std::filesystem::remove(host.folder / "app/docs/formatagentproduct.dat");
  panel.initializeClientToServer();
  EXPECT_EQ(
      (std::vector<Box>{catalogueBox((host.folder / "app") + "\\docs\\formatagentproduct.dat", "53 - File not found")}),
      host.messageBox.boxes);

  host.serviceCall.result = answer("ok", {});
  giveFile({customerLine()});
  click("cmdImportExport");
  EXPECT_EQ(1U, host.serviceCall.calls.size());
  EXPECT_EQ("ok", status());

  choose("cmbDataType", "Products");
  click("btnTemplate");
  EXPECT_EQ(std::vector<int>{91}, takeEscapedNumbers());
}

TEST_F(ImExActionCtrlModes, applicationDirectoryWithoutFormatFiles) {
  std::filesystem::remove_all(host.folder / "app/docs");
  panel.initializeClientToServer();
  EXPECT_EQ((std::vector<Box>{
                catalogueBox((host.folder / "app") + "\\docs\\formatagentcustomer.dat", "76 - Path not found")}),
            host.messageBox.boxes);
  EXPECT_EQ("CUSTOMER", toCore(panel.DataType()));
  EXPECT_EQ("* editImportFile Import file opened for edit.|1|0|" + (host.folder / "import.txt") + "|(nothing)|9",
            editArguments());
}

TEST_F(ImExActionCtrlModes, withoutABoxTheCatalogueErrorReachesTheHost) {
  std::filesystem::remove_all(host.folder / "app/docs");
  host.services.messageBox = nullptr;
  host.install();
  EXPECT_EQ(429, raisedNumber([&] { panel.initializeClientToServer(); }));
  EXPECT_EQ("! ImExActionCtrl initializeClientToServer 429 ImEx: Component can't create object",
            host.trace->lines.back());
}

} // namespace

} // namespace imex::test
