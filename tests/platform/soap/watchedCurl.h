#pragma once

#include <map>
#include <optional>

namespace imex::test {

/// What passes between the transport and libcurl in this program.
struct WatchedCurl {
  std::map<int, long> options;       ///< the last value of each option that is a number
  std::optional<int> resultToReturn; ///< in the place of the next exchange
};

inline WatchedCurl watchedCurl;

} // namespace imex::test
