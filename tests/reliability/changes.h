#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace imex::test {

/// Calls `use` with every beginning of `bytes`, from the empty one to the one that lacks a byte.
inline void forEachTruncation(const std::string& bytes, const std::function<void(const std::string&)>& use) {
  for (std::size_t size = 0; size < bytes.size(); ++size)
    use(bytes.substr(0, size));
}

/// Calls `use` with `bytes` after every change of one byte: each of them to each of the 255 other values.
inline void forEachChangedByte(const std::string& bytes, const std::function<void(const std::string&)>& use) {
  std::string changed = bytes;
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (int step = 1; step < 256; ++step) {
      changed[at] = static_cast<char>(bytes[at] + step);
      use(changed);
    }
    changed[at] = bytes[at];
  }
}

} // namespace imex::test
