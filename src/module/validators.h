#pragma once

#include "runtime/Boolean.h"
#include "runtime/Integer.h"
#include "runtime/export.h"

#include <string>
#include <string_view>

// The checks of one field value of an import row. Each returns the empty string for an acceptable value and otherwise
// the text of what is wrong with it. None of them raises or traces: an error inside a check, such as a value that does
// not convert, becomes the message that the check has for it.
//
// An empty value is acceptable unless `required` is true. A value of blanks is not empty. Characters are code points,
// and what counts as a number, in which locale, is the rule of runtime/numbers.h.
//
// The wording differs between the checks, down to doubled blanks and a blank before a full stop; the callers show and
// compare these texts as they are.

namespace imex::ImExModule {

/// At most `maximum` characters. A value exactly as long passes.
IMEX_EXPORT std::string checkMaxLength(std::string_view fieldName, std::string_view value, Integer maximum,
                                       Boolean required);

/// A number. Its size does not matter.
IMEX_EXPORT std::string checkNumeric(std::string_view fieldName, std::string_view value, Boolean required);

/// A whole number from 0 to 2,147,483,647. The sign is judged after rounding half to even: -0.5 is found not to be
/// whole and -0.6 to be negative.
IMEX_EXPORT std::string checkNonNegativeInteger(std::string_view fieldName, std::string_view value, Boolean required);

/// At most `maximum`, itself a number as text. The kind is "Long" (32 bits, rounded to whole numbers; a value of 11
/// characters or more exceeds every maximum) or "Currency" (64 bits, rounded to four decimal places), in this case.
/// With any other kind no value can be verified.
IMEX_EXPORT std::string checkMaxAmount(std::string_view fieldName, std::string_view kind, std::string_view value,
                                       std::string_view maximum, Boolean required);

} // namespace imex::ImExModule
