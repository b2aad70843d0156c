#include "../controls/ImExActionCtrl/PanelTest.h"

#include "module/ImExModule.h"

#include <algorithm>
#include <iostream>
#include <regex>

namespace imex::test {
namespace {

/// The panel, pressed with the mouse, over files whose calls fail one after the other.
class PanelFaults : public PanelTest {
 protected:
  /// What the panel did, without the number of column names: each answer leaves one more in the catalogue.
  Texts import() {
    everything();
    click("cmdImportExport");
    Texts lines = happened();
    static const std::regex kNames(" \\.\\.\\. \\d+");
    for (std::string& line : lines)
      line = std::regex_replace(line, kNames, "");
    return lines;
  }

  static Texts without(char mark, Texts lines) {
    std::erase_if(lines, [&](const std::string& line) { return line.front() == mark; });
    return lines;
  }

  static bool isTold(const std::string& line) { return line.starts_with("* box "); }

  void expectUsable() {
    EXPECT_TRUE(child<QWidget>("cmdImportExport").isEnabled());
    EXPECT_FALSE(panel.testAttribute(Qt::WA_SetCursor));
    EXPECT_EQ(1, ImExModule::openFiles().freeNumber());
    EXPECT_EQ(0, openStreamCount());
  }

  /// Fails each file call of an import in turn, once, with an error.
  void failEachCall(const std::string& path, ErrorNumber error) {
    const std::string bytes = readFile(path);
    const Texts golden = import();
    ASSERT_TRUE(host.trace->errors().empty());
    std::size_t number = 1;
    for (bool isReached = true; isReached && !HasFailure(); ++number) {
      SCOPED_TRACE(number);
      std::size_t calls = 0;
      host.files.before = [&](auto, auto) {
        if (++calls == number)
          throw RuntimeError(error, "DiskFiles");
      };
      const Texts result = import();
      host.files.before = [](auto, auto) {};
      isReached = calls >= number;
      EXPECT_EQ(isReached, result != golden);
      EXPECT_EQ(isReached, std::any_of(result.begin(), result.end(), isTold));
      EXPECT_EQ(bytes, readFile(path));
      expectUsable();
      EXPECT_EQ(golden, import());
      expectUsable();
    }
    std::cout << "fault points: " << number - 2 << '\n';
  }
};

TEST_F(PanelFaults, eachFileCallOfAnImportFailedOnce_isTold_andTheNextImportIsRight) {
  panel.initializeClientToServer();
  host.serviceCall.result = answer("Import complete.", {{true, customerLine(), "1"}});
  const std::string path = giveFile({customerLine()});
  failEachCall(path, ErrorNumber::deviceIoError);
  failEachCall(path, ErrorNumber::diskFull);
}

TEST_F(PanelFaults, eachFileCallOfLineItemsFailedOnce_isTold_andTheNextImportIsRight) {
  panel.initializeClientToClient();
  panel.setDataType(2);
  failEachCall(giveFile({lineItemLine(kOrderColumns)}), ErrorNumber::permissionDenied);
}

TEST_F(PanelFaults, eachFileCallOfACorrectionFailedOnce_isTold) {
  panel.initializeClientToServer();
  host.messageBox.answer = host::Answer::yes;
  const std::string path = giveFile({"only\ttwo"});
  const Texts golden = import();
  std::size_t number = 1;
  for (bool isReached = true; isReached && !HasFailure(); ++number) {
    SCOPED_TRACE(number);
    std::size_t calls = 0;
    host.files.before = [&](auto, auto) {
      if (++calls == number)
        throw RuntimeError(ErrorNumber::deviceIoError, "DiskFiles");
    };
    const Texts result = import();
    host.files.before = [](auto, auto) {};
    isReached = calls >= number;
    EXPECT_EQ(isReached, result != golden);
    EXPECT_EQ("only\ttwo\r\n", readFile(path));
    expectUsable();
    EXPECT_EQ(golden, import());
  }
  std::cout << "fault points: " << number - 2 << '\n';
}

TEST_F(PanelFaults, serviceThatFails_isTold_andTheOtherButtonsGoOn) {
  panel.initializeClientToServer();
  const std::string path = giveFile({customerLine()});
  host.serviceCall.error = RuntimeError(1009, "CurlTransport", "The connection was lost");
  const Texts result = import();
  EXPECT_EQ(1, std::count(result.begin(), result.end(),
                          "* box [48] Error Number: 1009 - The connection was lost: The requested operation could not "
                          "be completed."));
  EXPECT_EQ(textLines({customerLine()}), readFile(path));
  EXPECT_EQ(1, ImExModule::openFiles().freeNumber());
  // The button waits for a reply; until then the rest of the panel is there.
  EXPECT_FALSE(child<QWidget>("cmdImportExport").isEnabled());
  everything();
  click("cmdExit");
  EXPECT_EQ(1, std::ranges::count(happened(), "* exitMaintenance"));
}

} // namespace
} // namespace imex::test
