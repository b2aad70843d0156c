#pragma once

#include <string_view>

namespace imex {

/// The path up to and including its last separator, which is "\" or "/"; empty where there is none.
constexpr std::string_view folderOf(std::string_view path) {
  const auto last = path.find_last_of("\\/");
  return last == std::string_view::npos ? std::string_view{} : path.substr(0, last + 1);
}

} // namespace imex
