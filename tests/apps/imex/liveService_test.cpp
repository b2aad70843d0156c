#include "ProgramTest.h"

#include <nlohmann/json.hpp>

#include <memory>

namespace imex::test {
namespace {

using testing::HasSubstr;

/// The repository's samples, imported into a service of the test's own with an empty store.
class LiveService : public RoadTest {
 protected:
  LiveService() { start(); }

  void start() {
    m_service = std::make_unique<BackgroundProcess>(
        IMPORT_SERVICE_PROGRAM, std::vector<std::string>{"--app-dir", IMEX_SOURCE_DIR "/share", "--store",
                                                         "sqlite://" + (folder / "store.db"), "--user", "agent1"});
    const std::string line = m_service->readLine();
    const std::string address = line.substr(line.find("http://"));
    secured = address + "/secured";
    unsecured = address + "/unsecured";
  }

  void restart() {
    m_service.reset();
    start();
  }

  /// Imports a copy of a sample.
  Ended sample(const std::string& name, const std::string& type, const std::string& origin,
               std::vector<std::string> more = {}) {
    const std::string file = folder.write(name, readFile(std::string(IMEX_SOURCE_DIR "/share/samples/") + name));
    more.insert(more.begin(), {"import", file, "--type", type, "--origin", origin, "--road", GetParam(), "--json"});
    return imex(more);
  }

  static std::vector<int> linesWithTexts(const std::string& out, const char* list) {
    std::vector<int> lines;
    const auto json = nlohmann::json::parse(out);
    for (const auto& line : json["lines"]) {
      if (!line[list].empty())
        lines.push_back(line["line"]);
    }
    return lines;
  }

 private:
  std::unique_ptr<BackgroundProcess> m_service;
};

struct Sample {
  const char* name;
  const char* type;
  const char* origin;
};

constexpr Sample kSamples[] = {{"customers-agent", "CUSTOMER", "AGENT"},
                               {"products-agent", "PRODUCT", "AGENT"},
                               {"invoices-agent", "INVOICE", "AGENT"},
                               {"commissions-agent", "COMMISSION", "AGENT"}};

TEST_P(LiveService, goodSamples_areAcceptedLineByLine) {
  for (const Sample& good : kSamples) {
    const Ended ended = sample(std::string(good.name) + ".txt", good.type, good.origin);
    EXPECT_EQ(0, ended.status) << good.name << ended.err;
    const auto json = nlohmann::json::parse(ended.out);
    EXPECT_EQ("accepted", json["outcome"]);
    EXPECT_EQ(folder / "validationresults.html", json["report"]);
    EXPECT_FALSE(json["lines"].empty());
    int number = 0;
    for (const auto& line : json["lines"]) {
      EXPECT_EQ(++number, line["line"]);
      EXPECT_EQ(true, line["successful"]);
    }
  }
}

TEST_P(LiveService, brokenSamples_areRejectedAndNothingOfThemIsStored) {
  for (const Sample& broken : kSamples) {
    const Ended first = sample(std::string(broken.name) + "-broken.txt", broken.type, broken.origin);
    EXPECT_EQ(1, first.status) << broken.name << first.err;
    EXPECT_EQ("rejected", nlohmann::json::parse(first.out)["outcome"]);
    EXPECT_NE(std::vector<int>{}, linesWithTexts(first.out, "errors"));
    // Had a line been stored, it would be there already now.
    const Ended second = sample(std::string(broken.name) + "-broken.txt", broken.type, broken.origin);
    EXPECT_EQ(std::vector<int>{}, linesWithTexts(second.out, "warnings"));
  }
}

TEST_P(LiveService, secondImport_warnsThatRowsAreThere_alsoAfterARestart) {
  const Ended first = sample("customers-agent.txt", "CUSTOMER", "AGENT");
  EXPECT_EQ(0, first.status);
  restart();
  const Ended second = sample("customers-agent.txt", "CUSTOMER", "AGENT");
  EXPECT_EQ(1, second.status);
  EXPECT_EQ(10U, linesWithTexts(second.out, "warnings").size());
  const Ended allowed = sample("customers-agent.txt", "CUSTOMER", "AGENT", {"--allow-warnings"});
  EXPECT_EQ(0, allowed.status);
  EXPECT_EQ(10U, linesWithTexts(allowed.out, "warnings").size());
}

TEST_P(LiveService, ballasts_areJudgedOnTheInstantRoadAndSentUnreadOnTheOther) {
  const Ended ended = sample("ballasts-halvik.txt", "BALLASTS", "HALVIK");
  EXPECT_EQ(0, ended.status) << ended.err;
  const auto json = nlohmann::json::parse(ended.out);
  EXPECT_EQ(GetParam() == "send" ? "sent" : "accepted", json["outcome"]);
  EXPECT_EQ(GetParam() == "send", json["report"].is_null());
}

TEST_P(LiveService, customersInTheManufacturersLayout_areSentOnTheInstantRoadOnly) {
  const Ended ended = sample("customers-halvik.txt", "CUSTOMER", "HALVIK");
  if (GetParam() == "instant") {
    EXPECT_EQ(0, ended.status) << ended.err;
    EXPECT_FALSE(nlohmann::json::parse(ended.out)["lines"].empty());
  } else {
    EXPECT_THAT(ended.err, HasSubstr("none was sent (--road instant)"));
    EXPECT_TRUE(nlohmann::json::parse(ended.out)["lines"].empty());
  }
}

TEST_P(LiveService, unknownUser_isRefusedByTheService) {
  const Ended ended = sample("customers-agent.txt", "CUSTOMER", "AGENT", {"--user-id", "nobody"});
  EXPECT_EQ(3, ended.status);
  EXPECT_THAT(ended.err, HasSubstr("nobody"));
}

TEST_P(LiveService, pageHasEveryLineAndTheEditorsFileIsAsItWas) {
  const Ended ended = sample("products-agent-broken.txt", "PRODUCT", "AGENT");
  EXPECT_EQ(1, ended.status);
  const std::string page = folder.read("validationresults.html");
  EXPECT_TRUE(page.starts_with("<html>\r\n"));
  EXPECT_THAT(page, HasSubstr("LINE # : 8   DATA    : "));
  EXPECT_THAT(page, HasSubstr("<font color= red>\r\nLINE # : 8   ERROR   : "));
  EXPECT_EQ(readFile(IMEX_SOURCE_DIR "/share/samples/products-agent-broken.txt"),
            folder.read("products-agent-broken.txt"));
}

INSTANTIATE_TEST_SUITE_P(imex, LiveService, testing::Values("send", "instant"),
                         [](const auto& road) { return road.param; });

} // namespace
} // namespace imex::test
