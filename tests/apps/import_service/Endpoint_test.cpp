#include "import_service/Endpoint.h"

#include "apps/import_service/requests.h"

#include <gtest/gtest.h>

#include <ostream>

namespace imex::import_service::test {

struct Call {
  const Endpoint& endpoint;
  std::string method;
  std::string dataType;
  std::string fault; ///< empty for a call that is admitted
  std::string space = {};
  std::string userId = "agent1";
};

void PrintTo(const Call& call, std::ostream* out) {
  *out << call.method << " of " << call.dataType << " at " << call.endpoint.path << " by " << call.userId;
}

class EndpointJudges : public testing::TestWithParam<Call> {};

TEST_P(EndpointJudges, aCall) {
  const Call& call = GetParam();
  ImportRequest request;
  request.methodName = call.method;
  request.dataType = call.dataType;
  request.space = call.space.empty() ? call.endpoint.space : call.space;
  request.userId = call.userId;
  EXPECT_EQ(faultText([&] { requireAdmissible(request, call.endpoint, {"agent1", "agent2"}); }), call.fault);
}

INSTANTIATE_TEST_SUITE_P(
    Endpoint, EndpointJudges,
    testing::Values(
        Call{kSecured, "importData", "CUSTOMER", ""}, Call{kSecured, "importData", "PRODUCT", ""},
        Call{kSecured, "importCustomersInstant", "CUSTOMER", ""},
        Call{kSecured, "importProductsInstant", "PRODUCT", ""}, Call{kSecured, "importInvoicesInstant", "INVOICE", ""},
        Call{kSecured, "importCommissionsInstant", "COMMISSION", ""},
        Call{kSecured, "importData", "CUSTOMER", "", {}, "agent2"},
        Call{kUnsecured, "importData", "BALLASTS", "", {}, ""},
        Call{kUnsecured, "importBallastsInstant", "BALLASTS", "", {}, "anybody"},
        Call{kSecured, "importCustomersInstant", "PRODUCT",
             "The method importCustomersInstant takes the data type CUSTOMER, not \"PRODUCT\"."},
        Call{kUnsecured, "importBallastsInstant", "CUSTOMER",
             "The method importBallastsInstant takes the data type BALLASTS, not \"CUSTOMER\"."},
        Call{kSecured, "importData", "BALLASTS", "The data type \"BALLASTS\" goes to /unsecured, not to /secured."},
        Call{kSecured, "importBallastsInstant", "BALLASTS",
             "The data type \"BALLASTS\" goes to /unsecured, not to /secured."},
        Call{kUnsecured, "importData", "CUSTOMER", "The data type \"CUSTOMER\" goes to /secured, not to /unsecured."},
        Call{kSecured, "importData", "CUSTOMER",
             "The namespace of the methods at /secured is \"urn:ImportExportService\", not "
             "\"urn:UnsecuredImportExportService\".",
             "urn:UnsecuredImportExportService"},
        Call{kUnsecured, "importData", "BALLASTS",
             "The namespace of the methods at /unsecured is \"urn:UnsecuredImportExportService\", not "
             "\"urn:ImportExportService\".",
             "urn:ImportExportService"},
        Call{kSecured, "importData", "CUSTOMER", "The header entry userID is missing or empty.", {}, ""},
        Call{kSecured, "importData", "CUSTOMER", "The user \"Agent1\" is not known.", {}, "Agent1"}));

} // namespace imex::import_service::test
