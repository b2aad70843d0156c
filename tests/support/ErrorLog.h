#pragma once

#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <memory>

namespace imex::test {

/// A trace log that keeps errors alone, and must not be told of anything else.
class ErrorLog : public RecordingTraceLog {
 public:
  void Trace(std::string_view /*source*/, std::string_view procedure, std::string_view /*message*/,
             std::int32_t /*level*/) override {
    ADD_FAILURE() << procedure;
  }
  bool takesTraces() const override { return false; }

  /// Takes the place of the host's log.
  static std::shared_ptr<ErrorLog> installed(TestHost& host) {
    auto log = std::make_shared<ErrorLog>();
    host.services.createTraceLog = [log] { return log; };
    host.install();
    return log;
  }
};

} // namespace imex::test
