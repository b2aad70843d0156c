#pragma once

#include "runtime/RuntimeError.h"
#include "support/TestHost.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// Counts the calls that are made of the file system while it lives, and fails one of them, once.
class FailingCall {
 public:
  struct Call {
    std::string name;
    std::string path;
  };

  /// Fails the call `number`, counted from 1; 0 for none.
  FailingCall(FaultyFiles& files, std::size_t number, ErrorNumber error) : m_files(files), m_number(number) {
    m_files.before = [this, error](std::string_view name, std::string_view path) {
      m_calls.push_back({std::string(name), std::string(path)});
      if (m_calls.size() == m_number)
        throw RuntimeError(error, "DiskFiles");
    };
  }
  ~FailingCall() {
    m_files.before = [](auto, auto) {};
  }
  FailingCall(const FailingCall&) = delete;
  FailingCall& operator=(const FailingCall&) = delete;

  bool wasReached() const { return m_calls.size() >= m_number; }

  /// The calls up to the one that failed. What came behind it does not tell where it was.
  std::vector<Call> calls() const {
    return {m_calls.begin(), m_calls.begin() + static_cast<std::ptrdiff_t>(std::min(m_number, m_calls.size()))};
  }

 private:
  FaultyFiles& m_files;
  std::size_t m_number;
  std::vector<Call> m_calls;
};

/// Which opening of the file at `path` the last of these calls belongs to, counted from 1; 0 for a call of another.
inline std::ptrdiff_t openingOf(const std::vector<FailingCall::Call>& calls, std::string_view path) {
  if (calls.back().path != path)
    return 0;
  return std::count_if(calls.begin(), calls.end(),
                       [&](const FailingCall::Call& call) { return call.name == "openForInput" && call.path == path; });
}

/// "Error Number: 61 - Disk full"
inline std::string errorTitle(ErrorNumber error) {
  return "Error Number: " + std::to_string(static_cast<int>(error)) + " - " + std::string(describe(error));
}

} // namespace imex::test
