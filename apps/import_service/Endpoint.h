#pragma once

#include "import_service/ImportRequest.h"

#include <set>
#include <string>
#include <string_view>

namespace imex::import_service {

/// The users that the secured address knows, by identifier, letter for letter.
using Users = std::set<std::string, std::less<>>;

/// One of the two addresses of the service.
struct Endpoint {
  std::string_view path;
  std::string_view space; ///< the namespace of its methods
  bool isSecured;         ///< takes known users only
};

/// Takes every data type but ballasts.
inline constexpr Endpoint kSecured{"/secured", "urn:ImportExportService", true};

/// Takes ballasts, from anybody.
inline constexpr Endpoint kUnsecured{"/unsecured", "urn:UnsecuredImportExportService", false};

/// Refuses, by a ClientFault, a request that does not belong to the address that it was sent to: another namespace, a
/// user that is missing or not known (secured address only), a data type of the other address, an instant method of
/// another data type.
void requireAdmissible(const ImportRequest& request, const Endpoint& endpoint, const Users& users);

} // namespace imex::import_service
