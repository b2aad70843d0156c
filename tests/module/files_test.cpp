#include "module/ImExModule.h"
#include "support/TestHost.h"
#include "support/memoryFiles.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

using ImExModule::checkFileExists;
using ImExModule::InputFile;
using ImExModule::OutputFile;
using Lines = std::vector<std::string>;

class ModuleFiles : public testing::Test {
 protected:
  ModuleFiles() { ImExModule::openFiles().closeAll(); }
  ~ModuleFiles() override { ImExModule::openFiles().closeAll(); }

  /// A file of the caller, open under `number`.
  static void takeNumber(int number) {
    ImExModule::openFiles().openForInput(number, [] { return std::make_unique<MemorySource>("the caller's\r\n"); });
  }

  /// Makes every call of this name fail.
  void failOn(std::string_view failing, RuntimeError error) {
    host.files.before = [failing, error](std::string_view call, std::string_view) {
      if (call == failing)
        throw error;
    };
  }

  TestHost host;
};

using CheckFileExists = ModuleFiles;
using InputFiles = ModuleFiles;
using OutputFiles = ModuleFiles;

Lines linesOf(InputFile& file) {
  Lines lines;
  std::string_view line;
  while (file.readLine(line))
    lines.emplace_back(line);
  return lines;
}

} // namespace

TEST_F(CheckFileExists, aFile_exists) {
  const std::string path = host.folder.write("customers.txt", "a|b\r\n");
  EXPECT_TRUE(checkFileExists(path));
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule checkFileExists(fileName = " + path + ")",
                                      "< ImExModule checkFileExists(fileName = " + path + ")"}));
}

TEST_F(CheckFileExists, anEmptyFile_exists) {
  EXPECT_TRUE(checkFileExists(host.folder.write("empty.txt", "")));
}

TEST_F(CheckFileExists, eitherSeparatorAndAnyCase_willDo) {
  host.folder.write("Data/Customers.txt", "");
  EXPECT_TRUE(checkFileExists(host.folder.path().string() + "\\data\\CUSTOMERS.TXT"));
}

TEST_F(CheckFileExists, theFile_isClosedAgain) {
  const std::string path = host.folder.write("customers.txt", "a|b\r\n");
  EXPECT_TRUE(checkFileExists(path));
  EXPECT_TRUE(checkFileExists(path));
  EXPECT_EQ(openStreamCount(), 0);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(CheckFileExists, aMissingFile_doesNot) {
  const std::string path = host.folder / "missing.txt";
  EXPECT_FALSE(checkFileExists(path));
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule checkFileExists(fileName = " + path + ")"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(CheckFileExists, whatIsNoFile_doesNot) {
  EXPECT_FALSE(checkFileExists(host.folder.path().string()));
  EXPECT_FALSE(checkFileExists(host.folder.path().string() + "/"));
  EXPECT_FALSE(checkFileExists(host.folder / "no folder/customers.txt"));
  EXPECT_FALSE(checkFileExists(""));
  EXPECT_EQ(host.trace->errors(), (Lines{}));
}

TEST_F(CheckFileExists, aFileWithoutAccess_doesNot) {
  const std::string path = host.folder.write("customers.txt", "");
  failOn("openForInput", RuntimeError(ErrorNumber::permissionDenied));
  EXPECT_FALSE(checkFileExists(path));
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule checkFileExists(fileName = " + path + ")"}));
}

TEST_F(CheckFileExists, whileNumber1IsInUse_isFalseAndLeavesTheCallersFile) {
  const std::string path = host.folder.write("customers.txt", "");
  host.files.before = [](std::string_view call, std::string_view) { ADD_FAILURE() << call; };
  takeNumber(1);
  EXPECT_FALSE(checkFileExists(path));
  EXPECT_TRUE(ImExModule::openFiles().isOpen(1));
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule checkFileExists(fileName = " + path + ")"}));
}

TEST_F(CheckFileExists, whileAnotherNumberIsInUse_works) {
  takeNumber(2);
  EXPECT_TRUE(checkFileExists(host.folder.write("customers.txt", "")));
}

TEST_F(CheckFileExists, anyErrorAtAll_isFalse) {
  const std::string path = host.folder.write("customers.txt", "");
  failOn("openForInput", RuntimeError(-2147467259, "Host", "a number past 16 bits"));
  EXPECT_FALSE(checkFileExists(path));
  host.files.before = [](std::string_view, std::string_view) { throw std::runtime_error("other"); };
  EXPECT_FALSE(checkFileExists(path));
  host.files.before = [](std::string_view, std::string_view) {};
  host.services.files = nullptr;
  host.install();
  EXPECT_FALSE(checkFileExists(path));
  EXPECT_EQ(host.trace->errors(), (Lines{}));
}

TEST_F(CheckFileExists, aTraceLogThatFails_isFalse) {
  const std::string path = host.folder.write("customers.txt", "");
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull); };
  EXPECT_FALSE(checkFileExists(path));
  EXPECT_EQ(host.trace->lines, (Lines{}));
}

TEST_F(InputFiles, isReadLineByLine) {
  InputFile file(host.folder.write("a.txt", "first\r\n\r\ncaf\xE9"));
  EXPECT_EQ(linesOf(file), (Lines{"first", "", "caf\u00E9"}));
}

TEST_F(InputFiles, takesTheLowestFreeNumber) {
  const std::string path = host.folder.write("a.txt", "a");
  takeNumber(1);
  takeNumber(3);
  const InputFile file(path);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 4);
}

TEST_F(InputFiles, takesTheNumberThatItIsGiven) {
  const InputFile file(host.folder.write("a.txt", "a"), 5);
  EXPECT_TRUE(ImExModule::openFiles().isOpen(5));
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
}

TEST_F(InputFiles, thatGoes_isClosed) {
  {
    const InputFile file(host.folder.write("a.txt", "a"), 1);
    EXPECT_EQ(openStreamCount(), 1);
  }
  EXPECT_EQ(openStreamCount(), 0);
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
}

TEST_F(InputFiles, aNumberInUse_isError55AndLeavesTheOtherFile) {
  const std::string path = host.folder.write("a.txt", "a");
  InputFile first(path, 1);
  EXPECT_EQ(raisedNumber([&] { InputFile(path, 1); }), 55);
  EXPECT_EQ(linesOf(first), (Lines{"a"}));
}

TEST_F(InputFiles, errorsOfOpening_passThrough) {
  EXPECT_EQ(raisedNumber([&] { InputFile(host.folder / "missing.txt"); }), 53);
  EXPECT_EQ(raisedNumber([&] { InputFile(host.folder / "missing.txt", 1); }), 53);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(InputFiles, withoutFiles_isError429) {
  host.services.files = nullptr;
  host.install();
  EXPECT_EQ(raisedNumber([&] { InputFile(host.folder / "a.txt"); }), 429);
}

TEST_F(InputFiles, isNotTraced) {
  const InputFile file(host.folder.write("a.txt", "a"));
  EXPECT_EQ(host.trace->lines, (Lines{}));
}

TEST_F(OutputFiles, isWrittenLineByLine) {
  OutputFile file(host.folder / "out.txt");
  file.writeLine("first");
  file.writeLine("caf\u00E9");
  file.close();
  EXPECT_EQ(host.folder.read("out.txt"), "first\r\ncaf\u00E9\r\n");
}

TEST_F(OutputFiles, isWrittenInItsEncoding) {
  OutputFile file(host.folder / "out.txt", Encoding::windows1252);
  file.writeLine("caf\u00E9");
  EXPECT_EQ(raisedNumber([&] { file.writeLine("\u0416"); }), 5);
  file.close();
  EXPECT_EQ(host.folder.read("out.txt"), "caf\xE9\r\n");
}

TEST_F(OutputFiles, replacesWhatWasThere) {
  host.folder.write("out.txt", "a much longer text than the new one");
  OutputFile file(host.folder / "out.txt");
  file.writeLine("new");
  file.close();
  EXPECT_EQ(host.folder.read("out.txt"), "new\r\n");
}

TEST_F(OutputFiles, takesTheLowestFreeNumberUntilItIsClosed) {
  takeNumber(1);
  OutputFile file(host.folder / "out.txt");
  EXPECT_TRUE(ImExModule::openFiles().isOpen(2));
  file.close();
  EXPECT_FALSE(ImExModule::openFiles().isOpen(2));
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(OutputFiles, thatGoes_isWrittenAndClosed) {
  OutputFile(host.folder / "out.txt").writeLine("text");
  EXPECT_EQ(host.folder.read("out.txt"), "text\r\n");
  EXPECT_EQ(openStreamCount(), 0);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(OutputFiles, anErrorOfTheLastBytes_reachesTheCallerOfClose) {
  failOn("write", RuntimeError(ErrorNumber::diskFull));
  OutputFile file(host.folder / "out.txt");
  file.writeLine("text");
  EXPECT_EQ(raisedNumber([&] { file.close(); }), 61);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(OutputFiles, withoutClose_anErrorOfTheLastBytesIsLost) {
  failOn("close", RuntimeError(ErrorNumber::diskFull));
  EXPECT_NO_THROW(OutputFile(host.folder / "out.txt").writeLine("text"));
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(OutputFiles, errorsOfOpening_passThrough) {
  EXPECT_EQ(raisedNumber([&] { OutputFile(host.folder / "no folder/out.txt"); }), 76);
  EXPECT_EQ(raisedNumber([&] { OutputFile(host.folder.path().string()); }), 75);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

} // namespace imex::test
