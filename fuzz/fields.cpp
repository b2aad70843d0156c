#include "harness/fuzz.h"
#include "module/ImExModule.h"
#include "runtime/text.h"

#include <string>

// A line of n delimiters has n + 1 fields, and joined by the delimiter they are the line again. The first byte of the
// input is the code of the delimiter.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace imex;
  if (size == 0)
    return 0;
  const int code = data[0];
  const std::string_view line = fuzz::text(data + 1, size - 1);
  const auto fields = fuzz::unless({6}, [&] { return ImExModule::Parse(line, code); });
  fuzz::require(fields.has_value() == (length(line) <= 32767), "a line is split up to 32,767 characters");
  if (!fields)
    return 0;
  const std::string delimiter = character(code);
  std::string joined;
  for (const std::string& field : **fields) {
    fuzz::require(field.find(delimiter) == std::string::npos, "no field holds the delimiter");
    joined += field + delimiter;
  }
  joined.resize(joined.size() - delimiter.size());
  fuzz::require(joined == line, "the fields joined are the line");
  return 0;
}
