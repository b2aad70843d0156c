#pragma once

#include <string>
#include <string_view>

namespace imex::test {

/// The bytes of a golden file below tests/, "request/golden/mixed.html", to compare whole with what a test made.
/// With IMEX_APPROVE set in the environment `actual` becomes the golden file first; look at the difference before it
/// is kept.
std::string golden(std::string_view name, std::string_view actual);

} // namespace imex::test
