#include "ProgramTest.h"

namespace imex::test {

ProgramTest::ProgramTest() = default;

std::vector<std::string> ProgramTest::withSettings(const std::vector<std::string>& arguments) const {
  std::vector<std::string> all = {"--app-dir",   IMEX_SOURCE_DIR "/share",
                                  "--secured",   secured,
                                  "--unsecured", unsecured,
                                  "--user",      "Ann Agent",
                                  "--user-id",   "agent1"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return all;
}

Ended ProgramTest::imex(const std::vector<std::string>& arguments) const {
  return run(IMEX_PROGRAM, withSettings(arguments), {"XDG_CACHE_HOME=" + (folder / "cache")});
}

Ended ProgramTest::imexInShell(const std::string& script, const std::vector<std::string>& arguments) const {
  std::vector<std::string> all = withSettings(arguments);
  all.insert(all.begin(), {"-c", script, "sh", IMEX_PROGRAM});
  return run("/bin/sh", all, {"XDG_CACHE_HOME=" + (folder / "cache")});
}

Ended ProgramTest::importCustomers(const std::string& file, std::vector<std::string> more) const {
  more.insert(more.begin(), {"import", file, "--type", "CUSTOMER", "--origin", "AGENT"});
  return imex(more);
}

void ProgramTest::use(const FaultyServer& server) {
  secured = server.address("/secured");
  unsecured = server.address("/unsecured");
}

Ended RoadTest::importOnRoad(const std::string& file, std::vector<std::string> more) const {
  more.insert(more.end(), {"--road", GetParam()});
  return importCustomers(file, std::move(more));
}

std::string customer(std::string_view code, std::string_view name, std::string_view delimiter) {
  std::vector<std::string> fields(kCustomerFields);
  fields[0] = code;
  fields[1] = name;
  fields[2] = "12 Main Street";
  fields[5] = "Columbus";
  fields[6] = "OH";
  fields[7] = "43004";
  fields[10] = "614-555-0100";
  fields[12] = "A";
  std::string line;
  for (std::size_t i = 0; i < fields.size(); ++i)
    line += (i == 0 ? std::string() : std::string(delimiter)) + fields[i];
  return line;
}

std::string soapAnswer(std::string_view result) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>)"
         R"(<s:Envelope xmlns:s="http://schemas.xmlsoap.org/soap/envelope/"><s:Body><answer><return>)" +
         std::string(result) + "</return></answer></s:Body></s:Envelope>";
}

std::string acceptedLine(std::string_view lineNumber, std::string_view successful) {
  return "<reply>Done.</reply><hasErrors>false</hasErrors><hasWarnings>false</hasWarnings>"
         "<importExportResultBean><item><isIuccessful>" +
         std::string(successful) + "</isIuccessful><line>THE LINE</line><lineNumber>" + std::string(lineNumber) +
         "</lineNumber><errors/><warnings/></item></importExportResultBean>";
}

} // namespace imex::test
