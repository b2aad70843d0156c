#include "module/ImExModule.h"

#include "module/tracing.h"
#include "runtime/text.h"

#include <memory>

namespace imex::ImExModule {

namespace {

StringsPtr split(std::string_view line, std::string_view delimiter) {
  auto fields = std::make_shared<Strings>();
  for (;;) {
    const std::size_t end = line.find(delimiter);
    fields->add(std::string(line.substr(0, end)));
    if (end == std::string_view::npos)
      return fields;
    line.remove_prefix(end + delimiter.size());
  }
}

} // namespace

StringsPtr Parse(std::string_view line, Integer delimiterAscii) {
  return traced(
      // Trace readers expect this error label, although the procedure is another.
      {.source = "ImExModule", .name = "Parse", .errorName = "launchInternetExplorer"},
      [&] {
        // Positions have 16 bits. A line within the limit holds no more delimiters than they can count.
        [[maybe_unused]] const Integer lastPosition = length(line);
        return split(line, character(delimiterAscii));
      },
      Reraise{});
}

} // namespace imex::ImExModule
