#pragma once

#include "Reference.h"
#include "records/ImExReply.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace imex::bench {

// The work itself, as the component does it. The benchmarks time it, and once.cpp counts its instructions.

/// W1: reads the file and checks every line. Returns the number of lines; 0 where one fails.
std::size_t checkFile(const Reference& reference);

/// W2 without the posting: fills an envelope with the lines and returns its text.
std::string buildRequest(const std::vector<std::string_view>& lines);

/// W3: reads the answer, as it was received, into records.
ImExReply readAnswer(std::string answer);

/// W4: writes the results page.
void writePage(const std::string& path, ImExReply& reply);

} // namespace imex::bench
