#include "ProgramTest.h"
#include "support/golden.h"

namespace imex::test {
namespace {

/// One kind of file and what is expected of its request.
struct Format {
  std::string dataType;
  std::string dataOrigin;
  std::string file;   ///< its bytes
  std::string action; ///< the SOAPAction, without quotes
  std::string path;   ///< of the address

  std::string name() const { return dataType + dataOrigin; }
};

void PrintTo(const Format& format, std::ostream* stream) {
  *stream << format.name();
}

std::string fields(std::initializer_list<std::string_view> start, std::size_t count) {
  std::vector<std::string_view> all(start);
  all.resize(count, "x");
  std::string line;
  for (std::size_t i = 0; i < count; ++i)
    line += (i == 0 ? std::string() : std::string("\t")) + std::string(all[i]);
  return line + "\r\n";
}

constexpr const char* kSecured = "urn:ImportExportService";
constexpr const char* kUnsecured = "urn:UnsecuredImportExportService";

std::vector<Format> formats() {
  return {
      {"CUSTOMER", "AGENT", customer("c1", "Müller & Sons <Lighting>") + "\r\n\r\n" + customer("c2") + "\r\n", kSecured,
       "/secured"},
      {"CUSTOMER", "HALVIK", fields({"1001", "1"}, 13), kSecured, "/secured"},
      {"PRODUCT", "AGENT", fields({"cat-1", "6\" pendant, \"Joe's\"", "Brand"}, 18), kSecured, "/secured"},
      {"INVOICE", "AGENT", fields({"inv'1", "1", "\"2024\""}, 14), kSecured, "/secured"},
      {"COMMISSION", "AGENT", fields({"st-1"}, 12), kSecured, "/secured"},
      {"BALLASTS", "HALVIK", fields({"bal-1"}, 14), kUnsecured, "/unsecured"},
  };
}

class RequestBytes : public ProgramTest, public testing::WithParamInterface<std::tuple<Format, std::string>> {};

TEST_P(RequestBytes, areThoseOfTheFormatAndTheRoad) {
  const auto& [format, road] = GetParam();
  const FaultyServer server(FaultyServer::ok(soapAnswer(acceptedLine())));
  use(server);
  const std::string file = folder.write("import.txt", format.file);

  const Ended ended = imex(
      {"import", file, "--type", format.dataType, "--origin", format.dataOrigin, "--road", road, "--allow-warnings"});

  EXPECT_EQ(0, ended.status) << ended.err;
  const auto requests = server.requests();
  ASSERT_EQ(1U, requests.size());
  EXPECT_EQ(golden("apps/imex/golden/" + format.name() + "-" + road + ".xml", requests[0].body), requests[0].body);
  EXPECT_EQ("POST " + format.path + " HTTP/1.1", requests[0].line);
  EXPECT_EQ("\"" + format.action + "\"", requests[0].header("SOAPAction"));
  EXPECT_EQ("text/xml; charset=utf-8", requests[0].header("Content-Type"));
  EXPECT_EQ(format.file, folder.read("import.txt"));
}

INSTANTIATE_TEST_SUITE_P(imex, RequestBytes,
                         testing::Combine(testing::ValuesIn(formats()), testing::Values("send", "instant")),
                         [](const auto& of) { return std::get<0>(of.param).name() + "_" + std::get<1>(of.param); });

} // namespace
} // namespace imex::test
