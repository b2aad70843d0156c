#include "Import.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <set>

namespace imex::test {
namespace {

struct Fault {
  std::string name;
  RuntimeError error;
};
std::ostream& operator<<(std::ostream& stream, const Fault& fault) {
  return stream << fault.name;
}

const std::vector<Fault> kFaults = {{"noConnection", {1001, "CurlTransport", "Connection refused"}},
                                    {"slow", {1002, "CurlTransport", "Timed out"}},
                                    {"notSoap", {1005, "PugiSoapEnvelope", "The answer is no SOAP message"}},
                                    {"cut", {1009, "CurlTransport", "The connection was lost"}},
                                    {"noMemory", RuntimeError(ErrorNumber::outOfMemory)}};

/// How many calls the instant road makes of the transport and the envelope, one for each of 60 lines among them.
constexpr std::size_t kCalls = 85;

class TransportFaults : public testing::TestWithParam<Fault> {
 protected:
  static std::string sentOf(const Texts& result) {
    const auto sent =
        std::find_if(result.begin(), result.end(), [](const std::string& text) { return text.starts_with("sent "); });
    return sent == result.end() ? std::string() : *sent;
  }

  /// What the texts promise where this call of the transport or the envelope fails.
  Texts promised(const std::string& call) const {
    static const std::set<std::string> kEnvironment = {"createTransport",
                                                       "createEnvelope",
                                                       "create userID",
                                                       "create PARAM_ELEMENT",
                                                       "create IMPORTEXPORTWRAPPER",
                                                       "create LINES",
                                                       "create REQUESTINFORMATION"};
    if (kEnvironment.contains(call) || call.starts_with("setEncodingStyle") || call.starts_with("setMethod"))
      return {"SerializationFailed An environment error has been detected."};
    if (call == "create LINE")
      return {kUnreadableEvent};
    if (call.starts_with("create "))
      return {"SerializationFailed Unable to create a request to process."};
    return {"SerializationFailed Exception while attempting to import CUSTOMER. \r\n" + GetParam().error.description() +
            ". \r\n"};
  }
};

TEST_P(TransportFaults, eachCallOfTheInstantRoadFailedOnce_endsAsTheTextsSay_andTheNextImportIsRight) {
  Import trial(wayNamed("instant"));
  const Texts golden = trial.run();
  ASSERT_EQ(Texts{}, trial.errors);
  std::size_t number = 1;
  for (;; ++number) {
    std::size_t calls = 0;
    std::string failed;
    trial.transports.before = [&](std::string_view call) {
      if (++calls != number)
        return;
      failed = call;
      throw GetParam().error;
    };
    const Texts result = trial.run();
    trial.transports.before = [](auto) {};
    if (failed.empty()) {
      EXPECT_EQ(golden, result);
      break;
    }
    SCOPED_TRACE("call " + std::to_string(number) + ", " + failed);
    Texts expected = promised(failed);
    if (failed.starts_with("Receive") || failed.starts_with("parse") || failed.starts_with("parameter"))
      expected.push_back(sentOf(golden)); // the whole request, which was sent before
    EXPECT_EQ(expected, result);
    EXPECT_TRUE(trial.isTidy());
    EXPECT_EQ(golden, trial.run());
    EXPECT_EQ(Texts{}, trial.errors);
  }
  EXPECT_EQ(kCalls, number - 1);
  std::cout << "fault points: " << number - 1 << '\n';
}

TEST_P(TransportFaults, failedServiceCall_reachesTheCallerOfSend_andTheNextImportIsRight) {
  Import trial(wayNamed("send"));
  const Texts golden = trial.run();
  trial.host.serviceCall.error = GetParam().error;
  const Texts result = trial.run();
  trial.host.serviceCall.error.reset();
  EXPECT_EQ((Texts{"raised " + std::to_string(GetParam().error.number()) + ' ' + GetParam().error.description(),
                   sentOf(golden)}), // the lines that the call was given, and nothing else
            result);
  EXPECT_TRUE(trial.isTidy());
  EXPECT_EQ(golden, trial.run());
  EXPECT_EQ(Texts{}, trial.errors);
}

INSTANTIATE_TEST_SUITE_P(, TransportFaults, testing::ValuesIn(kFaults),
                         [](const auto& test) { return test.param.name; });

} // namespace
} // namespace imex::test
