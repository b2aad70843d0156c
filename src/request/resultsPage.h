#pragma once

#include "records/ImExReply.h"
#include "runtime/Collection.h"

#include <string>

namespace imex {

/// Writes the page with the verdicts of an answer, replacing a file that is there. A symbolic link in its place is
/// error 75. Errors pass through, and leave a page that was begun as it is.
void writeResultsPage(const std::string& path, const Collection<ImExFormatPtr>& formats);

/// Writes a page of plain texts.
void writeTextPage(const std::string& path, const Strings& texts);

} // namespace imex
