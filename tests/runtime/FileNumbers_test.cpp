#include "runtime/FileNumbers.h"
#include "support/memoryFiles.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace imex::test {
namespace {

FileNumbers::OpenSource source(std::string bytes) {
  return [bytes] { return std::make_unique<MemorySource>(bytes); };
}

FileNumbers::OpenSink sink(MemorySink::Record& record) {
  return [&record] { return std::make_unique<MemorySink>(record); };
}

std::string firstLine(TextReader& reader) {
  std::string_view line;
  return reader.readLine(line) ? std::string(line) : "(none)";
}

} // namespace

TEST(FileNumbers, startWithAllNumbersFree) {
  const FileNumbers files;
  EXPECT_EQ(files.freeNumber(), 1);
  EXPECT_FALSE(files.isOpen(1));
}

TEST(FileNumbers, aFileIsReadUnderItsNumber) {
  FileNumbers files;
  TextReader& reader = files.openForInput(1, source("first line\r\nsecond\r\n"));
  EXPECT_TRUE(files.isOpen(1));
  EXPECT_EQ(firstLine(reader), "first line");
}

TEST(FileNumbers, aFileIsWrittenUnderItsNumber) {
  MemorySink::Record record;
  FileNumbers files;
  files.openForOutput(2, sink(record), Encoding::windows1252).writeLine("caf\u00E9");
  EXPECT_TRUE(files.isOpen(2));
  EXPECT_FALSE(files.isOpen(1));
  files.close(2);
  EXPECT_EQ(record.bytes, "caf\xE9\r\n");
  EXPECT_EQ(record.closes, 1);
}

TEST(FileNumbers, theFreeNumberIsTheLowest) {
  MemorySink::Record record;
  FileNumbers files;
  files.openForInput(1, source(""));
  files.openForOutput(2, sink(record), Encoding::utf8);
  files.openForInput(4, source(""));
  EXPECT_EQ(files.freeNumber(), 3);
  files.close(1);
  EXPECT_EQ(files.freeNumber(), 1);
}

TEST(FileNumbers, aNumberInUse_isError55AndOpensNothing) {
  MemorySink::Record record;
  FileNumbers files;
  files.openForInput(1, source("kept\r\n"));
  files.openForOutput(2, sink(record), Encoding::utf8);
  int opened = 0;
  const auto countSource = [&] {
    ++opened;
    return std::make_unique<MemorySource>("");
  };
  const auto countSink = [&] {
    ++opened;
    return std::make_unique<MemorySink>(record);
  };
  for (const int number : {1, 2}) {
    EXPECT_EQ(raisedNumber([&] { files.openForInput(number, countSource); }), 55) << number;
    EXPECT_EQ(raisedNumber([&] { files.openForOutput(number, countSink, Encoding::utf8); }), 55) << number;
  }
  EXPECT_EQ(opened, 0);
  EXPECT_TRUE(files.isOpen(1));
  EXPECT_TRUE(files.isOpen(2));
}

TEST(FileNumbers, afterAnErrorOfOpening_theNumberIsFree) {
  FileNumbers files;
  EXPECT_EQ(raisedNumber([&] {
              files.openForInput(
                  1, []() -> std::unique_ptr<ByteSource> { throw RuntimeError(ErrorNumber::fileNotFound); });
            }),
            53);
  EXPECT_FALSE(files.isOpen(1));
  EXPECT_EQ(raisedNumber([&] {
              files.openForOutput(
                  1, []() -> std::unique_ptr<ByteSink> { throw RuntimeError(ErrorNumber::permissionDenied); },
                  Encoding::utf8);
            }),
            70);
  EXPECT_FALSE(files.isOpen(1));
  EXPECT_EQ(files.freeNumber(), 1);
}

TEST(FileNumbers, afterAnErrorOfTheFirstReading_theNumberIsFree) {
  FileNumbers files;
  EXPECT_EQ(raisedNumber([&] {
              files.openForInput(1, [] {
                auto broken = std::make_unique<MemorySource>("text");
                broken->failAfter = 0;
                return broken;
              });
            }),
            57);
  EXPECT_FALSE(files.isOpen(1));
}

TEST(FileNumbers, closingANumberThatIsNotInUse_doesNothing) {
  FileNumbers files;
  EXPECT_NO_THROW(files.close(1));
  files.openForInput(1, source(""));
  EXPECT_NO_THROW(files.close(2));
  EXPECT_TRUE(files.isOpen(1));
}

TEST(FileNumbers, aClosedNumber_canBeTakenAgain) {
  FileNumbers files;
  files.openForInput(1, source("old\r\n"));
  files.close(1);
  EXPECT_FALSE(files.isOpen(1));
  EXPECT_EQ(firstLine(files.openForInput(1, source("new\r\n"))), "new");
}

TEST(FileNumbers, anErrorOfClosing_passesThroughAndFreesTheNumber) {
  MemorySink::Record record;
  record.closeError = RuntimeError(ErrorNumber::diskFull);
  FileNumbers files;
  files.openForOutput(1, sink(record), Encoding::utf8).writeLine("text");
  EXPECT_EQ(raisedNumber([&] { files.close(1); }), 61);
  EXPECT_FALSE(files.isOpen(1));
}

TEST(FileNumbers, closingAll_freesEveryNumberAndHidesErrors) {
  MemorySink::Record broken;
  broken.closeError = RuntimeError(ErrorNumber::diskFull);
  MemorySink::Record good;
  FileNumbers files;
  files.openForOutput(1, sink(broken), Encoding::utf8).writeLine("lost");
  files.openForInput(2, source(""));
  files.openForOutput(3, sink(good), Encoding::utf8).writeLine("kept");
  EXPECT_NO_THROW(files.closeAll());
  for (const int number : {1, 2, 3})
    EXPECT_FALSE(files.isOpen(number)) << number;
  EXPECT_EQ(files.freeNumber(), 1);
  EXPECT_EQ(good.bytes, "kept\r\n");
  EXPECT_EQ(good.closes, 1);
}

TEST(FileNumbers, whenAll511AreInUse_noneIsFree) {
  FileNumbers files;
  for (int number = 1; number <= 511; ++number) {
    ASSERT_EQ(files.freeNumber(), number);
    files.openForInput(number, source(""));
  }
  const std::optional<RuntimeError> error = raised([&] { files.freeNumber(); });
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number(), 67);
  EXPECT_EQ(error->description(), "Too many files");
  files.close(300);
  EXPECT_EQ(files.freeNumber(), 300);
}

} // namespace imex::test
