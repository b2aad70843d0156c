#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace imex::test {
namespace {

using Json = nlohmann::json;

class LineItemCommands : public ProgramTest {
 protected:
  Ended order(const std::string& command, const std::string& bytes, std::vector<std::string> more = {}) {
    const std::string file = folder.write("items.txt", bytes);
    more.insert(more.begin(), {command, file, "--type", "OrderLineItem", "--origin", "agent"});
    const Ended ended = imex(more);
    EXPECT_EQ(bytes, folder.read("items.txt"));
    return ended;
  }
};

TEST_F(LineItemCommands, import_printsRecordsWithTheElevenPropertiesInOrder) {
  const Ended ended = order("import", "12\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n", {"--json"});
  EXPECT_EQ(0, ended.status) << ended.err;
  EXPECT_EQ(R"({
  "outcome": "accepted",
  "records": [
    {
      "quantity": "12",
      "AType": "F1",
      "Brand": "Norvane",
      "CatalogNumber": "NV-1",
      "Col1x": "",
      "Column1Price": "9.50",
      "Column2Price": "",
      "Column3Price": "",
      "Column1Commission": "0.05",
      "Column2Commission": "",
      "Column3Commission": ""
    }
  ],
  "errors": []
}
)",
            ended.out);
}

TEST_F(LineItemCommands, import_printsAnAlignedTable) {
  const Ended ended = order("import", "12\tF1\tÉclair\tNV-1\t9.50\t0.05\r\n1\tLONG TYPE\tNo\tN\t10\t\r\n");
  EXPECT_EQ(0, ended.status) << ended.err;
  EXPECT_EQ("quantity  AType      Brand   CatalogNumber  Column1Price  Column1Commission\n"
            "12        F1         Éclair  NV-1           9.50          0.05\n"
            "1         LONG TYPE  No      N              10\n"
            "Outcome: accepted\n",
            ended.out);
}

TEST_F(LineItemCommands, fieldOfSeveralLines_looksLikeNoLineOfItsOwn) {
  const Ended good = order("import", "12\tF1\tNo\tN\nV\t9.50\t0.05\r\n");
  EXPECT_EQ("quantity  AType  Brand  CatalogNumber  Column1Price  Column1Commission\n"
            "12        F1     No     N\\x0aV         9.50          0.05\n"
            "Outcome: accepted\n",
            good.out);
  const Ended bad = order("import", "1\tF1\tNo\tN\tx\nOutcome: accepted\t0.05\r\n");
  EXPECT_EQ(2, bad.status);
  EXPECT_EQ("Line 1: Field Column 1 price with value x\n        Outcome: accepted must be numeric.\nOutcome: refused\n",
            bad.out);
}

TEST_F(LineItemCommands, badFields_areErrorsByLine) {
  const std::string bytes = "100000\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n1\tELEVEN CHAR\tB\tN\tx\t2\r\n";
  const Ended ended = order("import", bytes, {"--json"});
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("", ended.err);
  EXPECT_EQ(
      (Json{{"outcome", "refused"},
            {"records", Json::array()},
            {"errors",
             {{{"line", 1},
               {"error", "The amount of field Quantity with value 100000 exceeds the maximum amount 99999 ."}},
              {{"line", 2},
               {"error", "The maximum length of Type with value ELEVEN CHAR has been exceeded.  The maximum "
                         "length is 10."}},
              {{"line", 2}, {"error", "Field Column 1 price with value x must be numeric."}},
              {{"line", 2},
               {"error", "The amount of field Column 1 commission with value 2 exceeds the maximum amount 1 ."}}}}}),
      Json::parse(ended.out));
}

TEST_F(LineItemCommands, check_printsTheErrorsAndNoRecords) {
  const Ended good = order("check", "12\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n");
  EXPECT_EQ(0, good.status);
  EXPECT_EQ("Outcome: accepted\n", good.out);
  const Ended bad = order("check", "-1\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n");
  EXPECT_EQ(2, bad.status);
  EXPECT_EQ("Line 1: Field Quantity cannot be negative.\nOutcome: refused\n", bad.out);
}

TEST_F(LineItemCommands, badlyDelimitedLine_haltsTheImport) {
  const Ended ended = order("import", "12\tF1\tNorvane\tNV-1\t9.50\r\n");
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Corvana Maintenance:  The import file is not properly delimited.\r\n The import has been halted.\n",
            ended.err);
  EXPECT_EQ("Outcome: refused\n", ended.out);
}

TEST_F(LineItemCommands, fiveHundredLines_areTheMost) {
  std::string bytes;
  for (int i = 1; i <= 500; ++i)
    bytes += "1\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n";
  const Ended most = order("import", bytes, {"--json"});
  EXPECT_EQ(0, most.status);
  EXPECT_EQ(500U, Json::parse(most.out)["records"].size());
  const Ended tooMany = order("import", bytes + "1\tF1\tNorvane\tNV-1\t9.50\t0.05\r\n");
  EXPECT_EQ(2, tooMany.status);
  EXPECT_EQ("Corvana: The maximum number of order line items that can be imported at one time is 500. You have "
            "attempted to import 501 lines.\r\nYou may create mulitple files with 500 or less lines from your large "
            "import file and import them separately if you wish.\n",
            tooMany.err);
}

TEST_F(LineItemCommands, skippedLinesOnly_areNoRecords) {
  const Ended ended = order("import", "\t\t\t\t\t\r\n\r\n", {"--json"});
  EXPECT_EQ(0, ended.status);
  EXPECT_EQ((Json{{"outcome", "accepted"}, {"records", Json::array()}, {"errors", Json::array()}}),
            Json::parse(ended.out));
}

TEST_F(LineItemCommands, missingFile_isNamed) {
  const std::string file = folder / "none.txt";
  const Ended ended = imex({"import", file, "--type", "QUOTELINEITEM", "--origin", "AGENT", "--json"});
  EXPECT_EQ(66, ended.status);
  EXPECT_EQ("Corvana Maintenance: Unable to open the file selected. Please try again.\nimex: " + file +
                ": File not found (error 53)\n",
            ended.err);
  EXPECT_EQ("unreadable", Json::parse(ended.out)["outcome"]);
}

TEST_F(LineItemCommands, formatFileOfFewerColumnsThanTheRecord_isSaid) {
  for (const char* name : {"formatagentcustomer.dat", "formathalvikcustomer.dat", "formatagentproduct.dat",
                           "formatagentproject.dat", "formatagentquote.dat", "formatagentinvoice.dat",
                           "formatagentcommission.dat", "formathalvikballasts.dat", "formatagentorder.dat"})
    folder.write(std::string("app/docs/") + name, "One\r\nTwo\r\nThree\r\n");
  const Ended ended = order("import", "12\tF1\tNorvane\r\n", {"--app-dir", folder / "app"});
  EXPECT_EQ(2, ended.status);
  EXPECT_EQ("Error Number: 9 - Subscript out of range: The requested operation could not be completed.\nimex: " +
                (folder / "items.txt") + ": Subscript out of range (error 9)\n",
            ended.err);
}

TEST_F(LineItemCommands, samples_giveWhatTheirReadmeSays) {
  const struct {
    const char* name;
    const char* type;
    std::size_t records;
    std::size_t errors;
  } samples[] = {{"project-items", "PROJECTLINEITEM", 7, 0},
                 {"quote-items", "QUOTELINEITEM", 6, 0},
                 {"order-items", "ORDERLINEITEM", 6, 0},
                 {"project-items-broken", "PROJECTLINEITEM", 0, 9},
                 {"quote-items-broken", "QUOTELINEITEM", 0, 9},
                 {"order-items-broken", "ORDERLINEITEM", 0, 6},
                 {"project-items-refused", "PROJECTLINEITEM", 0, 0}};
  for (const auto& sample : samples) {
    const Ended ended = imex({"import", std::string(IMEX_SOURCE_DIR "/share/samples/") + sample.name + ".txt", "--type",
                              sample.type, "--origin", "AGENT", "--json"});
    const Json json = Json::parse(ended.out);
    EXPECT_EQ(sample.records, json["records"].size()) << sample.name;
    EXPECT_EQ(sample.errors, json["errors"].size()) << sample.name;
    EXPECT_EQ(sample.records > 0 ? 0 : 2, ended.status) << sample.name;
  }
}

} // namespace
} // namespace imex::test
