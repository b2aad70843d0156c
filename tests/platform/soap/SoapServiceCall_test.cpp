#include "platform/soap/SoapServiceCall.h"

#include "platform/soap/SoapTransportFactory.h"
#include "platform/soap/TlsStream.h"
#include "platform/soap/failure.h"
#include "support/FaultyServer.h"
#include "support/TemporaryFolder.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace imex::platform {
namespace {

using test::failure;
using test::FaultyServer;

constexpr std::string_view kAnswer =
    R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><n:importDataResponse xmlns:n="urn:x">)"
    "<result><reply> 2 lines read </reply><hasErrors>false</hasErrors></result></n:importDataResponse></s:Body>"
    "</s:Envelope>";

/// A service call and a server that answers it.
class Call {
 public:
  explicit Call(FaultyServer::Answer answer = FaultyServer::ok(std::string(kAnswer)),
                test::MakeStream makeStream = test::plainStream)
      : server(std::move(answer), std::move(makeStream)) {
    bean.requestInformation = std::make_shared<host::RequestInformation>(
        host::RequestInformation{"IMPORT", "CUSTOMER", "INSTANT", "AGENT", "TAB", "J. Byrne & Söhne", true, false});
    bean.dataContainer = std::make_shared<host::DataContainer>();
    bean.dataContainer->lines.add({"A\tB <1>\t"});
    bean.dataContainer->lines.add({" C\t\rD\t"});
  }

  std::shared_ptr<host::SoapNode> run() {
    const std::string own = server.address("/secured");
    SoapTransportFactory factory(options);
    SoapServiceCall call(factory, settings);
    return call.call({.space = "urn:ImportExportService",
                      .methodName = "importData",
                      .beanType = "HXImportBean",
                      .bean = bean,
                      .address = address.empty() ? own : address,
                      .timeout = timeout,
                      .userId = userId});
  }

  FaultyServer server;
  test::FakeSettings settings;
  HttpOptions options;
  host::ImportBean bean;
  std::string address; ///< empty for the server's own
  std::string userId = "jb";
  std::int32_t timeout = 0;
};

TEST(SoapServiceCall, request_isTheBeanAsOneParameter) {
  Call call;
  call.run();
  EXPECT_EQ(call.server.requests().at(0).body,
            R"(<?xml version="1.0" encoding="UTF-8"?>)"
            R"(<SOAP-ENV:Envelope xmlns:SOAP-ENV="http://schemas.xmlsoap.org/soap/envelope/">)"
            "<SOAP-ENV:Header><userID>jb</userID></SOAP-ENV:Header><SOAP-ENV:Body>"
            R"(<ns1:importData xmlns:ns1="urn:ImportExportService")"
            R"( SOAP-ENV:encodingStyle="http://xml.apache.org/xml-soap/literalxml"><HXImportBean>)"
            "<REQUESTINFORMATION><IMPORTEXPORT>IMPORT</IMPORTEXPORT><DATATYPE>CUSTOMER</DATATYPE>"
            "<SCHEDULE>INSTANT</SCHEDULE><DATAORIGIN>AGENT</DATAORIGIN><DELIMITER>TAB</DELIMITER>"
            "<USERNAME>J. Byrne &amp; Söhne</USERNAME><ALLOWWARNINGS>true</ALLOWWARNINGS>"
            "<ALLOWTRUNCATION>false</ALLOWTRUNCATION></REQUESTINFORMATION>"
            "<LINES><LINE>A\tB &lt;1&gt;\t</LINE><LINE> C\t&#13;D\t</LINE></LINES>"
            "</HXImportBean></ns1:importData></SOAP-ENV:Body></SOAP-ENV:Envelope>");
}

TEST(SoapServiceCall, request_namesTheNamespaceAsItsAction) {
  Call call;
  call.run();
  const FaultyServer::Request request = call.server.requests().at(0);
  EXPECT_EQ(request.line, "POST /secured HTTP/1.1");
  EXPECT_EQ(request.header("SOAPAction"), "\"urn:ImportExportService\"");
  EXPECT_EQ(request.header("Content-Type"), "text/xml; charset=utf-8");
}

TEST(SoapServiceCall, containerWithoutLines_isSentAsAnEmptyElement) {
  Call call;
  call.bean.dataContainer = std::make_shared<host::DataContainer>();
  call.run();
  EXPECT_NE(call.server.requests().at(0).body.find("</REQUESTINFORMATION><LINES/></HXImportBean>"), std::string::npos);
}

TEST(SoapServiceCall, result_isTheFirstParameterAndOutlivesTheCall) {
  const std::shared_ptr<host::SoapNode> result = Call().run();
  ASSERT_NE(result, nullptr);
  EXPECT_EQ(result->name(), "result");
  EXPECT_EQ(result->child("reply")->text(), " 2 lines read ");
  EXPECT_EQ(result->child("hasErrors")->text(), "false");
}

TEST(SoapServiceCall, answerWithoutParameters_hasNoResult) {
  Call call(FaultyServer::ok(R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body>)"
                             R"(<n:importDataResponse xmlns:n="urn:x"/></s:Body></s:Envelope>)"));
  EXPECT_EQ(call.run(), nullptr);
}

TEST(SoapServiceCall, faultOfTheService_isAnErrorWithItsText) {
  Call call(FaultyServer::soapFault("User jb is not known."));
  EXPECT_EQ(failure([&] { call.run(); }), "1006 PugiSoapEnvelope: User jb is not known.");
}

TEST(SoapServiceCall, pageInPlaceOfAnAnswer_isAnError) {
  Call call(FaultyServer::page(200, "<html><body>Sign in</body></html>"));
  EXPECT_EQ(failure([&] { call.run(); }), "1005 PugiSoapEnvelope: The answer is an HTML page and not a SOAP message: "
                                          "\"<html><body>Sign in</body></html>\"");
}

TEST(SoapServiceCall, timeout_isTheOneOfTheRequest) {
  Call call;
  FaultyServer::Answer held = FaultyServer::ok(std::string(kAnswer));
  held.holdAfter = 0;
  call.server.answerWith({held});
  call.timeout = 50;
  EXPECT_EQ(failure([&] { call.run(); }),
            "1002 CurlTransport: No complete answer from " + call.server.address("/secured") + " within the time-out");
}

TEST(SoapServiceCall, proxyPort_isAProxyOnThisMachine) {
  Call call;
  call.address = "http://service.example/secured";
  call.settings.proxy = std::to_string(call.server.port());
  ASSERT_NE(call.run(), nullptr);
  EXPECT_EQ(call.server.requests().at(0).line, "POST http://service.example/secured HTTP/1.1");
}

TEST(SoapServiceCall, certificateThatIsNotTrusted_sendsNothing) {
  const test::TemporaryFolder folder;
  for (const auto& [name, isTrusted] : {std::pair("IP:127.0.0.1", true), {"IP:127.0.0.1", false}, {"DNS:b", true}}) {
    const test::Certificate certificate(name);
    Call call(FaultyServer::ok(std::string(kAnswer)), certificate.makeStream());
    call.address = call.server.address("/secured", "https");
    if (isTrusted)
      call.options.caFile = folder.write("ca.pem", certificate.pem());
    const bool isRight = isTrusted && name == std::string_view("IP:127.0.0.1");
    const std::string error = failure([&] { call.run(); });
    EXPECT_EQ(error.substr(0, error.find(" to ")), isRight ? "" : "1003 CurlTransport: No secure connection") << name;
    EXPECT_EQ(call.server.requests().size(), isRight ? 1U : 0U) << name;
  }
}

TEST(SoapServiceCall, lineThatXmlCannotCarry_sendsNothing) {
  Call call;
  call.bean.dataContainer->lines.add({"A\x02\t"});
  EXPECT_EQ(failure([&] { call.run(); }),
            "1008 PugiSoapEnvelope: The value of LINE has the character U+0002 at position 2, which XML cannot carry");
  EXPECT_TRUE(call.server.requests().empty());
}

TEST(SoapServiceCall, beanWithAPartMissing_sendsNothing) {
  Call call;
  call.bean.dataContainer = nullptr;
  EXPECT_EQ(failure([&] { call.run(); }), "91 SoapServiceCall: Object variable not set");
  call.bean = {nullptr, std::make_shared<host::DataContainer>()};
  EXPECT_EQ(failure([&] { call.run(); }), "91 SoapServiceCall: Object variable not set");
  EXPECT_TRUE(call.server.requests().empty());
}

} // namespace
} // namespace imex::platform
