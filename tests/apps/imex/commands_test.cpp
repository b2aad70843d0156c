#include "ProgramTest.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace imex::test {
namespace {

using testing::HasSubstr;

class Commands : public ProgramTest {
 protected:
  Ended check(const std::string& bytes, std::vector<std::string> more = {}) {
    const std::string file = folder.write("file.txt", bytes);
    more.insert(more.begin(), {"check", file, "--type", "CUSTOMER", "--origin", "AGENT"});
    return imex(more);
  }
};

constexpr const char* kRequired =
    "The following fields are required when importing customers using the agent format:\r\n"
    "Firm name, Address 1, City, State, Zip, Phone Number, Customer Type.";

TEST_F(Commands, checkListsEveryFailingLineUnderItsNumberInTheFile) {
  const Ended ended = check(customer("C1") + "\r\n\r\n" + customer("C2", "") + "\r\nshort\r\n" + customer("C3") +
                                "\r\n" + customer("C4", "") + "\r\n",
                            {"--json"});
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("", ended.err);
  const auto json = nlohmann::json::parse(ended.out);
  EXPECT_EQ("refused", json["outcome"]);
  EXPECT_TRUE(json["reply"].is_null());
  EXPECT_TRUE(json["report"].is_null());
  ASSERT_EQ(3U, json["lines"].size());
  EXPECT_EQ((nlohmann::json{
                {"line", 3}, {"successful", false}, {"errors", {kRequired}}, {"warnings", nlohmann::json::array()}}),
            json["lines"][0]);
  EXPECT_EQ(4, json["lines"][1]["line"]);
  EXPECT_EQ(6, json["lines"][2]["line"]);
}

TEST_F(Commands, checkOfAGoodFile_isAccepted) {
  const Ended ended = check(customer("C1") + "\r\n");
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("Outcome: accepted\n", ended.out);
}

TEST_F(Commands, checkKnowsTheCentralServer) {
  std::string line = customer("C1");
  line.replace(line.find("\tA\t"), 3, "\td\t");
  EXPECT_EQ(0, check(line).status);
  const Ended ended = check(line, {"--central"});
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Line 1: failed\n  Error:     Distributor import not allowed on Central Server.\n"
            "             Please contact Corvana Support for more Information.\nOutcome: refused\n",
            ended.out);
}

TEST_F(Commands, templateIsTheColumnNamesOnOneLine) {
  std::string names = readFile(IMEX_SOURCE_DIR "/share/docs/formatagentcommission.dat");
  for (std::size_t at = names.find("\r\n"); at != std::string::npos; at = names.find("\r\n"))
    names.replace(at, 2, at + 2 == names.size() ? "\n" : "\t");
  const Ended ended = imex({"template", "--type", "commission", "--origin", "agent"});
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ(names, ended.out);
}

TEST_F(Commands, formatsListsTheCatalogueInItsOrder) {
  const Ended ended = imex({"formats"});
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ("TYPE             ORIGIN  COLUMNS\n"
            "CUSTOMER         AGENT   20\n"
            "CUSTOMER         HALVIK  13\n"
            "PRODUCT          AGENT   18\n"
            "PROJECTLINEITEM  AGENT   10\n"
            "QUOTELINEITEM    AGENT   10\n"
            "ORDERLINEITEM    AGENT   6\n"
            "INVOICE          AGENT   14\n"
            "COMMISSION       AGENT   12\n"
            "BALLASTS         HALVIK  14\n",
            ended.out);
}

TEST_F(Commands, unknownFormat_isWrongUse) {
  for (const char* command : {"template", "check", "import"}) {
    std::vector<std::string> arguments = {command};
    if (command != std::string("template"))
      arguments.push_back(folder / "none.txt");
    arguments.insert(arguments.end(), {"--type", "INVOICE", "--origin", "HALVIK"});
    const Ended ended = imex(arguments);
    EXPECT_EQ(64, ended.status);
    EXPECT_EQ(
        "imex: there is no format of the type \"INVOICE\" and the origin \"HALVIK\"; \"imex formats\" lists them\n",
        ended.err);
  }
}

TEST_F(Commands, missingFormatFile_isNamedAndTheOthersBeforeItWork) {
  for (const char* name : {"formatagentcustomer.dat", "formathalvikcustomer.dat"})
    folder.write(std::string("app/docs/") + name, "One\r\nTwo\r\n");
  const std::string app = folder / "app";
  const std::string box =
      "Error Number: 53 - File not found: An error was encountered while attempting read dat file (" + app +
      "\\docs\\formatagentproduct.dat).\r\nSome file types will not be editable. Please "
      "contact production support to have this corrected.\n";
  const Ended customers = imex({"template", "--type", "CUSTOMER", "--origin", "AGENT", "--app-dir", app});
  EXPECT_EQ(0, customers.status);
  EXPECT_EQ("One\tTwo\n", customers.out);
  EXPECT_EQ(box, customers.err);
  const Ended products = imex({"template", "--type", "PRODUCT", "--origin", "AGENT", "--app-dir", app});
  EXPECT_EQ(66, products.status);
  EXPECT_EQ(box, products.err);
}

TEST_F(Commands, aPairThatOnlyJoinsToAKnownKey_isWrongUse) {
  const std::string file = folder.write("file.txt", customer("C1"));
  for (const auto& [type, origin] :
       {std::pair{"CUSTOMERA", "GENT"}, std::pair{"", "CUSTOMERAGENT"}, std::pair{"ORDER", "LINEITEMAGENT"}}) {
    EXPECT_EQ(64, imex({"import", file, "--type", type, "--origin", origin}).status) << type << origin;
    EXPECT_EQ(64, imex({"check", file, "--type", type, "--origin", origin}).status) << type << origin;
  }
}

TEST_F(Commands, checkListsALineThatCannotBeChecked) {
  const Ended ended = check(customer("C1") + "\r\n" + customer("C2", std::string(40000, 'n')) + "\r\n");
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Line 2: failed\n  Error:     The line cannot be checked: Overflow (error 6)\nOutcome: refused\n",
            ended.out);
}

TEST_F(Commands, jsonIsPrintedWhateverHappens) {
  const std::string app = folder / "none";
  for (const char* type : {"CUSTOMER", "ORDERLINEITEM"}) {
    const Ended ended =
        imex({"import", folder / "none.txt", "--type", type, "--origin", "AGENT", "--app-dir", app, "--json"});
    EXPECT_EQ(66, ended.status);
    EXPECT_EQ("unreadable", nlohmann::json::parse(ended.out)["outcome"]);
  }
  const Ended ended = imex({"template", "--type", "CUSTOMER", "--origin", "AGENT", "--app-dir", app, "--json"});
  EXPECT_EQ(66, ended.status);
  EXPECT_TRUE(nlohmann::json::parse(ended.out)["columns"].empty());
}

TEST_F(Commands, outputThatIsNotTaken_isSaid) {
  for (const char* arguments : {"formats", "formats --json", "--help", "--version"}) {
    const Ended ended = run("/bin/sh", {"-c", std::string(IMEX_PROGRAM " --app-dir " IMEX_SOURCE_DIR "/share ") +
                                                  arguments + " > /dev/full"});
    EXPECT_EQ(74, ended.status) << arguments;
    EXPECT_EQ("imex: the results cannot be written to standard output\n", ended.err) << arguments;
  }
}

TEST_F(Commands, traceHasALineForEachCall) {
  const std::string trace = folder / "trace.log";
  EXPECT_EQ(0, imex({"formats", "--trace", trace}).status);
  const std::string lines = readFile(trace);
  EXPECT_EQ(2, std::count(lines.begin(), lines.end(), '\n'));
  EXPECT_THAT(lines, HasSubstr("\ttrace\tImExModule\tinitialize()\tEntering Method...\n"));
  EXPECT_THAT(lines, HasSubstr("\ttrace\tImExModule\tinitialize()\tExiting Method...\n"));
}

TEST_F(Commands, traceFileThatCannotBeOpened_isNamed) {
  const std::string trace = folder.path().string();
  const Ended ended = imex({"formats", "--trace", trace});
  EXPECT_EQ(66, ended.status);
  EXPECT_THAT(ended.err, HasSubstr(trace));
}

} // namespace
} // namespace imex::test
