#include "module/ImExModule.h"
#include "module/state.h"
#include "support/TestHost.h"
#include "support/memoryFiles.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {
namespace {

namespace fs = std::filesystem;
using ImExModule::getFormatColumnCount;
using ImExModule::getFormatColumns;
using Lines = std::vector<std::string>;

struct Format {
  std::string_view file;
  std::string_view key;
};

/// In the order of reading.
constexpr Format kFormats[] = {
    {"formatagentcustomer.dat", "CUSTOMERAGENT"},   {"formathalvikcustomer.dat", "CUSTOMERHALVIK"},
    {"formatagentproduct.dat", "PRODUCTAGENT"},     {"formatagentproject.dat", "PROJECTLINEITEMAGENT"},
    {"formatagentquote.dat", "QUOTELINEITEMAGENT"}, {"formatagentorder.dat", "ORDERLINEITEMAGENT"},
    {"formatagentinvoice.dat", "INVOICEAGENT"},     {"formatagentcommission.dat", "COMMISSIONAGENT"},
    {"formathalvikballasts.dat", "BALLASTSHALVIK"},
};

class Catalogue : public testing::Test {
 protected:
  Catalogue() {
    // As the module is when the process starts.
    ImExModule::state() = {};
  }

  /// The path under which a format file is opened and named to the user.
  std::string pathOf(std::string_view file) const {
    return host.application.directory + "\\docs\\" + std::string(file);
  }

  /// The box after a failure.
  Box failureBox(std::string_view file, std::string_view title) const { return boxNaming(pathOf(file), title); }
  static Box boxNaming(std::string_view path, std::string_view title) {
    return {"An error was encountered while attempting read dat file (" + std::string(path) +
                ").\r\nSome file types will not be editable. Please contact production support to have this corrected.",
            48, std::string(title)};
  }

  void writeBytes(std::string_view file, std::string_view bytes) const {
    host.folder.write("app/docs/" + std::string(file), bytes);
  }

  /// Writes the customer format of agents, initializes and gives its columns.
  Lines columnsFrom(std::string_view bytes) const {
    writeBytes("formatagentcustomer.dat", bytes);
    ImExModule::initialize();
    const StringsPtr columns = getFormatColumns("CUSTOMERAGENT");
    EXPECT_NE(columns, nullptr);
    EXPECT_EQ(getFormatColumnCount("CUSTOMERAGENT"), columns->count());
    return {columns->begin(), columns->end()};
  }

  /// The calls of the file system but reading, in order: "call path".
  void recordCalls() {
    host.files.before = [this](std::string_view call, std::string_view path) {
      if (call != "read" && call != "rewind")
        calls.push_back(std::string(call) + ' ' + std::string(path));
    };
  }

  TestHost host;
  Lines calls;
};

std::string textOf(const StringsPtr& columns) {
  return columns ? join({columns->begin(), columns->end()}, "|") : "(nothing)";
}

/// The lines "Column 1" to "Column count".
Lines manyColumns(int count) {
  Lines lines;
  for (int i = 1; i <= count; ++i)
    lines.push_back("Column " + std::to_string(i));
  return lines;
}

bool isCurrentDirectory(const fs::path& path) {
  return fs::equivalent(fs::current_path(), path);
}

} // namespace

// --- A complete pass
// --------------------------------------------------------------------------------------------------

TEST_F(Catalogue, beforeInitialize_isEmpty) {
  for (const Format& format : kFormats) {
    EXPECT_EQ(int{getFormatColumnCount(format.key)}, 0) << format.key;
    EXPECT_EQ(getFormatColumns(format.key), nullptr) << format.key;
    EXPECT_FALSE(ImExModule::isFormatCounted(format.key)) << format.key;
  }
  EXPECT_EQ(ImExModule::workingDirectory(), "");
}

TEST_F(Catalogue, eachFormat_isReadFromItsFile) {
  for (const Format& format : kFormats)
    host.writeFormat(format.file, {std::string(format.key), "second of " + std::string(format.file)});
  ImExModule::initialize();
  for (const Format& format : kFormats) {
    EXPECT_EQ(textOf(getFormatColumns(format.key)), std::string(format.key) + "|second of " + std::string(format.file));
    EXPECT_EQ(int{getFormatColumnCount(format.key)}, 2) << format.key;
    EXPECT_TRUE(ImExModule::isFormatCounted(format.key)) << format.key;
  }
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Catalogue, eachFormat_hasAColumnCountOfItsOwn) {
  ImExModule::initialize();
  const int expected[] = {13, 5, 11, 10, 10, 6, 4, 3, 2};
  for (std::size_t i = 0; i < std::size(kFormats); ++i)
    EXPECT_EQ(int{getFormatColumnCount(kFormats[i].key)}, expected[i]) << kFormats[i].key;
}

TEST_F(Catalogue, theFiles_areOpenedInTheOrderOfTheFormats) {
  recordCalls();
  ImExModule::initialize();
  Lines expected = {"workingDirectory ", "changeDirectory " + (host.folder / "work")};
  for (const Format& format : kFormats)
    expected.push_back("openForInput " + pathOf(format.file));
  EXPECT_EQ(calls, expected);
}

TEST_F(Catalogue, onlyOneFileIsOpenAtATime) {
  host.files.before = [](std::string_view call, std::string_view) {
    if (call == "openForInput" || call == "rewind") {
      EXPECT_EQ(openStreamCount(), call == "rewind" ? 1 : 0);
    }
  };
  ImExModule::initialize();
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
}

TEST_F(Catalogue, aFileIsReadUnderNumber1) {
  std::vector<bool> taken;
  host.files.before = [&](std::string_view call, std::string_view) {
    if (call == "openForInput")
      taken.push_back(ImExModule::openFiles().isOpen(1));
  };
  ImExModule::initialize();
  // Before each file number 1 is free again.
  EXPECT_EQ(taken, std::vector<bool>(9, false));
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
}

TEST_F(Catalogue, afterwards_noFileIsOpen) {
  ImExModule::initialize();
  EXPECT_EQ(openStreamCount(), 0);
  EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
}

TEST_F(Catalogue, afterASuccess_aFileOfTheCallerStaysOpen) {
  ImExModule::openFiles().openForInput(2, [] { return std::make_unique<MemorySource>("text"); });
  ImExModule::initialize();
  EXPECT_TRUE(ImExModule::openFiles().isOpen(2));
}

TEST_F(Catalogue, theApplicationDirectory_isAskedForAfreshForEachFile) {
  for (const Format& format : kFormats)
    host.folder.write("other/docs/" + std::string(format.file), "Only column\r\n");
  const std::string first = host.application.directory;
  int opened = 0;
  host.files.before = [&](std::string_view call, std::string_view) {
    if (call == "openForInput" && ++opened == 4)
      host.application.directory = host.folder / "other";
  };
  ImExModule::initialize();
  EXPECT_EQ(host.application.asked, 9);
  EXPECT_EQ(int{getFormatColumnCount("PROJECTLINEITEMAGENT")}, 10);
  EXPECT_EQ(textOf(getFormatColumns("QUOTELINEITEMAGENT")), "Only column");
  EXPECT_EQ(textOf(getFormatColumns("BALLASTSHALVIK")), "Only column");
}

TEST_F(Catalogue, initialize_isTraced) {
  ImExModule::initialize();
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule initialize()", "< ImExModule initialize()"}));
}

TEST_F(Catalogue, aSecondCall_doesNothing) {
  ImExModule::initialize();
  host.writeFormat("formatagentcustomer.dat", {"changed"});
  host.trace->lines.clear();
  host.application.asked = 0;
  fs::current_path(host.folder.path());
  recordCalls();
  ImExModule::initialize();
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule initialize()", "< ImExModule initialize()"}));
  EXPECT_EQ(calls, (Lines{}));
  EXPECT_EQ(host.application.asked, 0);
  EXPECT_EQ(int{getFormatColumnCount("CUSTOMERAGENT")}, 13);
  EXPECT_EQ(getFormatColumns("CUSTOMERAGENT")->count(), 13u);
  EXPECT_TRUE(isCurrentDirectory(host.folder.path()));
}

// --- Format files
// -----------------------------------------------------------------------------------------------------

TEST_F(Catalogue, emptyLines_areSkipped) {
  EXPECT_EQ(columnsFrom("\r\nName\r\n\r\n\r\nCity\r\n\r\n"), (Lines{"Name", "City"}));
}

TEST_F(Catalogue, aLineOfBlanks_isAColumn) {
  EXPECT_EQ(columnsFrom("Name\r\n \r\n\t\r\nCity\r\n"), (Lines{"Name", " ", "\t", "City"}));
}

TEST_F(Catalogue, aLine_isKeptWhole) {
  EXPECT_EQ(columnsFrom("  Name  \r\n# Street, No\r\nCity\tState|Zip\r\n"),
            (Lines{"  Name  ", "# Street, No", "City\tState|Zip"}));
}

TEST_F(Catalogue, theLastLine_needsNoEnd) {
  EXPECT_EQ(columnsFrom("Name\r\nCity"), (Lines{"Name", "City"}));
}

TEST_F(Catalogue, aLoneLineFeed_isNoLineEnd) {
  EXPECT_EQ(columnsFrom("Name\nStreet\r\n\n\r\nCity"), (Lines{"Name\nStreet", "\n", "City"}));
}

TEST_F(Catalogue, accentedNames_areReadInEitherEncoding) {
  EXPECT_EQ(columnsFrom("R\xE9gion\r\n"), (Lines{"R\u00E9gion"}));
  ImExModule::state() = {};
  EXPECT_EQ(columnsFrom("\xEF\xBB\xBFR\u00E9gion\r\n"), (Lines{"R\u00E9gion"}));
}

TEST_F(Catalogue, anEmptyFile_isAFormatWithoutColumns) {
  EXPECT_EQ(columnsFrom(""), (Lines{}));
  EXPECT_TRUE(ImExModule::isFormatCounted("CUSTOMERAGENT"));
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
}

TEST_F(Catalogue, exactly32767Columns_fit) {
  writeBytes("formatagentproduct.dat", "\r\n" + textLines(manyColumns(32767)) + "\r\n\r\n");
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
  EXPECT_EQ(int{getFormatColumnCount("PRODUCTAGENT")}, 32767);
  EXPECT_EQ(getFormatColumns("PRODUCTAGENT")->count(), 32767u);
  EXPECT_EQ(int{getFormatColumnCount("PROJECTLINEITEMAGENT")}, 10);
}

// --- Look-ups
// ---------------------------------------------------------------------------------------------------------

TEST_F(Catalogue, keys_areFoundInAnyCase) {
  ImExModule::initialize();
  EXPECT_EQ(int{getFormatColumnCount("customeragent")}, 13);
  EXPECT_EQ(int{getFormatColumnCount("CustomerAgent")}, 13);
  EXPECT_EQ(getFormatColumns("customeragent"), getFormatColumns("CUSTOMERAGENT"));
  EXPECT_TRUE(ImExModule::isFormatCounted("ballastsHalvik"));
}

TEST_F(Catalogue, anUnknownKey_isSilent) {
  ImExModule::initialize();
  host.trace->lines.clear();
  for (const std::string_view key : {"PRODUCTHALVIK", "CUSTOMER", "", "CUSTOMERAGENT "}) {
    EXPECT_EQ(int{getFormatColumnCount(key)}, 0) << key;
    EXPECT_EQ(getFormatColumns(key), nullptr) << key;
    EXPECT_FALSE(ImExModule::isFormatCounted(key)) << key;
  }
  EXPECT_EQ(host.trace->lines, (Lines{}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
}

TEST_F(Catalogue, lookUps_areNotTraced) {
  ImExModule::initialize();
  host.trace->lines.clear();
  getFormatColumnCount("CUSTOMERAGENT");
  getFormatColumns("CUSTOMERAGENT");
  EXPECT_EQ(host.trace->lines, (Lines{}));
}

TEST_F(Catalogue, aColumnList_isTheCataloguesOwn) {
  ImExModule::initialize();
  const StringsPtr columns = getFormatColumns("BALLASTSHALVIK");
  columns->add("Errors");
  EXPECT_EQ(getFormatColumns("BALLASTSHALVIK"), columns);
  EXPECT_EQ(textOf(getFormatColumns("BALLASTSHALVIK")), "Field 1|Field 2|Errors");
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
  ImExModule::initialize();
  EXPECT_EQ(textOf(getFormatColumns("BALLASTSHALVIK")), "Field 1|Field 2|Errors");
}

TEST_F(Catalogue, formats_shareNoColumnList) {
  ImExModule::initialize();
  getFormatColumns("PROJECTLINEITEMAGENT")->add("Errors");
  EXPECT_EQ(getFormatColumns("QUOTELINEITEMAGENT")->count(), 10u);
}

// --- Working directory
// ------------------------------------------------------------------------------------------------

TEST_F(Catalogue, theWorkingDirectory_becomesTheCurrentOne) {
  ImExModule::initialize();
  EXPECT_EQ(ImExModule::workingDirectory(), (host.folder / "work") + "/");
  EXPECT_TRUE(isCurrentDirectory(host.folder / "work"));
}

TEST_F(Catalogue, aWorkingDirectoryThatIsMissing_isCreatedAndNotEntered) {
  host.files.working = (host.folder / "new/temp") + "/";
  const fs::path before = fs::current_path();
  host.files.before = [this](std::string_view call, std::string_view path) {
    if (call == "changeDirectory" || call == "makeDirectory")
      calls.push_back(std::string(call) + ' ' + std::string(path));
  };
  ImExModule::initialize();
  EXPECT_EQ(calls,
            (Lines{"changeDirectory " + (host.folder / "new/temp"), "makeDirectory " + (host.folder / "new/temp")}));
  EXPECT_TRUE(fs::is_directory(host.folder / "new/temp"));
  EXPECT_TRUE(isCurrentDirectory(before));
  EXPECT_EQ(ImExModule::workingDirectory(), (host.folder / "new/temp") + "/");
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule initialize()", "< ImExModule initialize()"}));
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
}

TEST_F(Catalogue, aWorkingDirectoryThatCannotBeMade_isIgnored) {
  host.files.before = [](std::string_view call, std::string_view) {
    if (call == "changeDirectory")
      throw RuntimeError(ErrorNumber::pathNotFound);
    if (call == "makeDirectory")
      throw RuntimeError(-2147467259, "Host", "a number past 16 bits");
  };
  ImExModule::initialize();
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule initialize()", "< ImExModule initialize()"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
  EXPECT_EQ(ImExModule::workingDirectory(), (host.folder / "work") + "/");
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
}

// --- A pass that fails
// ------------------------------------------------------------------------------------------------

TEST_F(Catalogue, afterAMissingFile_theFormatsBeforeItAreKnown) {
  for (std::size_t missing = 0; missing < std::size(kFormats); ++missing) {
    SCOPED_TRACE(kFormats[missing].file);
    ImExModule::state() = {};
    host.messageBox.boxes.clear();
    host.trace->lines.clear();
    const fs::path file = host.folder.path() / "app/docs" / kFormats[missing].file;
    const std::string bytes = readFile(file);
    fs::remove(file);

    ImExModule::initialize();

    EXPECT_EQ(host.messageBox.boxes,
              (std::vector<Box>{failureBox(kFormats[missing].file, "Error Number: 53 - File not found")}));
    ASSERT_EQ(host.trace->lines.size(), 2u);
    EXPECT_EQ(host.trace->lines[0], "> ImExModule initialize()");
    EXPECT_TRUE(host.trace->lines[1].starts_with("! ImExModule initialize 53 ")) << host.trace->lines[1];
    for (std::size_t i = 0; i < std::size(kFormats); ++i) {
      EXPECT_EQ(getFormatColumns(kFormats[i].key) != nullptr, i < missing) << kFormats[i].key;
      EXPECT_EQ(getFormatColumnCount(kFormats[i].key) != 0, i < missing) << kFormats[i].key;
      EXPECT_EQ(ImExModule::isFormatCounted(kFormats[i].key), i < missing) << kFormats[i].key;
    }
    EXPECT_EQ(openStreamCount(), 0);
    EXPECT_EQ(ImExModule::openFiles().freeNumber(), 1);
    EXPECT_FALSE(ImExModule::state().catalogueLoaded);
    writeBytes(kFormats[missing].file, bytes);
  }
}

TEST_F(Catalogue, withoutADocsFolder_thePathIsNotFound) {
  fs::remove_all(host.folder.path() / "app/docs");
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{failureBox("formatagentcustomer.dat", "Error Number: 76 - Path not found")}));
}

TEST_F(Catalogue, aFolderInPlaceOfAFile_isAnAccessError) {
  fs::remove(host.folder.path() / "app/docs/formatagentquote.dat");
  fs::create_directory(host.folder.path() / "app/docs/formatagentquote.dat");
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{failureBox("formatagentquote.dat", "Error Number: 75 - Path/File access error")}));
}

TEST_F(Catalogue, anErrorWhileReading_isReported) {
  host.files.before = [](std::string_view call, std::string_view path) {
    if (call == "read" && path.ends_with("formatagentorder.dat"))
      throw RuntimeError(ErrorNumber::deviceIoError, "Files");
  };
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{failureBox("formatagentorder.dat", "Error Number: 57 - Device I/O error")}));
  EXPECT_EQ(host.trace->lines,
            (Lines{"> ImExModule initialize()", "! ImExModule initialize 57 Files: Device I/O error"}));
  EXPECT_EQ(int{getFormatColumnCount("QUOTELINEITEMAGENT")}, 10);
  EXPECT_EQ(getFormatColumns("ORDERLINEITEMAGENT"), nullptr);
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(Catalogue, moreThan32767Columns_overflow) {
  writeBytes("formatagentproduct.dat", textLines(manyColumns(32768)));
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{failureBox("formatagentproduct.dat", "Error Number: 6 - Overflow")}));
  EXPECT_EQ(int{getFormatColumnCount("CUSTOMERHALVIK")}, 5);
  EXPECT_EQ(getFormatColumns("PRODUCTAGENT"), nullptr);
  EXPECT_EQ(int{getFormatColumnCount("PRODUCTAGENT")}, 0);
  EXPECT_EQ(openStreamCount(), 0);
}

TEST_F(Catalogue, aTraceLogThatFails_closesEveryFileToo) {
  ImExModule::openFiles().openForInput(7, [] { return std::make_unique<MemorySource>("text"); });
  host.trace->onTrace = [] { throw RuntimeError(ErrorNumber::diskFull, "Log"); };
  ImExModule::initialize();
  host.trace->onTrace = [] {};
  EXPECT_FALSE(ImExModule::openFiles().isOpen(7));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{boxNaming("", "Error Number: 61 - Disk full")}));
}

TEST_F(Catalogue, withoutAnApplication_theFileIsNamedWithoutItsFolder) {
  host.services.application = nullptr;
  host.install();
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{boxNaming("\\docs\\formatagentcustomer.dat",
                                                               "Error Number: 429 - Component can't create object")}));
}

TEST_F(Catalogue, aDirectoryThatCannotBeAskedFor_isThatOfTheFileWhoseTurnItIs) {
  class FailingApplication : public FakeApplication {
   public:
    std::string path() const override {
      std::string path = FakeApplication::path();
      if (asked == 4)
        throw RuntimeError(ErrorNumber::permissionDenied, "Application");
      return path;
    }
  } application;
  application.directory = host.application.directory;
  host.services.application = &application;
  host.install();
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{boxNaming("\\docs\\formatagentproject.dat", "Error Number: 70 - Permission denied")}));
  EXPECT_EQ(int{getFormatColumnCount("PRODUCTAGENT")}, 11);
  EXPECT_EQ(getFormatColumns("PROJECTLINEITEMAGENT"), nullptr);
}

TEST_F(Catalogue, fileNumber1InUse_isReportedAndClosed) {
  ImExModule::openFiles().openForInput(1, [] { return std::make_unique<MemorySource>("text"); });
  ImExModule::openFiles().openForInput(7, [] { return std::make_unique<MemorySource>("text"); });
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes,
            (std::vector<Box>{failureBox("formatagentcustomer.dat", "Error Number: 55 - File already open")}));
  // A failure closes every file, whoever opened it.
  EXPECT_FALSE(ImExModule::openFiles().isOpen(1));
  EXPECT_FALSE(ImExModule::openFiles().isOpen(7));
}

TEST_F(Catalogue, afterAFailure_filesAreClosedThenTheErrorIsRecordedThenTheBoxIsShown) {
  struct Log : RecordingTraceLog {
    void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                  std::int32_t line) override {
      openFilesAtRecord = openStreamCount();
      boxesAtRecord = box->boxes.size();
      RecordingTraceLog::LogError(source, procedure, error, line);
    }
    FakeMessageBox* box = nullptr;
    int openFilesAtRecord = -1;
    std::size_t boxesAtRecord = 99;
  };
  const auto log = std::make_shared<Log>();
  log->box = &host.messageBox;
  host.services.createTraceLog = [&] { return log; };
  host.install();
  writeBytes("formatagentproduct.dat", textLines(manyColumns(32768)));
  ImExModule::initialize();
  EXPECT_EQ(log->openFilesAtRecord, 0);
  EXPECT_EQ(log->boxesAtRecord, 0u);
  EXPECT_EQ(host.messageBox.boxes.size(), 1u);
}

TEST_F(Catalogue, anErrorNumberPast16Bits_escapesAsAnOverflow) {
  host.files.before = [](std::string_view call, std::string_view path) {
    if (call == "openForInput" && path.ends_with("formatagentorder.dat"))
      throw RuntimeError(-2147467259, "Host", "Unspecified error");
  };
  EXPECT_EQ(raisedNumber([] { ImExModule::initialize(); }), 6);
  EXPECT_EQ(host.trace->lines, (Lines{"> ImExModule initialize()"}));
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
  EXPECT_EQ(int{getFormatColumnCount("QUOTELINEITEMAGENT")}, 10);
}

TEST_F(Catalogue, aSecondCallAfterAFailure_failsAtTheFirstFormat) {
  fs::remove(host.folder.path() / "app/docs/formatagentquote.dat");
  ImExModule::initialize();
  host.writeFormat("formatagentquote.dat", columnNames(10));
  host.writeFormat("formatagentcustomer.dat", {"new"});
  for (int call = 2; call <= 3; ++call) {
    SCOPED_TRACE(call);
    host.messageBox.boxes.clear();
    host.trace->lines.clear();
    calls.clear();
    recordCalls();
    ImExModule::initialize();
    EXPECT_EQ(host.messageBox.boxes,
              (std::vector<Box>{failureBox(
                  "formatagentcustomer.dat",
                  "Error Number: 457 - This key is already associated with an element of this collection")}));
    EXPECT_EQ(calls, (Lines{"workingDirectory ", "changeDirectory " + (host.folder / "work"),
                            "openForInput " + pathOf("formatagentcustomer.dat")}));
    ASSERT_EQ(host.trace->lines.size(), 2u);
    EXPECT_TRUE(host.trace->lines[1].starts_with("! ImExModule initialize 457 ")) << host.trace->lines[1];
    // The catalogue began anew, the counts did not.
    EXPECT_EQ(textOf(getFormatColumns("CUSTOMERAGENT")), "new");
    EXPECT_EQ(getFormatColumns("CUSTOMERHALVIK"), nullptr);
    EXPECT_EQ(getFormatColumns("PROJECTLINEITEMAGENT"), nullptr);
    EXPECT_EQ(int{getFormatColumnCount("CUSTOMERAGENT")}, 13);
    EXPECT_EQ(int{getFormatColumnCount("CUSTOMERHALVIK")}, 5);
    EXPECT_EQ(int{getFormatColumnCount("PROJECTLINEITEMAGENT")}, 10);
    EXPECT_EQ(int{getFormatColumnCount("QUOTELINEITEMAGENT")}, 0);
    EXPECT_EQ(openStreamCount(), 0);
  }
}

TEST_F(Catalogue, whenTheFirstFileWasMissing_aSecondCallSucceeds) {
  fs::remove(host.folder.path() / "app/docs/formatagentcustomer.dat");
  ImExModule::initialize();
  host.writeFormat("formatagentcustomer.dat", columnNames(13));
  host.messageBox.boxes.clear();
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes, (std::vector<Box>{}));
  EXPECT_EQ(getFormatColumns("CUSTOMERAGENT")->count(), 13u);
  EXPECT_EQ(int{getFormatColumnCount("CUSTOMERAGENT")}, 13);
  EXPECT_EQ(int{getFormatColumnCount("BALLASTSHALVIK")}, 2);
  EXPECT_EQ(host.trace->lines.back(), "< ImExModule initialize()");
}

TEST_F(Catalogue, theColumnListOfTheFailingFormat_keepsTheLinesReadBeforeTheError) {
  writeBytes("formatagentcustomer.dat", textLines(manyColumns(32768)));
  ImExModule::initialize();
  ASSERT_EQ(host.messageBox.boxes.size(), 1u);
  host.writeFormat("formatagentcustomer.dat", {"Name", "City", "Zip"});
  ImExModule::initialize();
  EXPECT_EQ(host.messageBox.boxes.size(), 1u);
  const StringsPtr columns = getFormatColumns("CUSTOMERAGENT");
  ASSERT_NE(columns, nullptr);
  ASSERT_EQ(columns->count(), 32771u);
  EXPECT_EQ(columns->item(1), "Column 1");
  EXPECT_EQ(columns->item(32768), "Column 32768");
  EXPECT_EQ(columns->item(32769), "Name");
  EXPECT_EQ(columns->item(32771), "Zip");
  EXPECT_EQ(int{getFormatColumnCount("CUSTOMERAGENT")}, 3);
}

} // namespace imex::test
