#pragma once

#include <string>
#include <vector>

namespace imex::bench {

/// Posts the lines as an instant import of customers, in chunks as they are written. The texts are as they are sent,
/// each ended by a zero. False where the exchange failed.
bool postWithGsoap(const std::string& address, const std::vector<char*>& lines);

} // namespace imex::bench
