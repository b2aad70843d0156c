#pragma once

#include <QString>

#include <string_view>

namespace imex::platform {

/// A cell's text as it is shown: each line break (CR LF, CR or LF) is one "\n", and any other control character and
/// line separator a blank. Line breaks at the end are left out.
QString shownText(std::string_view text);

/// The beginning of a text, of whole characters, that fills a cell of `pixels` width and height and is not much longer.
std::string_view beginning(std::string_view text, int pixels);

} // namespace imex::platform
