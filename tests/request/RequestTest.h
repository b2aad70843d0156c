#pragma once

#include "request/ImExRequest.h"
#include "support/TestHost.h"
#include "support/raised.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// What editImportFile brought.
struct Edit {
  std::string message;
  int rows;
  int columns;
  std::string fileName;
  StringsPtr headers;
  int delimiterAscii;
};

/// What showErrors brought.
struct Shown {
  std::string fileName;
  std::vector<Texts> lines; ///< the fields of each
  Texts messages;           ///< "row: message"
  int count;
  int columns;
  StringsPtr headers;
  int delimiterAscii;
};

/// A request among the fakes, with the catalogue loaded. It keeps the request's events and, at the end of the test,
/// fails it for what the test did not expect: an error record, a box, a file that is still open, a changed import file.
class RequestTest : public testing::Test {
 protected:
  RequestTest();
  void TearDown() override;

  /// Sets type and layout, delimiter, direction, schedule and the results folder, and forgets the trace of that.
  void configure(std::string_view dataType, std::string_view dataOrigin, std::string_view delimiter = "PIPE");

  /// Writes the import file and makes it the request's. Its bytes must be the same at the end.
  void importFile(std::string_view bytes);

  /// The import file's full path.
  std::string importPath() const { return host.folder / "import.txt"; }

  /// The bytes of the results page.
  std::string page() const { return host.folder.read("out/validationresults.html"); }
  bool isPageWritten() const;

  /// Fails reading of the import file: the `reads`th call of read after the last rewind of the `openings`th opening;
  /// with 0 reads the opening itself.
  void failReading(int openings, int reads, const RuntimeError& error);

  /// The trace lines of one procedure: "Serialize()".
  Texts traceOf(std::string_view procedure) const;

  /// The trace lines without those of accessors: what the request did, step by step.
  Texts steps() const;

  /// Whether no import file is open, under number 1 or any other.
  static bool isEverythingClosed();

  TestHost host;
  ImExRequest request;
  Texts events;                                    ///< each event by its name, with the text of those that have one
  std::vector<Edit> edits;                         ///< the arguments of editImportFile
  std::vector<Shown> shown;                        ///< the arguments of showErrors
  std::vector<std::shared_ptr<ImExReply>> replies; ///< the arguments of MessageReceived
  Texts expectedErrors;                            ///< the error records of the test, "! source procedure ..."
  std::vector<Box> expectedBoxes;

 private:
  void connectEvents();

  std::string m_importBytes;
  bool m_hasImportFile = false;
};

/// The box that asks whether to correct the file.
Box questionBox(std::string_view finding);

/// What a row with the wrong number of fields is told.
std::string delimiterFinding(int expectedFields);

/// The record of the column count's look-up under a key that the catalogue does not hold.
inline constexpr const char* kUnknownFormat =
    "! ImExRequest setTabCount 5 ImExRequest: Invalid procedure call or argument";

inline constexpr std::string_view kUnreadable = "Unable to open the file selected. Please try again.";

/// A customer row of 13 and a product row of 11 fields that pass every check, joined by "|".
std::string customerLine(std::string_view firm = "Firm", std::string_view customerType = "Dist");
std::string productLine(std::string_view catalogNumber = "C-1");

/// The line `count` times, each ended by CR LF.
std::string repeated(std::string_view line, int count);

} // namespace imex::test
