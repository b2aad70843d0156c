#include "ProgramTest.h"

#include <filesystem>

namespace imex::test {
namespace {

using testing::HasSubstr;

/// What an exchange that fails leaves behind, whatever the fault: the words, the status, the file as it was, no page.
class BadAnswer : public RoadTest {
 protected:
  void SetUp() override { m_file = folder.write("customers.txt", m_bytes); }

  Ended importFrom(const FaultyServer& server, std::vector<std::string> more = {}) {
    use(server);
    return importOnRoad(m_file, std::move(more));
  }

  /// The reason stands alone on the send road, and inside the words for the user on the instant road.
  std::string words(const std::string& reason) const {
    if (GetParam() == "send")
      return "imex: " + reason + "\n";
    return "imex: Exception while attempting to import CUSTOMER. \n" + reason + ".\n";
  }

  void expectFailure(const Ended& ended, const std::string& err) const {
    EXPECT_EQ(3, ended.status);
    EXPECT_EQ(err, ended.err);
    EXPECT_EQ("Outcome: failed\n", ended.out);
    EXPECT_EQ(m_bytes, folder.read("customers.txt"));
    EXPECT_FALSE(std::filesystem::exists(folder / "validationresults.html"));
  }

  /// The line that says what an error means that has only a standing text.
  std::string answerLine() const { return "imex: the answer of " + secured + " could not be understood\n"; }

  /// The line that names the address where the reason does not.
  std::string addressLine() const { return "imex: the address was " + secured + "\n"; }

 private:
  const std::string m_bytes = customer("C1") + "\r\n";
  std::string m_file;
};

TEST_P(BadAnswer, serviceIsDown_namesTheAddress) {
  const ClosedPort port;
  secured = "http://127.0.0.1:" + std::to_string(port.number()) + "/secured";
  const Ended ended = importOnRoad(folder / "customers.txt");
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(secured));
  EXPECT_EQ("Outcome: failed\n", ended.out);
}

TEST_P(BadAnswer, slowerThanTheTimeout_namesTheAddress) {
  FaultyServer::Answer answer = FaultyServer::ok(soapAnswer(acceptedLine()));
  answer.holdAfter = 0;
  const FaultyServer server(answer);
  use(server);
  // Ballasts are what the time-out holds for on both roads.
  const std::string file = folder.write("ballasts.txt", std::string(13, '\t') + "\r\n");
  const Ended ended =
      imex({"import", file, "--type", "BALLASTS", "--origin", "HALVIK", "--road", GetParam(), "--timeout", "50"});
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(unsecured));
  EXPECT_EQ("Outcome: failed\n", ended.out);
}

TEST_P(BadAnswer, cutInMidAnswer_namesTheAddress) {
  FaultyServer::Answer answer = FaultyServer::ok(soapAnswer(acceptedLine()));
  answer.cutAfter = answer.bytes().size() - 20;
  const FaultyServer server(answer);
  const Ended ended = importFrom(server);
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(secured));
  EXPECT_EQ("Outcome: failed\n", ended.out);
}

TEST_P(BadAnswer, html_isNoSoapAnswer) {
  const FaultyServer server(FaultyServer::page(200, "<html><body>Welcome</body></html>"));
  const Ended ended = importFrom(server);
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("Welcome"));
  EXPECT_THAT(ended.err, HasSubstr(addressLine()));
}

TEST_P(BadAnswer, passwordInTheAddress_isNotShown) {
  const FaultyServer server(FaultyServer::ok(""));
  use(server);
  secured.replace(0, 7, "http://ann:secret@");
  const Ended ended = importOnRoad(folder / "customers.txt");
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, testing::Not(HasSubstr("secret")));
  EXPECT_THAT(ended.err,
              HasSubstr("imex: the address was http://***@127.0.0.1:" + std::to_string(server.port()) + "/secured\n"));
}

TEST_P(BadAnswer, emptyBody_isNoSoapAnswer) {
  const FaultyServer server(FaultyServer::ok(""));
  const Ended ended = importFrom(server);
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(addressLine()));
}

TEST_P(BadAnswer, status500WithFault_isTheFaultText) {
  const FaultyServer server(FaultyServer::soapFault("The service is closed on Sundays"));
  const Ended ended = importFrom(server);
  expectFailure(ended, words("The service is closed on Sundays") + addressLine());
}

TEST_P(BadAnswer, status500WithoutFault_namesStatusAndAddress) {
  const FaultyServer server(FaultyServer::page(500, "<html><body>Oops</body></html>"));
  const Ended ended = importFrom(server);
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("500"));
  EXPECT_THAT(ended.err, HasSubstr(secured));
}

TEST_P(BadAnswer, lineNumberPast16Bits_isAnOverflow) {
  const FaultyServer server(FaultyServer::ok(soapAnswer(acceptedLine("40000"))));
  const Ended ended = importFrom(server);
  expectFailure(ended, words("Overflow") + answerLine());
}

TEST_P(BadAnswer, greatestLineNumber_isAccepted) {
  const FaultyServer server(FaultyServer::ok(soapAnswer(acceptedLine("32767"))));
  const Ended ended = importFrom(server);
  EXPECT_EQ(0, ended.status);
  EXPECT_THAT(ended.out, HasSubstr("Line 32767: accepted\n"));
}

TEST_P(BadAnswer, booleanMaybe_isATypeMismatch) {
  const FaultyServer server(FaultyServer::ok(soapAnswer(acceptedLine("1", "maybe"))));
  const Ended ended = importFrom(server);
  expectFailure(ended, words("Type mismatch") + answerLine());
}

TEST_P(BadAnswer, withoutAResult_isNotUnderstood) {
  const FaultyServer server(FaultyServer::ok(
      R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><answer/></s:Body></s:Envelope>)"));
  const Ended ended = importFrom(server);
  expectFailure(ended,
                words(GetParam() == "send" ? "Object variable not set" : "Subscript out of range") + answerLine());
}

TEST_P(BadAnswer, ofOtherElements_isNotUnderstood) {
  const FaultyServer server(FaultyServer::ok(soapAnswer("<price>12</price>")));
  const Ended ended = importFrom(server);
  expectFailure(ended, words("Type mismatch") + answerLine());
}

TEST_P(BadAnswer, replyOfSeveralLines_looksLikeNoOutcome) {
  std::string answer = acceptedLine();
  answer.replace(answer.find("Done."), 5, "x&#10;Outcome: rejected&#x202E;");
  const FaultyServer server(FaultyServer::ok(soapAnswer(answer)));
  const Ended ended = importFrom(server);
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("Line 1: accepted\nReply:   x\n         Outcome: rejected\\u202e\nOutcome: accepted\nReport:  " +
                (folder / "validationresults.html") + "\n",
            ended.out);
}

TEST_P(BadAnswer, documentTypeWithEntities_isRefusedAndNotExpanded) {
  const FaultyServer server(FaultyServer::ok(
      R"(<?xml version="1.0"?><!DOCTYPE a [<!ENTITY e "expanded">]>)"
      R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><a><b><reply>&e;</reply></b></a></s:Body></s:Envelope>)"));
  const Ended ended = importFrom(server);
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("document type"));
  EXPECT_THAT(ended.err, HasSubstr(addressLine()));
}

TEST_P(BadAnswer, folderOfTheFileIsFullOfAFolderOfThePagesName_keepsTheVerdict) {
  std::filesystem::create_directories(folder / "validationresults.html");
  const FaultyServer server(FaultyServer::ok(soapAnswer(acceptedLine())));
  const Ended ended = importFrom(server);
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("imex: The server responded, but the results could not be displayed.\nimex: " +
                (folder / "validationresults.html") + ": Path/File access error (error 75)\n",
            ended.err);
  EXPECT_EQ("Line 1: accepted\nReply:   Done.\nOutcome: accepted\n", ended.out);
}

/// The words for the user say only that there is no request.
TEST_F(ProgramTest, userThatXmlCannotCarry_isExplainedOnTheInstantRoad) {
  const std::string file = folder.write("customers.txt", customer("C1"));
  const struct {
    const char* option;
    const char* words;
    const char* element;
  } cases[] = {{"--user", "Unable to create a request to process.", "USERNAME"},
               {"--user-id", "An environment error has been detected.", "userID"}};
  for (const auto& [option, words, element] : cases) {
    const Ended ended = importCustomers(file, {"--road", "instant", option, "a\x01"});
    EXPECT_EQ(3, ended.status);
    EXPECT_EQ(
        std::string("imex: ") + words + "\nimex: The value of " + element +
            " has the character U+0001 at position 2, which XML cannot carry (error 1008)\nimex: the address was " +
            secured + "\n",
        ended.err);
  }
}

INSTANTIATE_TEST_SUITE_P(imex, BadAnswer, testing::Values("send", "instant"),
                         [](const auto& road) { return road.param; });

} // namespace
} // namespace imex::test
