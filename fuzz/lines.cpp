#include "harness/fuzz.h"
#include "runtime/TextFile.h"
#include "runtime/text.h"
#include "support/memoryFiles.h"

#include <memory>
#include <string>
#include <vector>

// A file read line by line has the lines that a plain look at all of its bytes gives, in pieces of any size and across
// the end of a buffer; and written again it has its bytes again.

namespace {

using namespace imex;

constexpr std::size_t kBufferSize = 64UL * 1024;

bool isUtf8(std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size(); at += codePointAt(bytes, at).bytes) {
    if (!codePointAt(bytes, at).valid)
      return false;
  }
  return true;
}

/// All lines, found the plain way.
std::vector<std::string> expectedLines(std::string_view bytes) {
  std::string text;
  if (bytes.starts_with(kUtf8Mark))
    text = bytes.substr(kUtf8Mark.size());
  else if (isUtf8(bytes))
    text = bytes;
  else
    appendWindows1252(text, bytes);
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find("\r\n", at);
    lines.push_back(text.substr(at, end - at));
    at = end == std::string::npos ? text.size() : end + 2;
  }
  return lines;
}

std::vector<std::string> linesOf(const std::string& bytes, std::size_t chunk, Encoding& encoding) {
  TextReader reader(std::make_unique<test::MemorySource>(bytes, chunk));
  std::vector<std::string> lines;
  std::string_view line;
  while (reader.readLine(line))
    lines.emplace_back(line);
  encoding = reader.encoding();
  return lines;
}

std::string written(const std::vector<std::string>& lines, Encoding encoding) {
  test::MemorySink::Record record;
  TextWriter writer(std::make_unique<test::MemorySink>(record), encoding);
  for (const std::string& line : lines)
    writer.writeLine(line);
  writer.close();
  return record.bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(fuzz::text(data, size));
  std::vector<std::string> expected = expectedLines(bytes);
  Encoding encoding = Encoding::utf8;
  fuzz::require(linesOf(bytes, 1 + size % 7, encoding) == expected, "the lines are those of the bytes");
  const std::string again = written(expected, encoding);
  fuzz::require(again == bytes || again == bytes + "\r\n", "the bytes come back");

  if (size >= kBufferSize || bytes.starts_with(kUtf8Mark)) // a mark behind other text is text
    return 0;
  const std::string before(kBufferSize - size / 2, 'x'); // the end of a buffer falls into the bytes
  if (expected.empty())
    expected.emplace_back();
  expected.front().insert(0, before);
  Encoding same = Encoding::utf8;
  fuzz::require(linesOf(before + bytes, kBufferSize, same) == expected && same == encoding,
                "the end of a buffer changes nothing");
  return 0;
}
