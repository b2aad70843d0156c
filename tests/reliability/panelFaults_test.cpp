#include "../controls/ImExActionCtrl/PanelTest.h"

#include "FailingCall.h"
#include "Import.h"
#include "module/ImExModule.h"

#include <algorithm>
#include <iostream>
#include <new>
#include <regex>

namespace imex::test {
namespace {

const std::string kUnable = "Corvana Maintenance: Unable to open the file selected. Please try again.";
const std::string kPersists = " If the problem persists please contact technical support.";
const std::string kShown = "* progress Corvana|Performing Import...|";
const std::string kReleased = "* progress released";

/// The panel, pressed with the mouse, over files whose calls fail one after the other.
class PanelFaults : public PanelTest {
 protected:
  using Calls = std::vector<FailingCall::Call>;

  /// What the user sees of an import, in order: boxes, the progress display, and what the host is handed. It is without
  /// the number of column names: each answer leaves one more in the catalogue.
  Texts import() {
    everything();
    click("cmdImportExport");
    Texts lines = happened();
    static const std::regex kNames(" \\.\\.\\. \\d+");
    for (std::string& line : lines)
      line = std::regex_replace(line, kNames, "");
    std::erase_if(lines, [](const std::string& line) { return !line.starts_with("* "); });
    return lines;
  }

  void expectUsable() {
    EXPECT_TRUE(child<QWidget>("cmdImportExport").isEnabled());
    EXPECT_FALSE(panel.testAttribute(Qt::WA_SetCursor));
    EXPECT_EQ(1, ImExModule::openFiles().freeNumber());
    EXPECT_EQ(0, openStreamCount());
    EXPECT_EQ(m_descriptors, openDescriptors());
  }

  /// Fails each of the `count` file calls of an import in turn, once, with an error. `promised` says what the user then
  /// sees, by the opening of the import file that the call belongs to; opening 0 is the results page.
  void failEachCall(const std::string& path, ErrorNumber error, std::size_t count,
                    const std::function<Texts(std::ptrdiff_t opening)>& promised) {
    const std::string bytes = readFile(path);
    const Texts golden = import();
    ASSERT_TRUE(host.trace->errors().empty());
    m_descriptors = openDescriptors();
    std::size_t number = 1;
    for (bool isReached = true; isReached && !HasFailure(); ++number) {
      Texts result;
      Calls calls;
      {
        const FailingCall failing(host.files, number, error);
        result = import();
        isReached = failing.wasReached();
        calls = failing.calls();
      }
      SCOPED_TRACE("call " + std::to_string(number) + " of " + calls.back().name + ' ' + calls.back().path);
      EXPECT_EQ(isReached ? promised(openingOf(calls, path)) : golden, result);
      EXPECT_EQ(bytes, readFile(path));
      expectUsable();
      EXPECT_EQ(golden, import());
      expectUsable();
    }
    EXPECT_EQ(count, number - 2);
    std::cout << "fault points: " << number - 2 << '\n';
  }

 private:
  std::size_t m_descriptors = 0;
};

TEST_F(PanelFaults, eachFileCallOfAnImportFailedOnce_isTold_andTheNextImportIsRight) {
  panel.initializeClientToServer();
  host.serviceCall.result = answer("Import complete.", {{true, customerLine(), "1"}});
  const std::string path = giveFile({customerLine()});
  const auto promised = [&](std::ptrdiff_t opening) -> Texts {
    if (opening == 0) // the verdict is shown all the same
      return {kShown,
              "* box [64] Corvana Maintenance: The server responded, but the results could not be displayed." +
                  kPersists,
              "* showErrors " + path + "|1|1|1|14|Field 1|9", kReleased};
    if (opening <= 2) // before anything is sent
      return {"* box [48] " + kUnable};
    return {kShown, "* box [64] " + kUnable + (opening == 3 ? "" : kPersists), kReleased};
  };
  failEachCall(path, ErrorNumber::deviceIoError, 20, promised);
  failEachCall(path, ErrorNumber::diskFull, 20, promised);
}

TEST_F(PanelFaults, eachFileCallOfLineItemsFailedOnce_isTold_andTheNextImportIsRight) {
  panel.initializeClientToClient();
  panel.setDataType(2);
  const std::string path = giveFile({lineItemLine(kOrderColumns)});
  failEachCall(path, ErrorNumber::permissionDenied, 16, [](std::ptrdiff_t opening) -> Texts {
    if (opening <= 3)
      return {"* box [48] " + kUnable};
    return {"* box [48] Error Number: 70 - Permission denied: The requested operation could not be completed."};
  });
}

TEST_F(PanelFaults, eachFileCallOfACorrectionFailedOnce_isTold_andTheNextImportIsRight) {
  panel.initializeClientToServer();
  host.messageBox.answer = host::Answer::yes;
  const std::string path = giveFile({"only\ttwo"});
  const std::string question =
      "* box [36] Corvana Maintenance: The file you are attempting to import is not properly delimited. It should "
      "contain 13 of your chosen delimiter in each row of the file.\r\nOpening the file within the editor and saving "
      "will correct the error.\r\n\r\n Would you like to correct the file?";
  failEachCall(path, ErrorNumber::deviceIoError, 23, [&](std::ptrdiff_t opening) -> Texts {
    if (opening <= 2)
      return {"* box [48] " + kUnable};
    if (opening > 4) // the editor's check, behind the question
      return {kShown, question, "* box [48] " + kUnable, kReleased};
    return {kShown, "* box [64] " + kUnable + (opening == 3 ? "" : kPersists), kReleased};
  });
}

TEST_F(PanelFaults, serviceThatFails_isTold_theOtherButtonsGoOn_andTheNextPanelsImportIsRight) {
  panel.initializeClientToServer();
  host.serviceCall.result = answer("Import complete.", {{true, customerLine(), "1"}});
  const std::string path = giveFile({customerLine()});
  import();
  const std::string page = host.folder.read("validationresults.html");
  const Texts sent = host.serviceCall.calls.back().lines;
  const std::size_t descriptors = openDescriptors();

  host.serviceCall.error = RuntimeError(1009, "CurlTransport", "The connection was lost");
  EXPECT_EQ((Texts{kShown, kReleased,
                   "* box [48] Error Number: 1009 - The connection was lost: The requested operation could not be "
                   "completed."}),
            import());
  EXPECT_EQ(textLines({customerLine()}), readFile(path));
  EXPECT_EQ(1, ImExModule::openFiles().freeNumber());
  EXPECT_EQ(0, openStreamCount());
  EXPECT_EQ(descriptors, openDescriptors());
  // The button waits for a reply; until then the rest of the panel is there.
  EXPECT_FALSE(child<QWidget>("cmdImportExport").isEnabled());
  click("cmdExit");
  EXPECT_EQ(1, std::ranges::count(everything(), "* exitMaintenance"));

  host.serviceCall.error.reset();
  host.folder.write("validationresults.html", "");
  ImExActionCtrl next;
  next.initializeClientToServer();
  next.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&next));
  next.findChild<QLineEdit*>(QStringLiteral("txtFilePath"))->setText(toQt(path));
  auto* const button = next.findChild<QAbstractButton*>(QStringLiteral("cmdImportExport"));
  everything();
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(0, std::ranges::count_if(everything(), [](const auto& line) { return line.starts_with("* box "); }));
  EXPECT_EQ(sent, host.serviceCall.calls.back().lines);
  EXPECT_EQ(page, host.folder.read("validationresults.html"));
  EXPECT_EQ("Import complete.",
            toCore(next.findChild<QPlainTextEdit*>(QStringLiteral("txtValidationResults"))->toPlainText()));
  EXPECT_TRUE(button->isEnabled());
  EXPECT_EQ(descriptors, openDescriptors());
}

TEST_F(PanelFaults, memoryThatSendDoesNotFind_isTold) {
  panel.initializeClientToServer();
  const std::string path = giveFile({customerLine()});
  host.user.onName = [] { throw std::bad_alloc(); };
  EXPECT_EQ((Texts{kShown, kReleased,
                   "* box [48] Error Number: 7 - Out of memory: The requested operation could not be completed."}),
            import());
  EXPECT_TRUE(host.serviceCall.calls.empty());
  EXPECT_EQ(textLines({customerLine()}), readFile(path));
}

} // namespace
} // namespace imex::test
