#pragma once

#include "host/SoapNode.h"
#include "records/ImExFormat.h"
#include "runtime/Boolean.h"
#include "runtime/Collection.h"
#include "runtime/Integer.h"
#include "runtime/export.h"

#include <memory>
#include <string>

namespace imex {

using ImExFormatPtr = std::shared_ptr<ImExFormat>;
using ImExFormatsPtr = CollectionPtr<ImExFormatPtr>;

/// The import service's whole answer to one import. Every answer gets a reply of its own; a reply is never cleared.
class IMEX_EXPORT ImExReply {
 public:
  /// The verdicts in the service's order, null until first used, and the number of error and warning texts in all of
  /// them.
  ImExFormatsPtr cImExFormats;
  Integer intTotalErrorsAndWarnings;

  /// Whether the import as a whole succeeded. The answer does not say so, and processReply() leaves it False.
  Boolean IsSuccessful() const;
  void IsSuccessful(Boolean value);

  /// Whether some line has errors.
  Boolean hasErrors() const;
  void hasErrors(Boolean value);

  /// Whether some line has warnings.
  Boolean hasWarnings() const;
  void hasWarnings(Boolean value);

  /// The service's overall message.
  std::string reply() const;
  void reply(std::string value);

  /// cImExFormats, made empty first where it is null. Never null.
  ImExFormatsPtr ImExFormats();

  /// Fills the reply from the result element of an answer: "reply", "hasErrors", "hasWarnings" and one child of
  /// "importExportResultBean" for each line, with "isIuccessful" (the service spells it so), "line", "lineNumber",
  /// "errors" and "warnings". A missing element is empty, except a boolean or a number.
  ///
  /// Error 13 for a boolean that is not true, false, 1 or 0 or a line number that is no number; error 6 for a line
  /// number past 16 bits or more than 32,767 texts. The error is recorded and passed on; the verdicts read before it
  /// stay.
  void processReply(host::SoapNode& aReply);

 private:
  void addResult(host::SoapNode& result);

  Boolean m_isSuccessful;
  Boolean m_hasErrors;
  Boolean m_hasWarnings;
  std::string m_reply;
};

} // namespace imex
