#include "harness/MemoryHost.h"
#include "harness/fuzz.h"
#include "module/ImExModule.h"
#include "runtime/TextFile.h"

#include <memory>
#include <string>

// A format file is a catalogue entry of as many columns as it has lines that are not empty, or it is named in a box.

namespace {

using namespace imex;

int filledLines(std::string_view bytes) {
  TextReader reader(std::make_unique<test::MemorySource>(std::string(bytes)));
  int count = 0;
  std::string_view line;
  while (reader.readLine(line))
    count += line.empty() ? 0 : 1;
  return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text(data, size);
  fuzz::MemoryHost host;
  host.loadCatalogue(bytes);
  const int expected = filledLines(bytes);
  const bool fits = expected <= Integer::kMax;
  fuzz::require(host.boxes.lines.empty() == fits, "a box comes where the count does not fit");
  fuzz::require(ImExModule::isFormatCounted("BALLASTSHALVIK") == fits, "the last format is known where all fit");
  fuzz::require(!fits || ImExModule::getFormatColumnCount("CUSTOMERAGENT") == expected, "each line is a column");
  fuzz::require(!fits || std::cmp_equal(ImExModule::getFormatColumns("CUSTOMERAGENT")->count(), expected),
                "each column has a name");
  fuzz::require(ImExModule::openFiles().freeNumber() == 1, "no file is open");
  return 0;
}
