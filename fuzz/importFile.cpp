#include "harness/importing.h"

#include "harness/fuzz.h"

#include <string>

// An import file goes through a whole import, on either road or as line items. What comes of it is the same whether
// somebody reads the trace or not; the two roads send the same lines, or neither sends any; the file numbers are free
// afterwards and the file is as it was. The first byte of the input chooses format, delimiter, options, and how often
// the rest is repeated, so that lines and files come beyond their limits.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace imex;
  if (size == 0)
    return 0;
  const fuzz::Import import = fuzz::importOf(data[0]);
  const std::string bytes = fuzz::repeated(fuzz::text(data + 1, size - 1), import.size);
  const fuzz::Outcome traced = fuzz::run(import, fuzz::Way::send, bytes, true);
  fuzz::require(traced == fuzz::run(import, fuzz::Way::send, bytes, false), "traces change nothing on the send road");
  const fuzz::Outcome instant = fuzz::run(import, fuzz::Way::instant, bytes, true);
  fuzz::require(instant == fuzz::run(import, fuzz::Way::instant, bytes, false),
                "traces change nothing on the instant road");
  if (import.isOnBothRoads()) {
    fuzz::require(traced.isSent == instant.isSent, "both roads send, or none");
    fuzz::require(traced.lines == instant.lines, "both roads send the same lines");
  }
  if (import.isLineItems()) {
    fuzz::require(fuzz::run(import, fuzz::Way::lineItems, bytes, true) ==
                      fuzz::run(import, fuzz::Way::lineItems, bytes, false),
                  "traces change nothing for line items");
  }
  return 0;
}
