#include "import_service/Endpoint.h"

#include "import_service/Fault.h"
#include "import_service/methods.h"
#include "import_service/wording.h"

namespace imex::import_service {

namespace {

constexpr std::string_view kBallasts = "BALLASTS";

void requireSpace(const ImportRequest& request, const Endpoint& endpoint) {
  if (request.space != endpoint.space)
    throw ClientFault("The namespace of the methods at " + std::string(endpoint.path) + " is " +
                      inQuotes(endpoint.space) + ", not " + inQuotes(request.space) + ".");
}

void requireUser(const ImportRequest& request, const Users& users) {
  if (request.userId.empty())
    throw ClientFault("The header entry userID is missing or empty.");
  if (!users.contains(request.userId))
    throw ClientFault("The user " + inQuotes(request.userId) + " is not known.");
}

void requireDataType(const ImportRequest& request, const Endpoint& endpoint) {
  const std::string_view own = dataTypeOf(request.methodName).value_or(request.dataType);
  if (own != request.dataType)
    throw ClientFault("The method " + request.methodName + " takes the data type " + std::string(own) + ", not " +
                      inQuotes(request.dataType) + ".");
  const Endpoint& right = own == kBallasts ? kUnsecured : kSecured;
  if (right.path != endpoint.path)
    throw ClientFault("The data type " + inQuotes(own) + " goes to " + std::string(right.path) + ", not to " +
                      std::string(endpoint.path) + ".");
}

} // namespace

void requireAdmissible(const ImportRequest& request, const Endpoint& endpoint, const Users& users) {
  requireSpace(request, endpoint);
  if (endpoint.isSecured)
    requireUser(request, users);
  requireDataType(request, endpoint);
}

} // namespace imex::import_service
