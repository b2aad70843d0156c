#include "Import.h"
#include "allocations.h"
#include "failingLibraries.h"
#include "platform/soap/CurlTransport.h"
#include "platform/soap/PugiSoapEnvelope.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "support/FaultyServer.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <tuple>

namespace imex::test {
namespace {

using platform::CurlTransport;
using platform::PugiSoapEnvelope;

const std::string kResult =
    "<answer><return><reply>a reply that is longer than what fits into a string &amp; more</reply>"
    "<hasErrors>false</hasErrors><importExportResultBean><item><line>A|caf\xC3\xA9|&#13;</line></item>"
    "<item/></importExportResultBean></return></answer>";
const std::string kBodyStart = R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)";
const std::string kBodyEnd = "</s:Body></s:Envelope>";
const std::string kAnswer = kBodyStart + kResult + kBodyEnd;

/// An element with all that is inside, as text.
std::string contents(host::SoapNode& node) {
  std::string text = node.name() + '(' + node.text();
  node.forEachChild([&](host::SoapNode& child) { text += contents(child); });
  return text + ')';
}

void fill(host::SoapEnvelope& envelope) {
  envelope.setEncodingStyle("http://xml.apache.org/xml-soap/literalxml");
  envelope.setMethod("importData", "urn:ImportExportService");
  envelope.header().create("userID", "a user with an identifier of some length", "", "", "");
  host::SoapNode& bean = envelope.parameters().create("HXImportBean", "", "urn:x", "bean", "urn:types");
  host::SoapNode& lines = bean.create("LINES", "", "", "", "");
  for (int i = 0; i < 20; ++i)
    lines.create("LINE", "A|<caf\xC3\xA9>\r & a line that is longer than what fits into a string itself|", "", "", "");
  bean.create("LAST", "one behind the lines", "", "string", "urn:types");
}

/// What an adapter is made to do, again and again, with one and the same object.
class Work {
 public:
  virtual ~Work() = default;
  /// The outcome as text. Raises where it has no memory.
  virtual std::string run() = 0;
  /// What libcurl takes a part of its own for that it has no memory for: a server that cannot be reached, a line that
  /// is too long.
  virtual Texts mistakenErrors() const { return {}; }
};

/// `reached` is the address, and the proxy where there is one.
Texts mistakenErrors(const std::string& reached, const std::string& unknown) {
  return {"error 1001 No connection to " + reached + ": the " + unknown + "'s name is unknown",
          "error 1007 The answer from " + reached + " is too large: a header line is too long"};
}

class Request : public Work {
 public:
  std::string run() override {
    PugiSoapEnvelope envelope;
    fill(envelope);
    return envelope.serialise();
  }
};

class Reading : public Work {
 public:
  explicit Reading(std::string answer) : m_answer(std::move(answer)) {}

  std::string run() override {
    m_envelope.parse(m_answer, "");
    return contents(m_envelope.parameter(0));
  }

 protected:
  PugiSoapEnvelope m_envelope;

 private:
  std::string m_answer;
};

/// Changes the answer as well, which is a request then.
class Changing : public Reading {
 public:
  using Reading::Reading;

  std::string run() override {
    const std::string text = Reading::run();
    m_envelope.setMethod("aMethodWithAName", "urn:a namespace of some length");
    m_envelope.parameter(0).create("more", "a value of some length", "urn:x", "bean", "urn:types");
    return text + m_envelope.serialise();
  }
};

/// What a server of the test answers to each exchange.
class Exchange : public Work {
 public:
  explicit Exchange(FaultyServer::Answer answer) : m_server(std::move(answer)), m_address(m_server.address("/x")) {}

  std::string run() override {
    PugiSoapEnvelope envelope;
    fill(envelope);
    m_transport.NoProxy();
    m_transport.SOAPAction("urn:ImportExportService");
    envelope.post(m_transport, m_address);
    return m_transport.Receive("UTF-8");
  }

  Texts mistakenErrors() const override { return test::mistakenErrors(m_address, "server"); }

 protected:
  FaultyServer m_server;
  std::string m_address;
  CurlTransport m_transport;
};

class ThroughProxy : public Exchange {
 public:
  using Exchange::Exchange;

  std::string run() override {
    m_transport.SetProxy("127.0.0.1", m_port);
    m_transport.send(kFarAddress, kAnswer);
    return m_transport.takeAnswer("UTF-8");
  }

  Texts mistakenErrors() const override {
    return test::mistakenErrors(kFarAddress + " through the proxy 127.0.0.1:" + m_port, "proxy");
  }

 private:
  inline static const std::string kFarAddress = "http://a.server.of.a.long.name.example/with/a/path";

  std::string m_port = std::to_string(m_server.port());
};

class Call : public Work {
 public:
  Call() : m_server(FaultyServer::ok(kAnswer)), m_address(m_server.address("/x")) {
    m_bean.requestInformation = std::make_shared<host::RequestInformation>(
        host::RequestInformation{"IMPORT", "CUSTOMER", "INSTANT", "AGENT", "TAB", "Ann Agent", true, false});
    m_bean.dataContainer = std::make_shared<host::DataContainer>();
    m_bean.dataContainer->lines.add({"A|a line that is longer than what fits into a string itself|"});
  }

  std::string run() override {
    return contents(*m_call.call({.space = "urn:ImportExportService",
                                  .methodName = "importData",
                                  .beanType = "HXImportBean",
                                  .bean = m_bean,
                                  .address = m_address,
                                  .timeout = 60'000,
                                  .userId = "agent1"}));
  }

  Texts mistakenErrors() const override { return test::mistakenErrors(m_address, "server"); }

 private:
  FaultyServer m_server;
  std::string m_address;
  FakeSettings m_settings;
  platform::SoapTransportFactory m_factory;
  platform::SoapServiceCall m_call{m_factory, m_settings};
  host::ImportBean m_bean;
};

FaultyServer::Answer latin() {
  FaultyServer::Answer answer = FaultyServer::ok(kBodyStart + "<a><b>caf\xE9</b></a>" + kBodyEnd);
  answer.contentType = "text/xml; charset=iso-8859-1";
  return answer;
}

struct Case {
  std::string name;
  std::function<std::unique_ptr<Work>()> make;
};
std::ostream& operator<<(std::ostream& stream, const Case& test) {
  return stream << test.name;
}

template <class Kind, class... Arguments>
Case work(std::string name, Arguments... arguments) {
  return {std::move(name), [=] { return std::make_unique<Kind>(arguments...); }};
}

std::vector<Case> cases() {
  const std::string withComment = kBodyStart + "<!-- c -->" + kResult + kBodyEnd;
  FaultyServer::Answer chunked = FaultyServer::ok(kAnswer);
  chunked.framing = FaultyServer::Answer::Framing::chunked;
  return {work<Request>("request"),
          work<Reading>("plainAnswer", kAnswer),
          work<Reading>("answerWithAComment", withComment),
          work<Changing>("answerThatIsChanged", withComment),
          work<Exchange>("exchange", FaultyServer::ok(kAnswer)),
          work<Exchange>("chunkedExchange", chunked),
          work<Exchange>("exchangeInAnotherEncoding", latin()),
          work<Exchange>("exchangeThatEndsInAFault", FaultyServer::soapFault("a fault of some length, to be read")),
          work<ThroughProxy>("exchangeThroughAProxy", FaultyServer::ok(kAnswer)),
          work<Call>("serviceCall")};
}

constexpr long kFewest = 20; ///< allocations of anything that the adapter does, whatever the build

class MemoryFaultsOfSoap : public testing::TestWithParam<std::tuple<Case, bool>> {
 protected:
  static constexpr const char* kBadAlloc = "bad_alloc";
  static constexpr const char* kError7 = "error 7 Out of memory";

  static void SetUpTestSuite() { makeLibrariesFail(); }

  static long liveBlocks() { return allocations.liveBlocks + liveBlocksOfCurl(); }

  /// Runs the work with one allocation failed, and all behind it where that is wanted.
  static std::string outcome(Work& work, long number, bool failOn) {
    try {
      const FailingAllocation failing(number, failOn);
      return work.run();
    } catch (const RuntimeError& error) {
      return "error " + std::to_string(error.number()) + ' ' + error.description();
    } catch (const std::bad_alloc&) {
      return kBadAlloc;
    }
  }

  /// Whether an exchange may end so where an allocation of libcurl failed: that is error 7, or changes nothing, or is
  /// taken for another fault, whose description needs memory itself.
  bool isPromisedOfCurl(const std::string& text, bool failOn, const std::string& golden, const Work& work) {
    const Texts mistaken = work.mistakenErrors();
    const bool isAbsorbed = text == golden;
    const bool isMistaken = std::find(mistaken.begin(), mistaken.end(), text) != mistaken.end();
    absorbed += isAbsorbed ? 1 : 0;
    otherErrors += isMistaken ? 1 : 0;
    return text == kError7 || (failOn ? text == kBadAlloc : isAbsorbed || isMistaken);
  }

  /// Whether the work may end so. The adapter lets a bad_alloc through, and makes error 7 where a library has no
  /// memory; of pugixml the error itself needs some.
  bool isPromised(const std::string& text, bool failOn, const std::string& golden, const Work& work) {
    switch (allocations.failed) {
    case Allocator::none:
      return text == golden;
    case Allocator::operatorNew:
    case Allocator::realloc:
      return text == kBadAlloc;
    case Allocator::pugixml:
      return text == (failOn ? kBadAlloc : kError7);
    case Allocator::curl:
      return isPromisedOfCurl(text, failOn, golden, work);
    }
    return false;
  }

  /// Runs the work with a failing allocation and then without. False where there was none to fail.
  bool hasFailedAt(long number, bool failOn, Work& work, const std::string& golden) {
    SCOPED_TRACE("allocation " + std::to_string(number));
    const std::string text = outcome(work, number, failOn);
    const bool hasFailed = allocations.hasFailed;
    EXPECT_TRUE(isPromised(text, failOn, golden, work)) << text;
    EXPECT_EQ(golden, work.run());
    EXPECT_TRUE(areDescriptorsBackTo(descriptors));
    return hasFailed;
  }

  std::size_t descriptors = 0; ///< that were open before the first run
  long absorbed = 0;           ///< the failures that changed nothing
  long otherErrors = 0;        ///< those of libcurl that came to an error of the network
};

TEST_P(MemoryFaultsOfSoap, eachAllocationFailed_isAnErrorOfMemory_andTheSameObjectGoesOn) {
  const auto& [test, failOn] = GetParam();
  const std::unique_ptr<Work> work = test.make();
  descriptors = openDescriptors();
  const std::string golden = work->run();
  hasFailedAt(0, failOn, *work, golden); // what is made once, for the life of the process
  const long blocks = liveBlocks();
  long number = 1;
  for (; hasFailedAt(number, failOn, *work, golden) && !HasFailure(); ++number)
    ASSERT_EQ(blocks, liveBlocks()) << "blocks were not given back after allocation " << number;
  EXPECT_GT(number, kFewest);
  std::cout << "allocations failed: " << number - 1 << ", of which " << absorbed << " changed nothing and "
            << otherErrors << " came to an error of the network\n";
}

INSTANTIATE_TEST_SUITE_P(, MemoryFaultsOfSoap, testing::Combine(testing::ValuesIn(cases()), testing::Bool()),
                         [](const auto& test) {
                           return std::get<0>(test.param).name + (std::get<1>(test.param) ? "_fromThereOn" : "_once");
                         });

} // namespace
} // namespace imex::test
