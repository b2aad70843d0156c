#pragma once

#include "support/FaultyServer.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// Runs the program `imex` on files in a temporary folder, with the repository's format files and two addresses that
/// the test chooses.
class ProgramTest : public testing::Test {
 protected:
  ProgramTest();

  /// Runs `imex` with the settings of the test and these arguments.
  Ended imex(const std::vector<std::string>& arguments) const;

  /// As imex(), by a shell: "$@" in the script is the call.
  Ended imexInShell(const std::string& script, const std::vector<std::string>& arguments) const;

  /// imex import FILE of agent customers, and more arguments.
  Ended importCustomers(const std::string& file, std::vector<std::string> more = {}) const;

  /// Lets both addresses be those of a server.
  void use(const FaultyServer& server);

  /// The settings of the test and these arguments.
  std::vector<std::string> withSettings(const std::vector<std::string>& arguments) const;

  TemporaryFolder folder;
  std::string secured = "http://127.0.0.1:1/secured";
  std::string unsecured = "http://127.0.0.1:1/unsecured";
};

/// The road as an argument: tests of what both have in common run once for each.
class RoadTest : public ProgramTest, public testing::WithParamInterface<std::string> {
 protected:
  Ended importOnRoad(const std::string& file, std::vector<std::string> more = {}) const;
};

/// The number of columns of the repository's agent customers.
inline constexpr int kCustomerFields = 20;

/// A good line of agent customers, its fields separated by `delimiter`, with this code and name.
std::string customer(std::string_view code, std::string_view name = "Firm", std::string_view delimiter = "\t");

/// A SOAP answer whose result element holds `result`.
std::string soapAnswer(std::string_view result);

/// The result of an import of one accepted line with this number.
std::string acceptedLine(std::string_view lineNumber = "1", std::string_view successful = "true");

} // namespace imex::test
