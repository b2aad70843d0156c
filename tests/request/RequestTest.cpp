#include "RequestTest.h"

#include "module/ImExModule.h"

#include <filesystem>
#include <functional>
#include <set>
#include <utility>

namespace imex::test {

RequestTest::RequestTest() {
  ImExModule::initialize();
  host.folder.write("out/other.txt", "");
  host.trace->lines.clear();
  connectEvents();
}

void RequestTest::connectEvents() {
  request.MessageReceived.connect([this](const std::shared_ptr<ImExReply>& reply) {
    events.emplace_back("MessageReceived");
    replies.push_back(reply);
  });
  request.editImportFile.connect([this](std::string& message, Integer& rows, Integer& columns, std::string& fileName,
                                        StringsPtr& headers, Integer& delimiterAscii) {
    events.emplace_back("editImportFile");
    edits.push_back({message, rows, columns, fileName, headers, delimiterAscii});
  });
  request.SerializationFailed.connect(
      [this](const std::string& message) { events.push_back("SerializationFailed: " + message); });
  request.showErrors.connect([this](std::string& fileName, RowsPtr& lines, ErrorBeansPtr& rows, Integer& count,
                                    Integer& columns, StringsPtr& headers, Integer& delimiterAscii) {
    events.emplace_back("showErrors");
    Shown arguments{fileName, {}, {}, count, columns, headers, delimiterAscii};
    for (const StringsPtr& line : *lines)
      arguments.lines.push_back(texts(line));
    for (const auto& row : *rows)
      arguments.messages.push_back(toText(row->RowNumber()) + ": " + row->RowError());
    shown.push_back(std::move(arguments));
  });
}

void RequestTest::TearDown() {
  EXPECT_EQ(host.trace->errors(), expectedErrors);
  EXPECT_EQ(host.messageBox.boxes, expectedBoxes);
  EXPECT_TRUE(isEverythingClosed());
  if (m_hasImportFile) {
    EXPECT_EQ(readFile(importPath()), m_importBytes);
  }
}

void RequestTest::configure(std::string_view dataType, std::string_view dataOrigin, std::string_view delimiter) {
  request.DataOrigin(std::string(dataOrigin));
  request.DataType(std::string(dataType));
  request.Delimiter(std::string(delimiter));
  request.ImportExport("IMPORT");
  request.Schedule("INSTANT");
  request.Directory(host.folder / "out/");
  request.CheckedFileName(importPath());
  host.trace->lines.clear();
}

void RequestTest::importFile(std::string_view bytes) {
  host.folder.write("import.txt", bytes);
  request.CheckedFileName(importPath());
  m_importBytes = bytes;
  m_hasImportFile = true;
}

bool RequestTest::isPageWritten() const {
  return std::filesystem::exists(host.folder / "out/validationresults.html");
}

void RequestTest::failReading(int openings, int reads, const RuntimeError& error) {
  host.files.before = [this, openings, reads, error, opened = 0, rewound = false,
                       read = 0](std::string_view call, std::string_view path) mutable {
    if (path != importPath())
      return;
    if (call == "openForInput") {
      ++opened;
      rewound = false;
      read = 0;
    } else if (call == "rewind") {
      rewound = true;
    } else if (call == "read" && rewound) {
      ++read;
    }
    if (opened == openings && read == reads)
      throw error;
  };
}

Texts RequestTest::traceOf(std::string_view procedure) const {
  Texts result;
  for (const std::string& line : host.trace->lines) {
    if (line.ends_with(" " + std::string(procedure)))
      result.push_back(line);
  }
  return result;
}

Texts RequestTest::steps() const {
  static const std::set<std::string, std::less<>> kAccessors = {
      "setTabCount()", "tabCount()",         "DelimiterAscii()", "rowCount()",    "Directory()",
      "reply()",       "hasErrors()",        "Line()",           "hasWarnings()", "IsSuccessful()",
      "LineNumber()",  "ActionSuccessful()", "FormatFileName()", "RowError()",    "RowNumber()"};
  Texts result;
  for (const std::string& line : host.trace->lines) {
    if (!kAccessors.contains(std::string_view(line).substr(line.rfind(' ') + 1)))
      result.push_back(line);
  }
  return result;
}

bool RequestTest::isEverythingClosed() {
  return openStreamCount() == 0 && !ImExModule::openFiles().isOpen(1) && ImExModule::openFiles().freeNumber() == 1;
}

Box questionBox(std::string_view finding) {
  return {std::string(finding) + "\r\n\r\n Would you like to correct the file?", 36, "Corvana Maintenance"};
}

std::string delimiterFinding(int expectedFields) {
  return "The file you are attempting to import is not properly delimited. It should contain " +
         std::to_string(expectedFields) +
         " of your chosen delimiter in each row of the file.\r\n"
         "Opening the file within the editor and saving will correct the error.";
}

std::string customerLine(std::string_view firm, std::string_view customerType) {
  return "c1|" + std::string(firm) + "|1 Main St|||Town|GA|30012|||555-0100||" + std::string(customerType);
}

std::string productLine(std::string_view catalogNumber) {
  return std::string(catalogNumber) + "|desc|Brand|4|5|6|7|8|9|10|Lamp";
}

std::string repeated(std::string_view line, int count) {
  std::string result;
  for (int i = 0; i < count; ++i)
    result.append(line).append("\r\n");
  return result;
}

} // namespace imex::test
