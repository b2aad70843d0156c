#pragma once

#include "import_service/Fault.h"
#include "import_service/ImportRequest.h"
#include "import_service/ImportResult.h"

#include <string>

namespace imex::import_service {

// Answers are SOAP 1.1 envelopes in UTF-8. Text is escaped so that a reader gets it back to the letter, white space and
// carriage returns included.

/// The answer to a request that was carried out: in the body "<method>Response" in the request's namespace, in it
/// "return" with "reply", "hasErrors", "hasWarnings" and "importExportResultBean", which has an "item" for every line,
/// in order: "isIuccessful" (the odd letter is part of the interface), "line" (as it was sent, without the delimiter at
/// the end), "lineNumber" (from 1), "errors" and "warnings" (an "item" for every text). Booleans are "true" or "false".
std::string writeAnswer(const ImportRequest& request, const ImportResult& result);

/// The answer to a request that was not carried out: "SOAP-ENV:Fault" with "faultcode" and "faultstring".
std::string writeFault(const Fault& fault);

} // namespace imex::import_service
