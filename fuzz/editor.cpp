#include "controls/ImExFileEdit/RecordRows.h"
#include "controls/ImExFileEdit/SavedLines.h"
#include "controls/ImExFileEdit/savedEncoding.h"
#include "harness/TextGrid.h"
#include "harness/fuzz.h"
#include "runtime/TextFile.h"
#include "runtime/text.h"
#include "support/memoryFiles.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

// What the editor loads it saves again: a file whose records all have the fields of the format comes back byte for
// byte, and any other becomes one that does. What was saved is read as the very lines that were saved. The first byte
// of the input is the number of fields, from 1 to 16, and the delimiter.

namespace {

using namespace imex;

struct File {
  std::vector<std::string> records;
  Encoding encoding;
};

File read(const std::string& bytes) {
  TextReader reader(std::make_unique<test::MemorySource>(bytes));
  File file;
  std::string_view record;
  while (reader.readLine(record))
    file.records.emplace_back(record);
  file.encoding = reader.encoding();
  return file;
}

/// How often a delimiter of one byte stands in the text.
std::size_t countOf(std::string_view text, std::string_view delimiter) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), delimiter.front()));
}

/// Loads a file into a grid of so many fields and saves it. `isRegular` tells whether every record had them, and a text
/// in one.
std::string savedAgain(const std::string& bytes, int fields, const std::string& delimiter, bool& isRegular) {
  const File file = read(bytes);
  const auto columns = static_cast<std::size_t>(fields);
  fuzz::TextGrid grid(static_cast<int>(file.records.size()) + 1, fields + 1);
  RecordRows rows(grid, delimiter);
  for (const std::string& record : file.records) {
    const std::size_t delimiters = countOf(record, delimiter);
    const auto expected = delimiters < columns ? RecordRows::Fit::whole : RecordRows::Fit::cut;
    fuzz::require(rows.show(record) == expected, "a record of more fields than columns is cut");
    isRegular = isRegular && delimiters + 1 == columns && record.size() > delimiters;
  }
  for (int row = 1; row < grid.size().rows; ++row)
    fuzz::require(grid.text({row, 0}) == std::to_string(row), "a row has its number");
  test::MemorySink::Record saved;
  SavedLines lines(grid, fields, delimiter);
  TextWriter writer(std::make_unique<test::MemorySink>(saved), savedEncoding(lines, file.encoding));
  std::string_view line;
  std::vector<std::string> written;
  while (lines.next(line)) {
    writer.writeLine(line);
    written.emplace_back(line);
  }
  writer.close();
  fuzz::require(read(saved.bytes).records == written, "what was saved is read again");
  return saved.bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0)
    return 0;
  const int fields = 1 + data[0] % 16;
  const std::string delimiter = data[0] / 16 % 2 == 0 ? "\t" : "|";
  const std::string bytes(fuzz::text(data + 1, size - 1));
  bool isRegular = true;
  const std::string once = savedAgain(bytes, fields, delimiter, isRegular);
  if (isRegular)
    fuzz::require(once == bytes || once == bytes + "\r\n", "a regular file comes back");
  bool isRegularNow = true;
  fuzz::require(savedAgain(once, fields, delimiter, isRegularNow) == once, "a saved file comes back");
  fuzz::require(isRegularNow, "a saved file is regular");
  return 0;
}
