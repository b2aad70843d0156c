#include "Import.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "platform/soap/errors.h"
#include "support/FaultyServer.h"

#include <gtest/gtest.h>

#include <iostream>
#include <map>
#include <set>
#include <string>

namespace imex::test {
namespace {

using platform::SoapError;
using Framing = FaultyServer::Answer::Framing;

const std::string kAnswer =
    R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><answer><return>)"
    "<reply>Done.</reply><hasErrors>false</hasErrors><hasWarnings>true</hasWarnings><importExportResultBean>"
    "<item><isIuccessful>true</isIuccessful><line>A|B|</line><lineNumber>1</lineNumber><errors/>"
    "<warnings><item>W</item></warnings></item></importExportResultBean></return></answer></s:Body></s:Envelope>";

/// Imports over a real connection, on either road, from a server that answers badly and then well.
class NetworkFaults : public testing::TestWithParam<std::string> {
 protected:
  NetworkFaults() {
    trial.host.settings.secured = server.address("/secured");
    trial.host.settings.unsecured = server.address("/unsecured");
    trial.host.services.transportFactory = &m_factory;
    trial.host.services.serviceCall = &m_serviceCall;
    trial.host.install();
    descriptors = openDescriptors();
    golden = importFrom(good());
  }

  void SetUp() override {
    ASSERT_EQ(3u, golden.size()) << testing::PrintToString(golden);
    ASSERT_EQ("MessageReceived Done. 1", golden.front());
  }

  void TearDown() override {
    EXPECT_TRUE(areDescriptorsDownTo(descriptors));
    for (const auto& [number, count] : numbers)
      std::cout << (number == 0 ? "whole" : "error " + std::to_string(number)) << ": " << count << '\n';
  }

  static FaultyServer::Answer good(Framing framing = Framing::length) {
    FaultyServer::Answer answer = FaultyServer::ok(kAnswer);
    answer.framing = framing;
    return answer;
  }

  Texts importFrom(const FaultyServer::Answer& answer) {
    server.answerWith({answer});
    return trial.run();
  }

  /// The number of the error that the import ended with; 0 where it is as it should be.
  int errorOf(const Texts& result) const {
    if (result == golden)
      return 0;
    EXPECT_EQ(1u, result.size()) << testing::PrintToString(result);
    if (GetParam() == "send") {
      EXPECT_TRUE(result.front().starts_with("raised ")) << result.front();
      return std::stoi(result.front().substr(7));
    }
    const std::string number = trial.errors.empty() ? "0" : trial.errors.back();
    const std::string description = number.substr(std::min(number.size(), number.find(": ") + 2));
    EXPECT_EQ("SerializationFailed Exception while attempting to import CUSTOMER. \r\n" + description + ". \r\n",
              result.front());
    return std::stoi(number);
  }

  /// Imports from a bad answer, and then from a good one.
  int importBadly(const FaultyServer::Answer& bad) {
    const int number = errorOf(importFrom(bad));
    EXPECT_EQ(number != 0, trial.page().empty());
    ++numbers[number];
    expectUsable();
    return number;
  }

  void expectUsable() {
    EXPECT_TRUE(trial.isFileClosed());
    EXPECT_EQ(golden, importFrom(good()));
    EXPECT_EQ(Texts{}, trial.errors);
  }

  static int number(SoapError error) { return static_cast<int>(error); }

  Import trial{GetParam() == "send" ? shortWays()[0] : shortWays()[1]};
  FaultyServer server;
  Texts golden;
  std::size_t descriptors = 0;
  std::map<int, int> numbers; ///< how often an import ended so

 private:
  platform::SoapTransportFactory m_factory;
  platform::SoapServiceCall m_serviceCall{m_factory, trial.host.settings};
};

TEST_P(NetworkFaults, cutAfterEachByte_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good();
  const std::size_t size = bad.bytes().size();
  for (std::size_t at = 0; at < size && !HasFailure(); ++at) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    EXPECT_EQ(number(SoapError::cutOff), importBadly(bad));
  }
}

/// Goes on to `size`, in greater steps as long as the end is far.
std::size_t next(std::size_t at, std::size_t size, std::size_t step) {
  constexpr std::size_t kNearEnd = 20;
  return at + step + kNearEnd < size ? at + step : at + 1;
}

TEST_P(NetworkFaults, chunksCutAnywhere_areAnErrorUnlessAllAreThere_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good(Framing::chunked);
  const std::size_t size = bad.bytes().size();
  const std::size_t lastLineEnd = size - 2; // behind the chunk that ends the answer
  for (std::size_t at = 0; at < size && !HasFailure(); at = next(at, size, 7)) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    const int ended = importBadly(bad);
    EXPECT_TRUE(ended == number(SoapError::cutOff) || (ended == 0 && at >= lastLineEnd)) << ended;
  }
}

TEST_P(NetworkFaults, unframedAnswerCutAnywhere_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good(Framing::none); // the end of the connection is the end of the answer
  const std::size_t size = bad.bytes().size();
  for (std::size_t at = 0; at < size && !HasFailure(); at = next(at, size, 7)) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    const std::set expected{number(SoapError::cutOff), number(SoapError::notSoap)};
    EXPECT_TRUE(expected.contains(importBadly(bad)));
  }
}

TEST_P(NetworkFaults, resetAfterSomeBytes_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good();
  bad.isReset = true;
  const std::size_t size = bad.bytes().size();
  for (std::size_t at = 0; at < size && !HasFailure(); at += 16) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    const std::set expected{number(SoapError::cutOff), number(SoapError::noConnection)};
    EXPECT_TRUE(expected.contains(importBadly(bad)));
  }
}

TEST_P(NetworkFaults, lengthsThatAreTooGreat_areAnError_andTheNextImportIsRight) {
  for (std::size_t more = 1; more <= kAnswer.size() && !HasFailure(); more += more < 20 ? 1 : 20) {
    SCOPED_TRACE(more);
    FaultyServer::Answer bad = good();
    bad.announcedLength = kAnswer.size() + more;
    EXPECT_EQ(number(SoapError::cutOff), importBadly(bad));
  }
}

TEST_P(NetworkFaults, lengthsThatAreTooSmall_areAnError_andTheNextImportIsRight) {
  for (std::size_t length = 0; length < kAnswer.size() && !HasFailure(); length = next(length, kAnswer.size(), 7)) {
    SCOPED_TRACE(length);
    FaultyServer::Answer bad = good();
    bad.announcedLength = length;
    EXPECT_EQ(number(SoapError::notSoap), importBadly(bad));
  }
}

TEST_P(NetworkFaults, aByteAtATime_isTheSameImport) {
  for (const Framing framing : {Framing::length, Framing::chunked, Framing::none}) {
    FaultyServer::Answer slow = good(framing);
    slow.isDripped = true;
    EXPECT_EQ(0, importBadly(slow));
  }
}

/// On the road that has a time-out for customers.
class SlowNetwork : public NetworkFaults {};

TEST_P(SlowNetwork, slowerThanTheTimeout_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good();
  const std::size_t size = bad.bytes().size();
  for (std::size_t at = 0; at < size && !HasFailure(); at += size / 8) {
    SCOPED_TRACE(at);
    bad.holdAfter = at;
    trial.host.settings.milliseconds = 30;
    const int ended = errorOf(importFrom(bad));
    trial.host.settings.milliseconds = 30000;
    EXPECT_EQ(number(SoapError::timeOut), ended);
    ++numbers[ended];
    expectUsable();
  }
}

INSTANTIATE_TEST_SUITE_P(, NetworkFaults, testing::Values("send", "instant"),
                         [](const auto& test) { return test.param; });

INSTANTIATE_TEST_SUITE_P(, SlowNetwork, testing::Values("instant"), [](const auto& test) { return test.param; });

} // namespace
} // namespace imex::test
