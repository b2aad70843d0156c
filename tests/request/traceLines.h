#pragma once

#include "support/texts.h"

#include <string>
#include <vector>

namespace imex::test {

// Parts of a trace as RecordingTraceLog keeps it, to compare it whole.

/// The entry and the exit of a procedure in which nothing else is traced: pair("ImExRequest tabCount()").
inline Texts pair(const std::string& text) {
  return {"> " + text, "< " + text};
}

inline Texts concatenated(const std::vector<Texts>& parts) {
  Texts result;
  for (const Texts& part : parts)
    result.insert(result.end(), part.begin(), part.end());
  return result;
}

/// What forming the format key leaves.
inline const Texts kKey = {"> ImExRequest setTabCount()", "> ImExRequest tabCount()", "< ImExRequest tabCount()",
                           "< ImExRequest setTabCount()"};

/// The splitting of a line, and a message about a row.
inline const Texts kSplit = concatenated({pair("ImExRequest DelimiterAscii()"), pair("ImExModule Parse()")});
inline const Texts kErrorRecord =
    concatenated({pair("ImportExportErrorBean RowNumber()"), pair("ImportExportErrorBean RowError()")});

} // namespace imex::test
