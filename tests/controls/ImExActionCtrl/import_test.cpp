#include "PanelTest.h"

#include <QShortcut>
#include <QWindow>

#include <algorithm>
#include <filesystem>
#include <utility>

namespace imex::test {

namespace {

const std::string kMaintenance = "Corvana Maintenance: ";
const std::string kDefaultPrompt = "The requested operation could not be completed.";

/// Import in either mode, over files in the temporary folder.
class ImExActionCtrlImport : public PanelTest {
 protected:
  void startClientToServer() {
    panel.initializeClientToServer();
    host.serviceCall.result = answer("Import complete.", {{true, customerLine(), "1"}});
    everything();
  }

  void startClientToClient(int dataType) {
    panel.initializeClientToClient();
    panel.setDataType(dataType);
    everything();
  }

  Texts import() {
    everything();
    click("cmdImportExport");
    return happened();
  }

  /// What every import begins with: the file is taken and checked, and the data type once more.
  static Texts opening() {
    return lines("> panel cmdImportExport_Click()") + plain("openFile") + plain("cmbDataType_Click");
  }
  static Texts readyForServer() { return opening() + plain("clientToServerTaskReady"); }
  static Texts readyForClient() { return readyForServer() + plain("clientToClientTaskReady"); }
  static inline const std::string kShown = "* progress Corvana|Performing Import...|";
  static inline const std::string kReleased = "* progress released";
  static inline const std::string kExit = "< panel cmdImportExport_Click()";

  static std::string box(int style, const std::string& text) { return "* box [" + std::to_string(style) + "] " + text; }

  bool isLatest(const std::string& line) const {
    return !host.trace->lines.empty() && host.trace->lines.back() == line;
  }

  static Texts errorsOf(Texts all) {
    std::erase_if(all, [](const std::string& line) { return line[0] != '!'; });
    return all;
  }

  bool isButtonEnabled() { return child<QWidget>("cmdImportExport").isEnabled(); }
  bool isPointerHourglass() const { return panel.cursor().shape() == Qt::WaitCursor; }
  bool isPointerDefault() const { return !panel.testAttribute(Qt::WA_SetCursor); }

  /// How often the request's procedure was entered.
  long entries(const std::string& procedure) const {
    return std::ranges::count(host.trace->lines, "> ImExRequest " + procedure + "()");
  }
};

// --- Client to server -----------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlImport, customersInTheirOrder) {
  startClientToServer();
  const std::string path = giveFile({customerLine()});
  EXPECT_EQ(readyForServer() + lines(kShown) + plain("mImExRequest_MessageReceived") +
                lines("> panel mImExRequest_showErrors()", "* showErrors " + path + "|1|1|1|14|Field 1 ... 14|9",
                      "< panel mImExRequest_showErrors()", kReleased, kExit),
            import());
  EXPECT_EQ("Import complete.", status());
  EXPECT_TRUE(isButtonEnabled());
  EXPECT_TRUE(isPointerDefault());
  EXPECT_TRUE(std::filesystem::exists(host.folder / "validationresults.html"));
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
}

TEST_F(ImExActionCtrlImport, ballastsAreNotAnswered) {
  startClientToServer();
  choose("cmbDataType", "Ballasts");
  choose("cmbDataOrigin", "Halvik Format");
  giveFile({"B1\t2"});
  EXPECT_EQ(readyForServer() + lines(kShown, kReleased, kExit), import());
  EXPECT_EQ(1U, host.serviceCall.calls.size());
  EXPECT_EQ("", status());
  EXPECT_TRUE(isButtonEnabled());
  EXPECT_TRUE(isPointerDefault());
}

TEST_F(ImExActionCtrlImport, whileSendingTheButtonIsDisabledAndThePointerAnHourglass) {
  startClientToServer();
  giveFile({customerLine()});
  child<QPlainTextEdit>("txtValidationResults").setPlainText(QStringLiteral("of the last import"));
  bool wasAsked = false;
  host.user.onName = [&] { // the first thing that sending asks the host for
    wasAsked = true;
    EXPECT_FALSE(isButtonEnabled());
    EXPECT_TRUE(isPointerHourglass());
    EXPECT_EQ("", status());
    EXPECT_EQ(1, std::ranges::count(host.trace->lines, kShown));
    EXPECT_EQ(0, std::ranges::count(host.trace->lines, kReleased));
  };
  import();
  EXPECT_TRUE(wasAsked);
}

TEST_F(ImExActionCtrlImport, keyboardFocusStaysOnTheButton) {
  startClientToServer();
  giveFile({customerLine()});
  auto& button = child<QAbstractButton>("cmdImportExport");
  button.setFocus();
  QTest::keyClick(&button, Qt::Key_Space);
  EXPECT_EQ(1u, host.serviceCall.calls.size());
  EXPECT_TRUE(button.hasFocus());
}

TEST_F(ImExActionCtrlImport, panelThatTheHostDeletesMeanwhile_isGone) {
  startClientToServer();
  giveFile({customerLine()});
  QPointer<ImExActionCtrl> watched = &panel;
  onSignal = [&] { delete watched.data(); }; // showErrors comes while the request sends
  QTest::mouseClick(&child<QAbstractButton>("cmdImportExport"), Qt::LeftButton);
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(Texts{}, host.trace->errors());
}

TEST_F(ImExActionCtrlImport, whatARequestTellsAPanelThatIsGone_isHeardByNobody) {
  startClientToServer();
  giveFile({customerLine()});
  QPointer<ImExActionCtrl> watched = &panel;
  onSignal = [&] { delete watched.data(); };
  host.trace->onTrace = [&] { // the request's own last step fails, of which it tells by an event
    if (isLatest("< panel mImExRequest_showErrors()"))
      throw RuntimeError(57, "log", "Device I/O error");
  };
  const Texts all = import();
  EXPECT_TRUE(watched.isNull());
  EXPECT_EQ(Texts{"! ImExRequest mergeLineResults 57 log: Device I/O error"}, errorsOf(all));
  EXPECT_TRUE(host.messageBox.boxes.empty());
}

TEST_F(ImExActionCtrlImport, replyRestoresButtonAndPointer) {
  startClientToServer();
  giveFile({customerLine()});
  onSignal = [&] { // showErrors comes right after the reply
    EXPECT_TRUE(isButtonEnabled());
    EXPECT_TRUE(isPointerDefault());
    EXPECT_EQ("Import complete.", status());
  };
  import();
}

TEST_F(ImExActionCtrlImport, withoutAProgressDisplayNothingIsShown) {
  startClientToServer();
  giveFile({customerLine()});
  host.services.createProgressDisplay = nullptr;
  host.install();
  EXPECT_EQ(0, std::ranges::count(import(), kShown));
  EXPECT_EQ("Import complete.", status());
  host.services.createProgressDisplay = [] { return nullptr; };
  host.install();
  import();
  EXPECT_EQ(2U, host.serviceCall.calls.size());
}

TEST_F(ImExActionCtrlImport, progressDisplayThatCannotBeMadeLeavesTheButtonDisabled) {
  startClientToServer();
  giveFile({customerLine()});
  host.services.createProgressDisplay = []() -> std::unique_ptr<host::ProgressDisplay> {
    throw RuntimeError(7, "desk", "Out of memory");
  };
  host.install();
  EXPECT_EQ(readyForServer() + lines("! cmdImportExport_Click cmdExit_Click 7 desk: Out of memory",
                                     box(48, "Error Number: 7 - Out of memory: " + kDefaultPrompt)),
            import());
  EXPECT_FALSE(isButtonEnabled());
  EXPECT_TRUE(isPointerDefault());
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

TEST_F(ImExActionCtrlImport, serviceThatIsDownLeavesButtonAndPointer) {
  startClientToServer();
  giveFile({customerLine()});
  host.serviceCall.error = RuntimeError(1001, "SoapServiceCall", "No connection to http://service.example/secured");
  EXPECT_EQ(readyForServer() + lines(kShown, kReleased,
                                     "! cmdImportExport_Click cmdExit_Click 1001 SoapServiceCall: No connection to "
                                     "http://service.example/secured",
                                     box(48, "Error Number: 1001 - No connection to http://service.example/secured: " +
                                                 kDefaultPrompt)),
            import());
  EXPECT_FALSE(isButtonEnabled());
  EXPECT_TRUE(isPointerHourglass());
}

TEST_F(ImExActionCtrlImport, nextModeCallDoesNotRestoreTheButton) {
  startClientToServer();
  giveFile({customerLine()});
  host.serviceCall.error = RuntimeError(1001, "SoapServiceCall", "No connection");
  import();
  panel.initializeClientToServer();
  EXPECT_FALSE(isButtonEnabled());
}

TEST_F(ImExActionCtrlImport, errorNumberPast16BitsEscapesAsOverflow) {
  startClientToServer();
  giveFile({customerLine()});
  host.serviceCall.error = RuntimeError(-2147012867, "SoapServiceCall", "Cannot connect");
  EXPECT_EQ(readyForServer() + lines(kShown, kReleased), import());
  EXPECT_EQ(std::vector<int>{6}, takeEscapedNumbers());
}

TEST_F(ImExActionCtrlImport, centralFlagGoesWithEachSend) {
  startClientToServer();
  giveFile({customerLine("D")});
  import();
  EXPECT_EQ(1U, host.serviceCall.calls.size());

  panel.isCentralizedAgent = true;
  const Texts refused = import();
  EXPECT_EQ(1U, host.serviceCall.calls.size());
  EXPECT_EQ(1, std::ranges::count(refused,
                                  box(36, kMaintenance + "Distributor import not allowed on Central Server.\r\nPlease "
                                                         "contact Corvana Support for more Information.\r\n\r\n Would "
                                                         "you like to correct the file?")));

  panel.isCentralizedAgent = false;
  import();
  EXPECT_EQ(2U, host.serviceCall.calls.size());
}

TEST_F(ImExActionCtrlImport, everyChosenDataTypeIsSentAsItsCode) {
  startClientToServer();
  const std::vector<std::pair<const char*, const char*>> types = {
      {"Products", "PRODUCT"}, {"Invoices", "INVOICE"}, {"Commissions", "COMMISSION"}, {"Customers", "CUSTOMER"}};
  giveFile({});
  for (const auto& [text, code] : types) {
    choose("cmbDataType", text);
    import();
    EXPECT_EQ(code, host.serviceCall.calls.back().information.dataType);
  }
}

TEST_F(ImExActionCtrlImport, listDecidesOverTheDataTypeThatTheHostSet) {
  startClientToServer();
  panel.DataType(QStringLiteral("PRODUCT"));
  giveFile({});
  import();
  EXPECT_EQ("CUSTOMER", host.serviceCall.calls.back().information.dataType);
}

// --- Files that cannot be sent --------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlImport, cancelledDialogEndsTheImport) {
  startClientToServer();
  EXPECT_EQ((Texts{"> panel cmdImportExport_Click()", "> panel openFile()",
                   "* dialog Open File [Text Files (*.txt)|*.txt]", kExit}),
            import());
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

TEST_F(ImExActionCtrlImport, chosenFileIsImported) {
  startClientToServer();
  const std::string path = giveFile({customerLine()}, "chosen.txt");
  typePath("");
  ui.openFileDialog.answer = host::ChosenFile{host.folder.path().string() + "/", "chosen.txt"};
  const Texts lines = import();
  EXPECT_EQ("* dialog Open File [Text Files (*.txt)|*.txt]", lines[2]);
  EXPECT_EQ(path, filePath());
  EXPECT_EQ(1U, host.serviceCall.calls.size());
}

TEST_F(ImExActionCtrlImport, dialogThatFailsEndsTheImport) {
  startClientToServer();
  ui.openFileDialog.error = RuntimeError(57, "dialog", "no display");
  EXPECT_EQ((Texts{"> panel cmdImportExport_Click()", "> panel openFile()",
                   "* dialog Open File [Text Files (*.txt)|*.txt]", "! panel openFile() 57 dialog: no display",
                   box(48, "Error Number: 57 - no display: An error was encountered while attempting to open a file "
                           "to edit."),
                   kExit}),
            import());
}

TEST_F(ImExActionCtrlImport, fileThatCannotBeOpenedIsNotSent) {
  startClientToServer();
  const Texts refused = lines("> panel cmdImportExport_Click()") + plain("openFile") +
                        lines(box(48, kMaintenance + "Unable to open the file selected. Please try again.")) +
                        plain("cmbDataType_Click") + lines(kExit);

  typePath(host.folder / "missing.txt");
  EXPECT_EQ(refused, import()) << "missing";
  typePath(host.folder / "no folder/file.txt");
  EXPECT_EQ(refused, import()) << "missing folder";
  typePath(host.folder.path().string());
  EXPECT_EQ(refused, import()) << "a folder";
  const std::string path = giveFile({customerLine()});
  host.files.before = [&](std::string_view call, std::string_view file) {
    if (call == "openForInput" && file == path)
      throw RuntimeError(ErrorNumber::permissionDenied, "files");
  };
  EXPECT_EQ(refused, import()) << "no access";
  EXPECT_TRUE(host.serviceCall.calls.empty());
  EXPECT_TRUE(isButtonEnabled());
}

TEST_F(ImExActionCtrlImport, fileThatBreaksWhileItIsSentIsReported) {
  startClientToServer();
  const std::string path = giveFile({customerLine()});
  int reads = 0;
  host.files.before = [&](std::string_view call, std::string_view file) {
    if (call == "openForInput" && file == path && ++reads == 4) // two for the check, then the probe, then the reading
      throw RuntimeError(ErrorNumber::deviceIoError, "files");
  };
  EXPECT_EQ(readyForServer() +
                lines(kShown, "! ImExRequest readImportFile 57 files: Device I/O error",
                      "> panel mImExRequest_SerializationFailed()",
                      box(64, kMaintenance + "Unable to open the file selected. Please try again. If the problem "
                                             "persists please contact technical support."),
                      "< panel mImExRequest_SerializationFailed()", kReleased, kExit),
            import());
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

// --- The question about a bad line ----------------------------------------------------------------------------------

const std::string kQuestion = "* box [36] Corvana Maintenance: The file you are attempting to import is not properly "
                              "delimited. It should contain 13 of your chosen delimiter in each row of the "
                              "file.\r\nOpening the file within the editor and saving will correct the error.\r\n\r\n "
                              "Would you like to correct the file?";

TEST_F(ImExActionCtrlImport, badLineIsNotCorrectedOnNo) {
  startClientToServer();
  giveFile({"only one field"});
  EXPECT_EQ(readyForServer() + lines(kShown, kQuestion, kReleased, kExit), import());
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

TEST_F(ImExActionCtrlImport, badLineGoesToTheEditorOnYes) {
  startClientToServer();
  const std::string path = giveFile({"only one field", customerLine()});
  host.messageBox.answer = host::Answer::yes;
  EXPECT_EQ(readyForServer() + lines(kShown, kQuestion, "> panel mImExRequest_editImportFile()",
                                     "* editImportFile File format incorrect.|2|13|" + path + "|Field 1 ... 13|9",
                                     "< panel mImExRequest_editImportFile()", kReleased, kExit),
            import());
}

TEST_F(ImExActionCtrlImport, hostThatCannotEditIsReportedWithTheFile) {
  startClientToServer();
  const std::string path = giveFile({"only one field"});
  host.messageBox.answer = host::Answer::yes;
  onSignal = [] { throw RuntimeError(7, "desk", "Out of memory"); };
  EXPECT_EQ(
      readyForServer() +
          lines(kShown, kQuestion, "> panel mImExRequest_editImportFile()",
                "* editImportFile File format incorrect.|1|13|" + path + "|Field 1 ... 13|9",
                "! panel mImExRequest_editImportFile() 7 desk: Out of memory",
                box(48, "Error Number: 7 - Out of memory: An error was encountered while editing file " + path + "."),
                kReleased, kExit),
      import());
}

TEST_F(ImExActionCtrlImport, hostThatCannotShowErrorsIsReported) {
  startClientToServer();
  const std::string path = giveFile({customerLine()});
  onSignal = [] { throw RuntimeError(9, "desk", "Subscript out of range"); };
  EXPECT_EQ(readyForServer() + lines(kShown) + plain("mImExRequest_MessageReceived") +
                lines("> panel mImExRequest_showErrors()", "* showErrors " + path + "|1|1|1|14|Field 1 ... 14|9",
                      "! ImExActionCtrl mImExRequest_showErrors 9 desk: Subscript out of range",
                      box(48, "Error Number: 9 - Subscript out of range: " + kDefaultPrompt), kReleased, kExit),
            import());
}

TEST_F(ImExActionCtrlImport, handlersShareTheArgumentsAndTheSettingsStay) {
  startClientToServer();
  const std::string path = giveFile({"only one field"});
  host.messageBox.answer = host::Answer::yes;
  QObject::connect(
      &panel, &ImExActionCtrl::editImportFile, &panel,
      [](QString& message, Integer& rows, Integer& columns, QString& file, StringsPtr& headers, Integer& delimiter) {
        message = QStringLiteral("changed");
        rows = columns = delimiter = 0;
        file.clear();
        headers.reset();
      });
  Texts seen;
  QObject::connect(&panel, &ImExActionCtrl::editImportFile, &panel,
                   [&](QString& message, Integer& rows, Integer&, QString& file, StringsPtr& headers, Integer&) {
                     seen = {toCore(message), toText(rows), toCore(file), headers ? "headers" : "(nothing)"};
                   });
  import();
  EXPECT_EQ((Texts{"changed", "0", "", "(nothing)"}), seen);
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
  giveFile({customerLine()});
  import();
  EXPECT_EQ(1U, host.serviceCall.calls.size());
}

TEST_F(ImExActionCtrlImport, handlersShareTheMessagesAndTheSettingsStay) {
  startClientToServer();
  const std::string path = giveFile({customerLine()});
  QObject::connect(&panel, &ImExActionCtrl::showErrors, &panel,
                   [](QString& file, RowsPtr& rows, ErrorBeansPtr& errors, Integer& count, Integer& columns,
                      StringsPtr& headers, Integer& delimiter) {
                     file = QStringLiteral("changed");
                     rows.reset();
                     errors.reset();
                     count = columns = delimiter = 0;
                     headers.reset();
                   });
  Texts seen;
  QObject::connect(&panel, &ImExActionCtrl::showErrors, &panel,
                   [&](QString& file, RowsPtr& rows, ErrorBeansPtr& errors, Integer& count, Integer& columns,
                       StringsPtr& headers, Integer& delimiter) {
                     seen = {toCore(file),
                             rows ? "rows" : "(nothing)",
                             errors ? "errors" : "(nothing)",
                             toText(count),
                             toText(columns),
                             headers ? "headers" : "(nothing)",
                             toText(delimiter)};
                   });
  const auto shown = [&] { return "* showErrors " + path + "|1|1|1|14|Field 1 ... "; };
  EXPECT_EQ(1, std::ranges::count(import(), shown() + "14|9"));
  EXPECT_EQ((Texts{"changed", "(nothing)", "(nothing)", "0", "0", "(nothing)", "0"}), seen);
  EXPECT_EQ(path, toCore(panel.CheckedFileName()));
  EXPECT_EQ(1, std::ranges::count(import(), shown() + "15|9")) << "one more column of messages in the catalogue's list";
}

TEST_F(ImExActionCtrlImport, modeCallDuringAnEventIsSurvived) {
  startClientToServer();
  giveFile({customerLine()});
  bool isFirst = true;
  onSignal = [&] {
    if (std::exchange(isFirst, false))
      panel.initializeClientToServer();
  };
  import();
  EXPECT_TRUE(isButtonEnabled());
  EXPECT_EQ("", toCore(panel.CheckedFileName()));
}

// --- A user who does not wait ---------------------------------------------------------------------------------------

/// Tells of every event that a shortcut is sent.
class AnyShortcut : public QShortcut {
 public:
  using QShortcut::QShortcut;

  bool event(QEvent* event) override {
    if (event->type() != QEvent::Shortcut)
      return QShortcut::event(event);
    Q_EMIT activated();
    return true;
  }
};

/// What a user does, in the queue from which it is delivered later.
class ImExActionCtrlInput : public ImExActionCtrlImport {
 protected:
  ImExActionCtrlInput() {
    ofHost.show();
    QObject::connect(&settings, &QShortcut::activated, &settings, [this] { ui.journal("settings"); });
  }

  static void postKey(QObject& receiver, Qt::Key key, const QString& text = {}) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
      QCoreApplication::postEvent(&receiver, new QKeyEvent(type, key, Qt::NoModifier, text));
  }

  void postClick(const char* name) {
    auto& button = child<QAbstractButton>(name);
    const QPointF place = button.rect().center();
    const auto post = [&](QEvent::Type type, Qt::MouseButtons buttons) {
      QCoreApplication::postEvent(
          &button, new QMouseEvent(type, place, button.mapToGlobal(place), Qt::LeftButton, buttons, Qt::NoModifier));
    };
    post(QEvent::MouseButtonPress, Qt::LeftButton);
    post(QEvent::MouseButtonRelease, Qt::NoButton);
  }

  /// All kinds of it, and in between something that is not the user's.
  void doAnything() {
    postKey(child<QLineEdit>("txtFilePath"), Qt::Key_Return);
    postKey(list("cmbDataType"), Qt::Key_Down);
    postClick("optTruncation_1");
    postClick("btnTemplate");
    postKey(ofHost, Qt::Key_X, QStringLiteral("x"));
    QCoreApplication::postEvent(&settings, new QShortcutEvent(settings.key(), 0));
    QMetaObject::invokeMethod(
        &ofHost,
        [this] {
          ui.journal("not the user");
          ofHost.setFocus();
        },
        Qt::QueuedConnection);
    postKey(*window.windowHandle(), Qt::Key_Y, QStringLiteral("y")); // for what has the focus by then
    postClick("cmdExit");
  }

  QLineEdit& ofHost = *new QLineEdit(&window);
  AnyShortcut settings{QKeySequence(Qt::CTRL | Qt::Key_Comma), &window};
};

TEST_F(ImExActionCtrlInput, whileSendingIsDroppedAndTheRestIsDelivered) {
  startClientToServer();
  const std::string path = giveFile({customerLine()});
  host.user.onName = [&] { // the first thing that sending asks the host for
    doAnything();
    postClick("cmdImportExport");
  };
  onSignal = [&] { ofHost.setFocus(); }; // as an editor that shows the lines
  Texts all = import();
  QCoreApplication::processEvents();
  all = all + happened();
  EXPECT_EQ(readyForServer() + lines(kShown) + plain("mImExRequest_MessageReceived") +
                lines("> panel mImExRequest_showErrors()", "* showErrors " + path + "|1|1|1|14|Field 1 ... 14|9",
                      "< panel mImExRequest_showErrors()", "* not the user", kReleased, kExit),
            all);
  EXPECT_EQ("Import complete.", status());
  EXPECT_EQ(QStringLiteral("CUSTOMER"), panel.DataType());
  EXPECT_EQ(QStringLiteral("Customers"), list("cmbDataType").currentText());
  EXPECT_TRUE(option("optTruncation_0").isChecked());
  EXPECT_EQ(QString(), ofHost.text());
  EXPECT_TRUE(isButtonEnabled());
}

TEST_F(ImExActionCtrlInput, afterTheImportActsAgain) {
  startClientToServer();
  giveFile({customerLine()});
  import();
  doAnything();
  EXPECT_TRUE(QTest::qWaitFor([&] { return std::ranges::count(host.trace->lines, "* exitMaintenance") == 1; }));
  const Texts all = happened();
  EXPECT_EQ(1, std::ranges::count(all, "> panel txtFilePath_KeyDown()"));
  EXPECT_EQ(1, std::ranges::count(all, "> panel optTruncation_Click()"));
  EXPECT_EQ(1, std::ranges::count(all, "* clipboard cleared"));
  EXPECT_EQ(1, std::ranges::count(all, "* settings"));
  EXPECT_EQ(QStringLiteral("Products"), list("cmbDataType").currentText());
  EXPECT_EQ(QStringLiteral("xy"), ofHost.text());
}

TEST_F(ImExActionCtrlInput, ofALoopThatAHandlerRunsPressesNoButton) {
  startClientToServer();
  giveFile({customerLine()});
  const std::string before = ui.clipboard.text;
  onSignal = [&] { // a dialog of the host's, say
    EXPECT_TRUE(isButtonEnabled());
    for (const char* name : {"cmdImportExport", "btnTemplate", "cmdExit"})
      click(name);
  };
  const Texts all = import();
  EXPECT_EQ(1U, host.serviceCall.calls.size());
  EXPECT_EQ(before, ui.clipboard.text);
  EXPECT_EQ(0, std::ranges::count(all, "> panel cmdExit_Click()"));
}

// --- Client to client -----------------------------------------------------------------------------------------------

const std::string kNotOffered =
    "* box [64] Corvana Maintenance: The Import / Export request is not yet offered. Please "
    "make another selection.";

TEST_F(ImExActionCtrlImport, beforeADataTypeIsChosenNothingIsOffered) {
  panel.initializeClientToClient();
  giveFile({"one"});
  EXPECT_EQ(readyForClient() + lines(kNotOffered, kExit), import());
}

TEST_F(ImExActionCtrlImport, dataTypeThatIsAnotherByThenIsNotOffered) {
  startClientToClient(2);
  giveFile({lineItemLine(6)});
  list("cmbDataType").append(QStringLiteral("Order line items"));
  host.trace->onTrace = [&] { // a host whose trace log changes what it is told of
    if (isLatest("> panel clientToClientTaskReady()"))
      list("cmbDataType").setCurrentIndex(3);
  };
  everything();
  click("cmdImportExport");
  EXPECT_EQ(0, entries("serializeOrderLineItemFile"));
  EXPECT_EQ(readyForClient() + lines(kNotOffered, kExit), happened());
}

TEST_F(ImExActionCtrlImport, projectsAreReadTwice) {
  startClientToClient(0);
  giveFile({lineItemLine(10), lineItemLine(10)});
  everything();
  click("cmdImportExport");
  EXPECT_EQ(2, entries("serializeProjectLineItemFile"));
  EXPECT_EQ(readyForClient() + lines("* insertProjectLineItems 2", kExit), happened());
  EXPECT_TRUE(host.serviceCall.calls.empty());
}

TEST_F(ImExActionCtrlImport, quotesAreReadTwice) {
  startClientToClient(1);
  giveFile({lineItemLine(10)});
  everything();
  click("cmdImportExport");
  EXPECT_EQ(2, entries("serializeQuoteLineItemFile"));
  EXPECT_EQ(readyForClient() + lines("* insertQuoteLineItems 1", kExit), happened());
}

TEST_F(ImExActionCtrlImport, ordersAreReadOnce) {
  startClientToClient(2);
  giveFile({lineItemLine(6), lineItemLine(6), lineItemLine(6)});
  everything();
  click("cmdImportExport");
  EXPECT_EQ(1, entries("serializeOrderLineItemFile"));
  EXPECT_EQ(readyForClient() + lines("* insertOrderLineItems 3", kExit), happened());
}

TEST_F(ImExActionCtrlImport, recordsOfTheSecondReadingAreHandedOver) {
  startClientToClient(0);
  const std::string path = giveFile({lineItemLine(10)});
  int opened = 0;
  host.files.before = [&](std::string_view call, std::string_view file) {
    if (call == "openForInput" && file == path && ++opened == 5) // check 2, first reading 2, then the second
      host.folder.write("import.txt", textLines({lineItemLine(10), lineItemLine(10), lineItemLine(10)}));
  };
  EXPECT_EQ(readyForClient() + lines("* insertProjectLineItems 3", kExit), import());
}

TEST_F(ImExActionCtrlImport, fileThatIsGoneAtTheSecondReadingInsertsNothing) {
  for (const int dataType : {0, 1}) {
    ASSERT_NO_FATAL_FAILURE(startClientToClient(dataType));
    const std::string path = giveFile({lineItemLine(10)});
    int opened = 0;
    host.files.before = [&](std::string_view call, std::string_view file) {
      if (call == "openForInput" && file == path && ++opened == 5)
        throw RuntimeError(ErrorNumber::fileNotFound, "files");
    };
    EXPECT_EQ(readyForClient() +
                  lines(box(48, kMaintenance + "Unable to open the file selected. Please try again."), kExit),
              import());
  }
}

TEST_F(ImExActionCtrlImport, emptyFileInsertsNothing) {
  for (const int dataType : {0, 1, 2}) {
    startClientToClient(dataType);
    giveFile({});
    EXPECT_EQ(readyForClient() + lines(kExit), import()) << dataType;
  }
}

TEST_F(ImExActionCtrlImport, badFieldsAreShownAndNothingIsInserted) {
  startClientToClient(2);
  const std::string path = giveFile({"100000\tT\tB\tC\t1\t0.1"});
  EXPECT_EQ(readyForClient() + lines("> panel mImExRequest_showErrors()",
                                     "* showErrors " + path + "|1|1|1|7|Field 1 ... 7|9",
                                     "< panel mImExRequest_showErrors()", kExit),
            import());
}

TEST_F(ImExActionCtrlImport, badFieldsOfAFileThatIsReadTwiceAreShownOnce) {
  const std::vector<std::string> procedures = {"serializeProjectLineItemFile", "serializeQuoteLineItemFile"};
  for (const int dataType : {0, 1}) {
    startClientToClient(dataType);
    const std::string path = giveFile({"100000" + lineItemLine(10), lineItemLine(10)});
    everything();
    click("cmdImportExport");
    EXPECT_EQ(1, entries(procedures[static_cast<std::size_t>(dataType)]));
    EXPECT_EQ(readyForClient() + lines("> panel mImExRequest_showErrors()",
                                       "* showErrors " + path + "|2|1|2|11|Field 1 ... 11|9",
                                       "< panel mImExRequest_showErrors()", kExit),
              happened());
  }
}

TEST_F(ImExActionCtrlImport, panelThatTheHostDeletesOverBadFields_isGone) {
  for (const int dataType : {0, 1, 2}) {
    QPointer<ImExActionCtrl> other = new ImExActionCtrl(&window);
    other->initializeClientToClient();
    other->setDataType(dataType);
    const std::string bad = "100000" + lineItemLine(dataType == 2 ? 6 : 10);
    other->findChild<QLineEdit*>(QStringLiteral("txtFilePath"))
        ->setText(toQt(host.folder.write("bad.txt", textLines({bad}))));
    bool isInserted = false;
    QObject::connect(other, &ImExActionCtrl::showErrors, other, [&] { delete other.data(); });
    QObject::connect(other, &ImExActionCtrl::insertProjectLineItems, &window, [&] { isInserted = true; });
    QObject::connect(other, &ImExActionCtrl::insertQuoteLineItems, &window, [&] { isInserted = true; });
    QObject::connect(other, &ImExActionCtrl::insertOrderLineItems, &window, [&] { isInserted = true; });
    everything();
    other->findChild<QPushButton*>(QStringLiteral("cmdImportExport"))->click();
    EXPECT_TRUE(other.isNull()) << dataType;
    EXPECT_FALSE(isInserted) << dataType;
    EXPECT_EQ(Texts{}, host.trace->errors()) << dataType;
  }
}

TEST_F(ImExActionCtrlImport, badlyDelimitedLineItemsShowOneBoxOnly) {
  for (const int dataType : {0, 1, 2}) {
    startClientToClient(dataType);
    giveFile({lineItemLine(dataType == 2 ? 6 : 10) + "\tone too many"});
    EXPECT_EQ(readyForClient() +
                  lines(box(48, kMaintenance + " The import file is not properly delimited.\r\n The import has been "
                                               "halted."),
                        kExit),
              import())
        << dataType;
  }
}

TEST_F(ImExActionCtrlImport, hostThatCannotInsertIsReported) {
  startClientToClient(2);
  giveFile({lineItemLine(6)});
  onSignal = [] { throw RuntimeError(70, "desk", "Permission denied"); };
  EXPECT_EQ(readyForClient() + lines("* insertOrderLineItems 1",
                                     "! cmdImportExport_Click cmdExit_Click 70 desk: Permission denied",
                                     box(48, "Error Number: 70 - Permission denied: " + kDefaultPrompt)),
            import());
}

TEST_F(ImExActionCtrlImport, recordsHoldTheFieldsOfTheirLines) {
  startClientToClient(2);
  giveFile({lineItemLine(6)});
  OrderLineItemsPtr items;
  QObject::connect(&panel, &ImExActionCtrl::insertOrderLineItems, &panel,
                   [&](OrderLineItemsPtr& inserted) { items = inserted; });
  import();
  ASSERT_TRUE(items);
  EXPECT_EQ("2", items->item(1)->quantity());
  EXPECT_EQ("Cat-1", items->item(1)->CatalogNumber());
}

// --- Results and exit -----------------------------------------------------------------------------------------------

TEST_F(ImExActionCtrlImport, resultsBeforeAnyImportAreAHint) {
  startClientToServer();
  click("cmdViewErrors");
  EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()",
                   box(64, kMaintenance + "You may review errors and warnings from the last import in the directory "
                                          "where the import data resided in file validationresults.html."),
                   "< panel cmdViewErrors_Click()"}),
            happened());
}

TEST_F(ImExActionCtrlImport, resultsOfTheLastImportAreShown) {
  startClientToServer();
  giveFile({customerLine()});
  import();
  click("cmdViewErrors");
  EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()", "* showDocs " + (host.folder / "validationresults.html"),
                   "< panel cmdViewErrors_Click()"}),
            happened());
}

TEST_F(ImExActionCtrlImport, hostThatCannotShowResultsIsReportedWithTheirPath) {
  startClientToServer();
  giveFile({customerLine()});
  import();
  onSignal = [] { throw RuntimeError(53, "desk", "File not found"); };
  click("cmdViewErrors");
  const std::string page = host.folder / "validationresults.html";
  EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()", "* showDocs " + page,
                   "! panel cmdViewErrors_Click() 53 desk: File not found",
                   box(48, "Error Number: 53 - File not found: An error was encountered while attempting to view the "
                           "import results file " +
                               page + " using your Internet Browser.")}),
            happened());
}

TEST_F(ImExActionCtrlImport, resultsBeforeAModeCallFail) {
  click("cmdViewErrors");
  EXPECT_EQ((Texts{"> panel cmdViewErrors_Click()",
                   "! panel cmdViewErrors_Click() 91 ImExActionCtrl: Object variable not set",
                   box(48, "Error Number: 91 - Object variable not set: An error was encountered while attempting to "
                           "view the import results file  using your Internet Browser.")}),
            happened());
}

TEST_F(ImExActionCtrlImport, exitTellsTheHost) {
  click("cmdExit");
  EXPECT_EQ((Texts{"> panel cmdExit_Click()", "* exitMaintenance", "< panel cmdExit_Click()"}), happened());
}

TEST_F(ImExActionCtrlImport, exitThatFailsShowsNoBox) {
  onSignal = [] { throw RuntimeError(5, "desk", "still busy"); };
  click("cmdExit");
  EXPECT_EQ(
      (Texts{"> panel cmdExit_Click()", "* exitMaintenance", "! ImExActionCtrl cmdExit_Click 5 desk: still busy"}),
      happened());
}

TEST_F(ImExActionCtrlImport, keyboardAloneRunsAnImport) {
  startClientToServer();
  const std::string path = host.folder.write("typed.txt", textLines({customerLine()}));
  QTest::keyClick(&window, Qt::Key_I, Qt::AltModifier);
  QTest::keyClicks(QApplication::focusWidget(), toQt(path));
  QTest::keyClick(&window, Qt::Key_M, Qt::AltModifier);
  // A key presses a button for as long as the eye can see.
  EXPECT_TRUE(QTest::qWaitFor([&] { return host.serviceCall.calls.size() == 1; }));
  EXPECT_EQ("Import complete.", status());
}

} // namespace

} // namespace imex::test
