#pragma once

#include "import_service/ImportRequest.h"

#include <string>

namespace imex::import_service {

/// Reads a request of either form: a method "importData" with the parameter HXImportBean, or an instant method with
/// the parameter PARAM_ELEMENT and the element IMPORTEXPORTWRAPPER in it. Both hold REQUESTINFORMATION and LINES.
///
/// The request is a SOAP 1.1 envelope in UTF-8. Elements are known by their local name and come in any order; prefixes
/// are free. The two flags are "true" or "false" in any case; every other code is taken letter for letter. Each LINE
/// ends with the delimiter that DELIMITER names, which is taken off.
///
/// A request that is anything else is a ClientFault that says what is missing or wrong; an envelope of another SOAP
/// version is a Fault of the code versionMismatch. Whether method, namespace, data type and user fit together and
/// exist is not looked at here.
ImportRequest readRequest(std::string xml);

} // namespace imex::import_service
