#pragma once

#include "runtime/export.h"

#include <string>
#include <string_view>

namespace imex {

/// A text that is meant as the address of a service, a proxy or a database, as it may be shown and recorded: without
/// what may be a password, be the text well formed or not. "***" stands for
///
/// - what lies between the scheme, or the text's begin where it has none, and the last "@" (also one written "%40"),
/// - everything behind the first "?", "#", "=" or "&" after that,
/// - everything behind a colon after that which no number of a port follows: a name and a password whose host is
/// missing
///   look like that.
///
/// Rather too much is hidden than too little: "https://host/a@b" becomes "https://***@b".
IMEX_EXPORT std::string shownAddress(std::string_view address);

/// Puts `shown` in the place of a secret wherever it stands in the text. The secret is not empty.
IMEX_EXPORT void hide(std::string& text, std::string_view secret, std::string_view shown = "***");

} // namespace imex
