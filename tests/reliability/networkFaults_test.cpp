#include "Import.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "platform/soap/errors.h"
#include "support/FaultyServer.h"
#include "support/raised.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
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

  /// What an import comes to that ends with this error.
  Texts failure(const RuntimeError& error) const {
    if (GetParam() == "send")
      return {"raised " + std::to_string(error.number()) + ' ' + error.description()};
    return {"SerializationFailed Exception while attempting to import CUSTOMER. \r\n" + error.description() + ". \r\n"};
  }

  /// What is recorded of it; send() lets it out as it is.
  Texts record(const RuntimeError& error) const {
    if (GetParam() == "send")
      return {};
    return {std::to_string(error.number()) + ' ' + error.source() + ": " + error.description()};
  }

  /// Imports from a bad answer, which ends with this error or, where there is none, is as good as any, and then from a
  /// good one.
  void importBadly(const FaultyServer::Answer& bad, const std::optional<RuntimeError>& expected) {
    EXPECT_EQ(expected ? failure(*expected) : golden, importFrom(bad));
    EXPECT_EQ(expected ? record(*expected) : Texts{}, trial.errors);
    ++numbers[expected ? expected->number() : 0];
    expectUsable();
    EXPECT_EQ(golden, importFrom(good()));
    EXPECT_EQ(Texts{}, trial.errors);
    expectUsable();
  }

  void expectUsable() {
    EXPECT_TRUE(trial.isFileClosed());
    EXPECT_TRUE(areDescriptorsBackTo(descriptors));
  }

  /// The error of an exchange, with what stands before and behind the address in its description.
  RuntimeError networkError(SoapError kind, const std::string& before, const std::string& behind) const {
    return platform::soapError(kind, "CurlTransport", before + server.address("/secured") + behind);
  }

  RuntimeError cutOff(const std::string& how) const {
    return networkError(SoapError::cutOff, "The answer from ", " was cut off: " + how);
  }

  /// The error of an answer that is cut within its headers; nothing where it is cut behind them.
  std::optional<RuntimeError> cutInHeaders(const std::string& bytes, std::size_t at) const {
    const auto behind = [&](std::string_view text) { return bytes.find(text) + text.size(); };
    if (at < behind("\r\n")) // not even a status
      return networkError(SoapError::cutOff, "The connection to ", " was closed without an answer");
    if (at < behind("\r\n\r\n"))
      return cutOff("connection closed within the headers");
    return std::nullopt;
  }

  /// What the reader of answers says to the first `size` bytes of the answer.
  static RuntimeError readingError(std::size_t size) {
    const auto error = raised([&] { platform::PugiSoapEnvelope().parse(kAnswer.substr(0, size), ""); });
    EXPECT_TRUE(error && error->number() == static_cast<int>(SoapError::notSoap)) << size;
    return error.value_or(RuntimeError(0, "", ""));
  }

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
  const std::string bytes = bad.bytes();
  const std::size_t lastHeader = bytes.size() - kAnswer.size() - 2; // its end; it tells the length
  for (std::size_t at = 0; at < bytes.size() && !HasFailure(); ++at) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    const std::size_t rest = std::min(bytes.size() - at, kAnswer.size());
    importBadly(bad, at < lastHeader
                         ? cutInHeaders(bytes, at)
                         : cutOff("transfer closed with " + std::to_string(rest) + " bytes remaining to read"));
  }
  EXPECT_EQ((std::map<int, int>{{1009, 491}}), numbers);
}

/// Goes on to `size`, in greater steps as long as the end is far.
std::size_t next(std::size_t at, std::size_t size, std::size_t step) {
  constexpr std::size_t kNearEnd = 20;
  return at + step + kNearEnd < size ? at + step : at + 1;
}

TEST_P(NetworkFaults, chunksCutAnywhere_areAnErrorUnlessAllAreThere_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good(Framing::chunked);
  const std::string bytes = bad.bytes();
  const std::size_t lastLineFeed = bytes.size() - 1; // behind the chunk that ends the answer
  for (std::size_t at = 0; at < bytes.size() && !HasFailure(); at = next(at, bytes.size(), 7)) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    std::optional<RuntimeError> expected = cutInHeaders(bytes, at);
    if (!expected && at < lastLineFeed)
      expected = cutOff("transfer closed with outstanding read data remaining");
    importBadly(bad, expected);
  }
  EXPECT_EQ((std::map<int, int>{{0, 1}, {1009, 134}}), numbers);
}

TEST_P(NetworkFaults, unframedAnswerCutAnywhere_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good(Framing::none); // the end of the connection is the end of the answer
  const std::string bytes = bad.bytes();
  const std::size_t head = bytes.size() - kAnswer.size();
  for (std::size_t at = 0; at < bytes.size() && !HasFailure(); at = next(at, bytes.size(), 7)) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    const std::optional<RuntimeError> expected = cutInHeaders(bytes, at);
    importBadly(bad, expected ? expected : readingError(at - head));
  }
  EXPECT_EQ((std::map<int, int>{{1005, 74}, {1009, 12}}), numbers);
}

TEST_P(NetworkFaults, resetAfterSomeBytes_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good();
  bad.isReset = true;
  const std::size_t size = bad.bytes().size();
  for (std::size_t at = 0; at < size && !HasFailure(); at += 16) {
    SCOPED_TRACE(at);
    bad.cutAfter = at;
    importBadly(bad, cutOff("Recv failure: Connection reset by peer"));
  }
  EXPECT_EQ((std::map<int, int>{{1009, 31}}), numbers);
}

TEST_P(NetworkFaults, lengthsThatAreTooGreat_areAnError_andTheNextImportIsRight) {
  for (std::size_t more = 1; more <= kAnswer.size() && !HasFailure(); more += more < 20 ? 1 : 20) {
    SCOPED_TRACE(more);
    FaultyServer::Answer bad = good();
    bad.announcedLength = kAnswer.size() + more;
    importBadly(bad, cutOff("transfer closed with " + std::to_string(more) + " bytes remaining to read"));
  }
  EXPECT_EQ((std::map<int, int>{{1009, 38}}), numbers);
}

TEST_P(NetworkFaults, lengthsThatAreTooSmall_areAnError_andTheNextImportIsRight) {
  for (std::size_t length = 0; length < kAnswer.size() && !HasFailure(); length = next(length, kAnswer.size(), 7)) {
    SCOPED_TRACE(length);
    FaultyServer::Answer bad = good();
    bad.announcedLength = length;
    importBadly(bad, readingError(length));
  }
  EXPECT_EQ((std::map<int, int>{{1005, 77}}), numbers);
}

TEST_P(NetworkFaults, aByteAtATime_isTheSameImport) {
  for (const Framing framing : {Framing::length, Framing::chunked, Framing::none}) {
    FaultyServer::Answer slow = good(framing);
    slow.isDripped = true;
    importBadly(slow, std::nullopt);
  }
}

/// On the road that has a time-out for customers.
class SlowNetwork : public NetworkFaults {};

TEST_P(SlowNetwork, slowerThanTheTimeout_isAnError_andTheNextImportIsRight) {
  FaultyServer::Answer bad = good();
  const std::size_t size = bad.bytes().size();
  const RuntimeError expected = networkError(SoapError::timeOut, "No complete answer from ", " within the time-out");
  for (std::size_t at = 0; at < size && !HasFailure(); at += size / 8) {
    SCOPED_TRACE(at);
    bad.holdAfter = at;
    trial.host.settings.milliseconds = 30;
    EXPECT_EQ(failure(expected), importFrom(bad));
    EXPECT_EQ(record(expected), trial.errors);
    ++numbers[expected.number()];
    expectUsable();
    trial.host.settings.milliseconds = 30000;
    EXPECT_EQ(golden, importFrom(good()));
    expectUsable();
  }
  EXPECT_EQ((std::map<int, int>{{1002, 9}}), numbers);
}

INSTANTIATE_TEST_SUITE_P(, NetworkFaults, testing::Values("send", "instant"),
                         [](const auto& test) { return test.param; });

INSTANTIATE_TEST_SUITE_P(, SlowNetwork, testing::Values("instant"), [](const auto& test) { return test.param; });

} // namespace
} // namespace imex::test
