#include "apps/import_service/requests.h"
#include "import_service/ImportService.h"
#include "runtime/text.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::import_service::test {

/// A sample file, sent as a client sends it, and the lines that carry errors.
struct Sample {
  std::string file;
  std::string method;
  std::string dataType;
  std::string dataOrigin;
  std::vector<std::size_t> failing;
};

void PrintTo(const Sample& sample, std::ostream* out) {
  *out << sample.file;
}

std::vector<std::string> linesOf(const Sample& sample) {
  std::string text = upperCase(imex::test::readFile(IMEX_SOURCE_DIR "/share/samples/" + sample.file + ".txt"));
  if (sample.dataType == "PRODUCT")
    text = without(text, "'\"");
  std::vector<std::string> lines;
  for (std::size_t end = text.find("\r\n"); end != std::string::npos; end = text.find("\r\n")) {
    lines.push_back(text.substr(0, end));
    text.erase(0, end + 2);
  }
  return lines;
}

class Samples : public testing::TestWithParam<Sample> {};

TEST_P(Samples, areJudgedAsTheyAreDescribed) {
  const Sample& sample = GetParam();
  const Endpoint& endpoint = sample.dataType == "BALLASTS" ? kUnsecured : kSecured;
  Store store(StoreUrl::parse("sqlite://:memory:"));
  ImportService service(loadFormats(IMEX_SOURCE_DIR "/share"), {"agent1"}, store, [](const std::string&) {});
  RequestParts parts;
  parts.method = sample.method;
  parts.space = endpoint.space;
  parts.dataType = sample.dataType;
  parts.dataOrigin = sample.dataOrigin;
  parts.delimiter = "TAB";
  parts.lines = linesOf(sample);
  ASSERT_FALSE(parts.lines.empty());

  const Answer answer = service.answer(endpoint, requestXml(parts));
  ASSERT_EQ(answer.status, 200) << answer.body;
  std::vector<std::size_t> failing;
  const std::vector<std::string> errors = elements(answer.body, "errors");
  for (std::size_t i = 0; i < errors.size(); ++i)
    if (!errors[i].empty())
      failing.push_back(i + 1);
  EXPECT_EQ(failing, sample.failing) << answer.body;
  EXPECT_EQ(store.rowCounts().empty(), !sample.failing.empty());
}

INSTANTIATE_TEST_SUITE_P(
    ImportService, Samples,
    testing::Values(Sample{"customers-agent", "importData", "CUSTOMER", "AGENT", {}},
                    Sample{"customers-agent-broken", "importData", "CUSTOMER", "AGENT", {2, 4, 5, 7, 8}},
                    Sample{"customers-halvik", "importCustomersInstant", "CUSTOMER", "HALVIK", {}},
                    Sample{"customers-halvik-broken", "importCustomersInstant", "CUSTOMER", "HALVIK", {2, 3, 5, 6}},
                    Sample{"products-agent", "importProductsInstant", "PRODUCT", "AGENT", {}},
                    Sample{"products-agent-broken", "importProductsInstant", "PRODUCT", "AGENT", {2, 4, 5, 6, 8}},
                    Sample{"invoices-agent", "importInvoicesInstant", "INVOICE", "AGENT", {}},
                    Sample{"invoices-agent-broken", "importInvoicesInstant", "INVOICE", "AGENT", {2, 3, 5, 6, 8}},
                    Sample{"commissions-agent", "importCommissionsInstant", "COMMISSION", "AGENT", {}},
                    Sample{
                        "commissions-agent-broken", "importCommissionsInstant", "COMMISSION", "AGENT", {2, 3, 4, 6, 8}},
                    Sample{"ballasts-halvik", "importBallastsInstant", "BALLASTS", "HALVIK", {}},
                    Sample{"ballasts-halvik-broken", "importBallastsInstant", "BALLASTS", "HALVIK", {2, 3, 4, 6, 7}}));

} // namespace imex::import_service::test
